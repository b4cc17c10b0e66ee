#include "tabs/ui/RelayMarker.h"

#include "tabs/ui/DrawingPainter.h"
#include "ui/Controls.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr int grabPixels = 5; // on either side of the strip
constexpr float keyStep = Controls::TwipsPerPixel;
constexpr int highlightAlpha = 90;
constexpr int numberPixels = 10;

} // namespace

RelayMarker::RelayMarker(const BasicDrawing &drawing, RelayDrag &drag, int number, QWidget *parent)
    : QWidget(parent),
      drawing_(drawing),
      drag_(drag),
      number_(number) {
    Controls::Named(this, Controls::Member("PicRelay", number));
    setCursor(Qt::SizeHorCursor);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

QRect RelayMarker::Place() const {
    const Drawing::Control &strip = drawing_.At(Drawing::ControlId::PicRelay, number_);
    const QRect place = Controls::FromTwips(strip.left, strip.top, strip.width, strip.height);
    return place.adjusted(-grabPixels, 0, grabPixels, 0);
}

void RelayMarker::mousePressEvent(QMouseEvent *event) {
    drag_.MouseDown(number_, event->button() == Qt::LeftButton);
}

void RelayMarker::mouseMoveEvent(QMouseEvent *event) {
    const double inChart = (x() + event->position().x()) * Controls::TwipsPerPixel;
    const Drawing::Control &strip = drawing_.At(Drawing::ControlId::PicRelay, number_);
    drag_.MouseMove(number_, event->buttons() == Qt::LeftButton, static_cast<float>(inChart) - strip.left);
    Q_EMIT Moved();
}

void RelayMarker::mouseReleaseEvent(QMouseEvent *event) {
    drag_.MouseUp(number_, event->button() == Qt::LeftButton);
    Q_EMIT Moved();
}

void RelayMarker::keyPressEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Left && event->key() != Qt::Key_Right) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (drag_.Step(number_, event->key() == Qt::Key_Left ? -keyStep : keyStep)) {
        movedByKey_ = true;
    }
    Q_EMIT Moved();
}

void RelayMarker::keyReleaseEvent(QKeyEvent *event) {
    const bool moves = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    if (moves && !event->isAutoRepeat()) {
        LetGoOfKey();
    } else {
        QWidget::keyReleaseEvent(event);
    }
}

// The key's release goes to whatever has the focus then. The write may turn the event loop, so the focus
// moves first.
void RelayMarker::focusOutEvent(QFocusEvent *event) {
    QWidget::focusOutEvent(event);
    QMetaObject::invokeMethod(this, &RelayMarker::LetGoOfKey, Qt::QueuedConnection);
}

void RelayMarker::LetGoOfKey() {
    if (movedByKey_) {
        movedByKey_ = false;
        drag_.LetGo(number_);
        Q_EMIT Moved();
    }
}

// Tells the relays apart without their colours. On and off are often close together, so one has it at its
// upper end and the other at its lower one.
void RelayMarker::PaintNumber(QPainter &painter, const QColor &colour) {
    constexpr int relays = 2;
    QRect place(0, 0, width(), numberPixels + 1);
    if (number_ >= relays) {
        place.moveBottom(height() - 1);
    }
    painter.fillRect(place.adjusted(2, 0, -2, 0), palette().color(QPalette::Base));
    QFont number = font();
    number.setPixelSize(numberPixels);
    number.setBold(true);
    painter.setFont(number);
    painter.setPen(colour);
    painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip, QString::number(number_ % relays + 1));
}

void RelayMarker::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    if (hasFocus() || underMouse()) {
        QColor band = palette().color(QPalette::Highlight);
        band.setAlpha(highlightAlpha);
        painter.fillRect(rect().adjusted(grabPixels / 2, 0, -(grabPixels / 2), 0), band);
    }
    const Drawing::Line &line = drawing_.At(Drawing::LineId::LineRelay, number_);
    DrawingPainter::PaintLine(painter, line, palette(), QPointF(grabPixels, 0));
    PaintNumber(painter, DrawingPainter::ColourOf(line.colour, palette()));
}
