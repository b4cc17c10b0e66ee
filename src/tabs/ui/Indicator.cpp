#include "tabs/ui/Indicator.h"

#include <QPainter>

namespace ztv {

namespace {

constexpr int side = 22; // pixels at factor 1

} // namespace

Indicator::Indicator(const QString &spokenName, QWidget *parent) : QLabel(parent), side_(side) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(spokenName);
    setAccessibleDescription(ImageListCheckout::Word(picture_));
}

void Indicator::Picture(ImageListCheckout::Key key) {
    if (key == picture_) {
        return; // called at each poll; repaints only on a change
    }
    picture_ = key;
    setAccessibleDescription(ImageListCheckout::Word(key));
    update();
}

void Indicator::Dim(bool dimmed) {
    dimmed_ = dimmed;
    update();
}

void Indicator::Rescale(const PageScale &scale) {
    side_ = scale.Pixels(side);
    updateGeometry();
}

QSize Indicator::sizeHint() const {
    return {side_, side_};
}

void Indicator::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    ImageListCheckout::Picture(picture_).paint(&painter, rect(), Qt::AlignCenter,
                                               dimmed_ ? QIcon::Disabled : QIcon::Normal);
}

} // namespace ztv
