#include "chart/ui/RelayMarker.h"

#include "chart/BasicLayout.h"
#include "chart/ui/DrawingPainter.h"
#include "widgets/Controls.h"
#include "widgets/TextBoxFunctions.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace ztv {

namespace {

constexpr int grabPixels = 5;           // on either side of the strip, at factor 1 and below
constexpr float keyStep = 15;           // twips, at any factor
constexpr std::int32_t fineKeyStep = 1; // hundredth of an inch
constexpr int highlightAlpha = 90;
constexpr int numberPixels = 10; // at factor 1

} // namespace

RelayMarker::RelayMarker(const BasicDrawing &drawing, RelayDrag &drag, const PageScale &scale, int number,
                         QWidget *parent)
    : QWidget(parent),
      drawing_(drawing),
      drag_(drag),
      scale_(scale),
      number_(number) {
    Controls::Named(this, Controls::Member("PicRelay", number));
    setCursor(Qt::SizeHorCursor);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

// Keeps the line of the last place within the chart, whose right edge is rounded elsewhere.
QRect RelayMarker::Place() const {
    const Drawing::Control &strip = drawing_.At(Drawing::ControlId::PicRelay, number_);
    QRect place = scale_.FromTwips(strip.left, strip.top, strip.width, strip.height);
    place.moveLeft(std::min(place.left(), parentWidget()->width() - 1 - LineInStrip()));
    return place.adjusted(-Grab(), 0, Grab(), 0);
}

int RelayMarker::Grab() const {
    return std::max(scale_.Pixels(grabPixels), grabPixels);
}

int RelayMarker::LineInStrip() const {
    const Drawing::Line &line = drawing_.At(Drawing::LineId::LineRelay, number_);
    return static_cast<int>(std::floor(scale_.ToPixels(line.x1)));
}

int RelayMarker::LineColumn() const {
    return x() + Grab() + LineInStrip();
}

void RelayMarker::ShowHover(bool hovered) {
    if (hovered_ != hovered) {
        hovered_ = hovered;
        update();
    }
}

void RelayMarker::keyPressEvent(QKeyEvent *event) {
    const QChar digit = TextBoxFunctions::DigitOf(*event);
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
        MoveByKey(*event);
    } else if (!digit.isNull() || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        Q_EMIT EditWanted(digit);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void RelayMarker::MoveByKey(const QKeyEvent &key) {
    const int direction = key.key() == Qt::Key_Left ? -1 : 1;
    const bool fine = key.modifiers().testFlag(Qt::ShiftModifier);
    if (fine ? drag_.StepValue(number_, direction * fineKeyStep)
             : drag_.Step(number_, static_cast<float>(direction) * keyStep)) {
        movedByKey_ = true;
    }
    ShowName();
}

void RelayMarker::ShowName() {
    drag_.ShowFocused(number_);
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

// Shows the label, except after a click: it is hidden once the mouse lets go. A window that becomes active
// again shows what it did before.
void RelayMarker::focusInEvent(QFocusEvent *event) {
    QWidget::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    const bool returns = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    if (returns ? named_ : reason != Qt::MouseFocusReason) {
        ShowName();
    }
}

// Lets go of the key, because its release goes to the widget that has the focus then.
void RelayMarker::focusOutEvent(QFocusEvent *event) {
    QWidget::focusOutEvent(event);
    named_ = drag_.HideFocused(number_);
    LetGoOfKey();
    Q_EMIT Moved();
}

void RelayMarker::LetGoOfKey() {
    if (movedByKey_) {
        movedByKey_ = false;
        drag_.LetGo(number_);
        Q_EMIT Moved();
    }
}

// Paints the relay's number, so that the relays differ not only in colour. The "on" markers have it at their
// upper end and the "off" markers at their lower one, because the two are often close together.
void RelayMarker::PaintNumber(QPainter &painter, const QColor &colour) {
    const int pixels = std::max(scale_.Pixels(numberPixels), scale_.LeastLegible());
    QRect place(0, 0, width(), pixels + 1);
    if (!BasicLayout::IsOn(number_)) {
        place.moveBottom(height() - 1);
    }
    painter.fillRect(place.adjusted(2, 0, -2, 0), palette().color(QPalette::Base));
    QFont number = font();
    number.setPixelSize(pixels);
    number.setBold(true);
    painter.setFont(number);
    painter.setPen(colour);
    painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip,
                     QString::number(BasicLayout::RelayOf(number_)));
}

void RelayMarker::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    if (hasFocus() || hovered_) {
        QColor band = palette().color(QPalette::Highlight);
        band.setAlpha(highlightAlpha);
        painter.fillRect(rect().adjusted(Grab() / 2, 0, -(Grab() / 2), 0), band);
    }
    const Drawing::Line &line = drawing_.At(Drawing::LineId::LineRelay, number_);
    const QColor colour = DrawingPainter::ColourOf(line.colour, palette());
    DrawingPainter::PaintLine(painter, scale_, line, colour, QPointF(Grab(), 0));
    if (!drawing_.At(Drawing::ControlId::MarkRelay, number_).visible) { // a mark has the number
        PaintNumber(painter, colour);
    }
}

} // namespace ztv
