#include "setup/ui/StateLabel.h"

#include "widgets/Colours.h"

#include <QEvent>
#include <QPainter>
#include <QResizeEvent>

namespace ztv {

namespace {

using Tone = LiveReading::Tone;

// Darker than Colours::Green and Red, which aren't legible as small text on a window's grey.
constexpr Colours::Pair green{0xff006e00, 0xff66cc66};
constexpr Colours::Pair red{0xffb3261e, 0xffff8a80};

Colours::Pair ColourOf(Tone tone) {
    switch (tone) {
    case Tone::Good:
        return green;
    case Tone::Caution:
        return Colours::Amber;
    default:
        return red;
    }
}

// A disc, a triangle or a square: colour alone wouldn't do.
void DrawMark(QPainter &painter, Tone tone, const QRectF &place) {
    switch (tone) {
    case Tone::Good:
        painter.drawEllipse(place);
        break;
    case Tone::Caution:
        painter.drawPolygon(
            QPolygonF({QPointF(place.center().x(), place.top()), place.bottomRight(), place.bottomLeft()}));
        break;
    default:
        painter.drawRect(place);
        break;
    }
}

} // namespace

StateLabel::StateLabel(const QString &longest, QWidget *parent) : QLabel(parent), longest_(longest) {
    setTextFormat(Qt::PlainText);
}

void StateLabel::Show(Tone tone, const QString &text) {
    if (tone == tone_ && text == this->text()) {
        return;
    }
    tone_ = tone;
    setText(text);
    setAccessibleName(text);
    Explain();
    Colour();
    update();
}

int StateLabel::MarkSide() const {
    return fontMetrics().ascent() * 3 / 4;
}

int StateLabel::TextLeft() const {
    return MarkSide() * 3 / 2;
}

QSize StateLabel::sizeHint() const {
    constexpr int rounding = 1; // elidedText counts the fractions of a pixel
    return {TextLeft() + fontMetrics().horizontalAdvance(longest_) + rounding, fontMetrics().height()};
}

QSize StateLabel::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

QString StateLabel::Shortened() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, width() - TextLeft());
}

void StateLabel::Explain() {
    const QString tip = Shortened() == text() ? QString() : text();
    if (tip != toolTip()) {
        setToolTip(tip);
    }
}

void StateLabel::Colour() {
    QPalette palette;
    palette.setColor(QPalette::WindowText, Colours::Of(ColourOf(tone_), this->palette()));
    setPalette(palette);
}

void StateLabel::paintEvent(QPaintEvent *) {
    if (text().isEmpty()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = palette().color(QPalette::WindowText);
    const qreal side = MarkSide();
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    DrawMark(painter, tone_, QRectF(0, (height() - side) / 2, side, side));
    painter.setPen(colour);
    painter.drawText(rect().adjusted(TextLeft(), 0, 0, 0), Qt::AlignVCenter | Qt::TextSingleLine,
                     Shortened());
}

void StateLabel::changeEvent(QEvent *event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        Colour();
    } else if (event->type() == QEvent::FontChange) {
        Explain();
    }
}

void StateLabel::resizeEvent(QResizeEvent *event) {
    QLabel::resizeEvent(event);
    Explain();
}

} // namespace ztv
