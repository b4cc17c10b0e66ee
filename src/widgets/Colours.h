#pragma once

#include <QColor>
#include <QPalette>
#include <QWidget>

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
inline constexpr Pair Gray{0xff808080, 0xffa0a0a0};

// The one of the two that the palette's ground asks for.
QColor Of(const Pair &pair, const QPalette &palette);

// Black or white, whichever can be read better on that ground.
QColor TextOn(const QColor &ground);

// From 1, the same, to 21, black on white.
double Contrast(const QColor &one, const QColor &other);

// The palette's colour of disabled text, as much nearer to that of its text as reading it takes: for what
// can't be edited but is there to be read.
QColor LegibleDisabledText(const QPalette &palette);

// Gives the control that colour while it is disabled, in whichever palette it gets. A `reading`, which nobody
// could ever edit, has the colour of text.
enum class Legible { Entry, Reading };
void KeepLegibleWhileDisabled(QWidget &control, Legible what = Legible::Entry);

} // namespace Colours
