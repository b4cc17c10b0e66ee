#include "shell/MarkedIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <algorithm>

namespace ztv {

namespace {

constexpr QRgb dotColour = 0xffffa000;
constexpr QRgb rimColour = 0xff5d3a00; // tells the dot from a light desktop
constexpr double dotPart = 0.42;       // of the icon's size
constexpr double rimPart = 0.06;

class MarkedIconEngine : public QIconEngine {
public:
    explicit MarkedIconEngine(QIcon icon) : icon_(std::move(icon)) {}

    QIconEngine *clone() const override { return new MarkedIconEngine(icon_); }

    void paint(QPainter *painter, const QRect &place, QIcon::Mode mode, QIcon::State state) override {
        icon_.paint(painter, place, Qt::AlignCenter, mode, state);
        const double size = std::min(place.width(), place.height());
        const double rim = size * rimPart;
        const double dot = size * dotPart;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(QColor::fromRgb(rimColour), rim));
        painter->setBrush(QColor::fromRgb(dotColour)); // also while disabled: the sensor still forgets
        painter->drawEllipse(
            QRectF(place.x() + place.width() - dot - rim / 2, place.y() + rim / 2, dot, dot));
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }

    // The size is in device pixels.
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return picture;
    }

private:
    QIcon icon_;
};

} // namespace

QIcon MarkedIcon(const QIcon &icon) {
    return QIcon(new MarkedIconEngine(icon));
}

} // namespace ztv
