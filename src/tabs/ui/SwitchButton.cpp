#include "tabs/ui/SwitchButton.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace ztv {

namespace {

constexpr QSize pictureSize(40, 24); // pixels at factor 1
constexpr int focusMargin = 3;
constexpr double opacityWhileDown = 0.6;

} // namespace

SwitchButton::SwitchButton(const QString &spokenName, QWidget *parent)
    : QAbstractButton(parent),
      pictureSize_(pictureSize) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(spokenName);
    setAccessibleDescription(ImageListCheckout::Word(picture_));
}

void SwitchButton::Picture(ImageListCheckout::Key key) {
    if (key == picture_) {
        return; // called at each poll; repaints only on a change
    }
    picture_ = key;
    setAccessibleDescription(ImageListCheckout::Word(key));
    update();
}

void SwitchButton::Dim(bool dimmed) {
    dimmed_ = dimmed;
    update();
}

void SwitchButton::Rescale(const PageScale &scale) {
    pictureSize_ = scale.Pixels(pictureSize);
    updateGeometry();
}

QSize SwitchButton::sizeHint() const {
    return pictureSize_.grownBy({focusMargin, focusMargin, focusMargin, focusMargin});
}

void SwitchButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.backgroundColor = palette().color(QPalette::Window);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
    painter.setOpacity(isDown() ? opacityWhileDown : 1);
    ImageListCheckout::Picture(picture_).paint(
        &painter, rect().adjusted(focusMargin, focusMargin, -focusMargin, -focusMargin), Qt::AlignCenter,
        dimmed_ ? QIcon::Disabled : QIcon::Normal);
}

} // namespace ztv
