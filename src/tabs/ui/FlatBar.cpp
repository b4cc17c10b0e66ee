#include "tabs/ui/FlatBar.h"

#include "widgets/Colours.h"

#include <QPainter>
#include <QStyle>

namespace ztv {

void FlatBar::Dim(bool dimmed) {
    dimmed_ = dimmed;
    update();
}

void FlatBar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    const QRect inside = rect().adjusted(2, 2, -2, -2);
    const int filled = QStyle::sliderPositionFromValue(minimum(), maximum(), value(), inside.width());
    const QRect bar(inside.topLeft(), QSize(filled, inside.height()));
    painter.fillRect(QStyle::visualRect(layoutDirection(), inside, bar),
                     dimmed_ ? Colours::LegibleDisabledText(palette(), Colours::LargeContrast)
                             : palette().color(QPalette::Highlight));
}

} // namespace ztv
