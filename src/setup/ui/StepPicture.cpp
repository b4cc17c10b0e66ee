#include "setup/ui/StepPicture.h"

#include <QPainter>

namespace ztv {

StepPicture::StepPicture(const QString &folder, QWidget *parent) : QWidget(parent), drawing_(folder) {
    setFixedSize(drawing_.Size());
}

void StepPicture::paintEvent(QPaintEvent *) {
    const QSize wanted = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (shown_.size() != wanted) {
        shown_ = drawing_.OfHeight(wanted.height())
                     .scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    QPainter(this).drawPixmap(rect(), shown_);
}

} // namespace ztv
