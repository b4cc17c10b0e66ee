#include "tabs/ui/LargeNumber.h"

#include "widgets/Colours.h"
#include "widgets/Controls.h"

#include <QEvent>
#include <QFontMetrics>
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

void LargeNumber::paintEvent(QPaintEvent *) {
    const QFontMetrics metrics(font());
    QPainter painter(this);
    int x = (width() - metrics.horizontalAdvance(text())) / 2;
    const int y = (height() - metrics.height()) / 2;
    for (const QChar character : text()) {
        painter.drawPixmap(x, y, Picture(character));
        x += metrics.horizontalAdvance(character);
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
