#include "setup/ui/StepPicture.h"

#include <QPainter>

namespace ztv {

StepPicture::StepPicture(const QString &file, QWidget *parent) : QWidget(parent), drawing_(file) {
    setFixedSize(drawing_.defaultSize());
}

void StepPicture::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing_.render(&painter, rect());
}

} // namespace ztv
