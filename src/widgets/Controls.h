#pragma once

#include <QFont>
#include <QRect>
#include <QString>
#include <QWidget>
#include <vector>

// Builds and names the controls of all forms.
namespace Controls {

inline constexpr int TwipsPerPixel = 15;

// The device-independent pixels of a rectangle in twips. Edges are rounded, so that neighbours meet.
QRect FromTwips(double left, double top, double width, double height);

// The name of an array's member: "TextParam(3)".
QString Member(const char *array, int index);

// Names a control for whoever looks it up.
template <typename Control>
Control *Named(Control *control, const QString &name) {
    control->setObjectName(name);
    return control;
}

template <typename Control>
Control *Named(Control *control, const char *name) {
    return Named(control, QString::fromLatin1(name));
}

// The caption as it is read out: without its mnemonic mark, and without an arrow of angle brackets.
QString SpokenCaption(const QString &caption);

// A button of any kind with its given name and its caption, which is read out too.
template <typename Button, typename Name>
Button *Captioned(const Name &name, const char *caption, QWidget *parent = nullptr) {
    auto *button = Named(new Button(QString::fromLatin1(caption), parent), name);
    button->setAccessibleName(SpokenCaption(button->text()));
    return button;
}

// A text and the pixels that it has.
struct Fit {
    QString text;
    int width;
    int height = QWIDGETSIZE_MAX;
};

// The font, made smaller where it must be so that each text fits into its place.
QFont FittingFont(QFont font, const std::vector<Fit> &places);

} // namespace Controls
