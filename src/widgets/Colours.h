#pragma once

#include <QColor>
#include <QPalette>
#include <QWidget>

namespace ztv {

// The colours that aren't the palette's own, in a set for light desktops and one for dark ones.
namespace Colours {

struct Pair {
    QRgb onLight;
    QRgb onDark;
};

inline constexpr Pair Blue{0xff0000ff, 0xff7aa7ff};
inline constexpr Pair Green{0xff008000, 0xff66cc66};
inline constexpr Pair Red{0xffe00000, 0xffff6b6b};
inline constexpr Pair Olive{0xff808000, 0xffd6c94a};
inline constexpr Pair Amber{0xff8a5000, 0xffffb347};
inline constexpr Pair Gray{0xff808080, 0xffa0a0a0};

// Returns the colour of the pair that suits the palette's background.
QColor Of(const Pair &pair, const QPalette &palette);

// Returns black or white, whichever is more legible on `ground`.
QColor TextOn(const QColor &ground);

// Returns the contrast ratio: from 1 for equal colours to 21 for black on white.
double Contrast(const QColor &one, const QColor &other);

// The least contrasts at which text is legible, and figures of a large font.
inline constexpr double TextContrast = 4.5;
inline constexpr double LargeContrast = 3;

// Returns the palette's colour of disabled text, moved towards the colour of text until it is legible: for
// text that can't be edited but must be readable.
QColor LegibleDisabledText(const QPalette &palette, double contrast = TextContrast);

// Gives the control that colour while it is disabled, also after a change of its palette. A Reading, which
// the user can never edit, keeps the colour of text. A later call replaces the choice of an earlier one.
enum class Legible { Entry, Reading };
void KeepLegibleWhileDisabled(QWidget &control, Legible what = Legible::Entry);

} // namespace Colours

} // namespace ztv
