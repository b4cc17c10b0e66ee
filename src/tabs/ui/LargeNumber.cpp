#include "tabs/ui/LargeNumber.h"

#include "widgets/Colours.h"
#include "widgets/Controls.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>

namespace ztv {

namespace {

constexpr int smallestPixels = 24;

} // namespace

LargeNumber::LargeNumber(const QString &longest, QWidget *parent)
    : QLabel(longest, parent),
      longest_(longest) {
    // The number adapts to the page's size, never the page to the number's.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void LargeNumber::Dim(bool dimmed) {
    dimmed_ = dimmed;
    pictures_.clear();
    update();
}

void LargeNumber::FitFont() {
    QFont large = font();
    large.setPixelSize(std::max(smallestPixels, height() * 3 / 4));
    setFont(Controls::FittingFont(large, {{.text = longest_, .width = width()}}));
}

const QPixmap &LargeNumber::Picture(QChar character) {
    QPixmap &picture = pictures_[character];
    if (picture.isNull()) {
        const QFontMetrics metrics(font());
        const QSize size(metrics.horizontalAdvance(character), metrics.height());
        picture = QPixmap(size * devicePixelRatioF());
        picture.setDevicePixelRatio(devicePixelRatioF());
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setFont(font());
        painter.setPen(dimmed_ ? Colours::LegibleDisabledText(palette(), Colours::LargeContrast)
                               : palette().color(foregroundRole()));
        painter.drawText(0, metrics.ascent(), character);
    }
    return picture;
}

void LargeNumber::Show(const QString &number) {
    if (number == text()) {
        return;
    }
    const QRect changed = ChangedPart(number);
    setAttribute(Qt::WA_UpdatesDisabled, true); // or the label would paint all of it
    setText(number);
    setAttribute(Qt::WA_UpdatesDisabled, false);
    update(changed);
}

// Returns the rectangle of a number that is painted in the middle of the label.
QRect LargeNumber::PlaceOf(const QString &number) const {
    const QFontMetrics metrics(font());
    int wide = 0;
    for (const QChar character : number) {
        wide += metrics.horizontalAdvance(character);
    }
    return {(width() - metrics.horizontalAdvance(number)) / 2, (height() - metrics.height()) / 2, wide,
            metrics.height()};
}

// Returns the part of the label in which `number` differs from the present text.
QRect LargeNumber::ChangedPart(const QString &number) const {
    const QString before = text();
    QRect part = PlaceOf(number);
    if (number.size() != before.size() || part != PlaceOf(before)) {
        return rect();
    }
    const QFontMetrics metrics(font());
    for (qsizetype i = 0; i < number.size() && number[i] == before[i]; ++i) {
        part.setLeft(part.left() + metrics.horizontalAdvance(number[i]));
    }
    for (qsizetype i = number.size() - 1; i >= 0 && number[i] == before[i]; --i) {
        part.setRight(part.right() - metrics.horizontalAdvance(number[i]));
    }
    return part;
}

void LargeNumber::paintEvent(QPaintEvent *event) {
    const QFontMetrics metrics(font());
    QPainter painter(this);
    QRect place = PlaceOf(text());
    for (const QChar character : text()) {
        place.setWidth(metrics.horizontalAdvance(character));
        if (place.intersects(event->rect())) {
            painter.drawPixmap(place.topLeft(), Picture(character));
        }
        place.moveLeft(place.right() + 1);
    }
}

void LargeNumber::resizeEvent(QResizeEvent *event) {
    QLabel::resizeEvent(event);
    FitFont();
}

void LargeNumber::changeEvent(QEvent *event) {
    QLabel::changeEvent(event);
    pictures_.clear(); // the pictures depend on font, palette and style
}

} // namespace ztv
