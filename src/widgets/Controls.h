#pragma once

#include <QFont>
#include <QRect>
#include <QString>
#include <QWidget>
#include <vector>

namespace ztv {

// Builds and names the controls of all forms.
namespace Controls {

inline constexpr int TwipsPerPixel = 15;

// Converts a rectangle from twips to device-independent pixels. Rounds its edges, so that neighbours meet. A
// page that fits itself to the window converts by its PageScale.
QRect FromTwips(double left, double top, double width, double height);

// Returns the name of an array's member: "TextParam(3)".
QString Member(const char *array, int index);

// Sets the name by which a control is looked up.
template <typename Control>
Control *Named(Control *control, const QString &name) {
    control->setObjectName(name);
    return control;
}

template <typename Control>
Control *Named(Control *control, const char *name) {
    return Named(control, QString::fromLatin1(name));
}

// Returns the caption as it is read out: without its mnemonic mark and without an arrow of angle brackets.
QString SpokenCaption(const QString &caption);

// Builds a button of any kind with its name and its caption, which is also read out.
template <typename Button, typename Name>
Button *Captioned(const Name &name, const char *caption, QWidget *parent = nullptr) {
    auto *button = Named(new Button(QString::fromLatin1(caption), parent), name);
    button->setAccessibleName(SpokenCaption(button->text()));
    return button;
}

// A text and the space for it, in pixels.
struct Fit {
    QString text;
    int width;
    int height = QWIDGETSIZE_MAX;
};

// The smallest size of a text, in pixels.
inline constexpr int LeastLegible = 8;

// Returns the font, reduced until each text fits into its space or the smallest size is reached.
QFont FittingFont(QFont font, const std::vector<Fit> &places, int smallest = LeastLegible);

} // namespace Controls

} // namespace ztv
