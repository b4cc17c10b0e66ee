#include "tabs/ui/StillFrame.h"

#include <QPaintEvent>
#include <QStyleOptionGroupBox>
#include <QStylePainter>

namespace ztv {

void StillFrame::Draw() {
    picture_ = QPixmap(size() * devicePixelRatioF());
    picture_.setDevicePixelRatio(devicePixelRatioF());
    picture_.fill(Qt::transparent);
    QStyleOptionGroupBox option;
    initStyleOption(&option);
    QStylePainter painter(&picture_, this);
    painter.setFont(font());
    painter.drawComplexControl(QStyle::CC_GroupBox, option);
}

void StillFrame::paintEvent(QPaintEvent *event) {
    const QSizeF drawn = picture_.deviceIndependentSize();
    if (drawn.toSize() != size() || picture_.devicePixelRatio() != devicePixelRatioF()) {
        Draw();
    }
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.drawPixmap(0, 0, picture_);
}

void StillFrame::changeEvent(QEvent *event) {
    QGroupBox::changeEvent(event);
    picture_ = {}; // the picture depends on font, palette, style and enabling
}

} // namespace ztv
