#pragma once

#include <QProxyStyle>

namespace ztv {

// Fusion with a visible focus wherever the keyboard moves it: also on a default button, which Fusion draws
// alike with and without the focus, and on a list without a current row. The mark of an option is as large as
// its text demands, so that it grows with a page.
class FocusStyle : public QProxyStyle {
    Q_OBJECT

public:
    FocusStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
};

} // namespace ztv
