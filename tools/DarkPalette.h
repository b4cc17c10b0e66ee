#pragma once

#include <QPalette>

namespace ztv {

// Returns the palette that a dark desktop gives to programs with this program's style.
inline QPalette DarkPalette() {
    const QColor text(0xfc, 0xfc, 0xfc);
    const QColor dimText(0x80, 0x84, 0x88);
    const QColor window(0x2a, 0x2e, 0x32);
    QPalette dark(text, QColor(0x31, 0x36, 0x3b), QColor(0x47, 0x4d, 0x54), QColor(0x18, 0x1b, 0x1e),
                  QColor(0x25, 0x29, 0x2c), text, Qt::white, QColor(0x1b, 0x1e, 0x20), window);
    dark.setColor(QPalette::Midlight, QColor(0x3b, 0x41, 0x47));
    dark.setColor(QPalette::Shadow, QColor(0x10, 0x12, 0x14));
    dark.setColor(QPalette::AlternateBase, QColor(0x23, 0x26, 0x29));
    dark.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    dark.setColor(QPalette::HighlightedText, QColor(0x10, 0x12, 0x14));
    dark.setColor(QPalette::ToolTipBase, QColor(0x31, 0x36, 0x3b));
    dark.setColor(QPalette::ToolTipText, text);
    dark.setColor(QPalette::Link, QColor(0x1d, 0x99, 0xf3));
    dark.setColor(QPalette::LinkVisited, QColor(0x9b, 0x59, 0xb6));
    dark.setColor(QPalette::PlaceholderText, QColor(0xa1, 0xa9, 0xb1));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        dark.setColor(QPalette::Disabled, role, dimText);
    }
    dark.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x47, 0x4d, 0x54));
    dark.setColor(QPalette::Disabled, QPalette::HighlightedText, dimText);
    return dark;
}

} // namespace ztv
