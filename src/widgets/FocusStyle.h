#pragma once

#include <QProxyStyle>

// Fusion, but that the focus can be seen wherever the keyboard takes it: also on a default button, which
// looks the same with it and without, and on a list without a current row.
class FocusStyle : public QProxyStyle {
    Q_OBJECT

public:
    FocusStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
};
