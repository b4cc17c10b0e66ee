#pragma once

#include <QProxyStyle>

namespace ztv {

// Fusion with a visible focus wherever the keyboard moves it: also on a default button, which Fusion draws
// alike with and without the focus, and on a list without a current row.
class FocusStyle : public QProxyStyle {
    Q_OBJECT

public:
    FocusStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
};

} // namespace ztv
