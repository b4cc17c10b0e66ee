#include "chart/ui/RelayPointer.h"

#include <QMouseEvent>
#include <QToolTip>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace ztv {

namespace {

// Returns the pixel of the chart that contains `place`.
QPoint PixelOf(const QPointF &place) {
    return {static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y()))};
}

} // namespace

RelayPointer::RelayPointer(const BasicDrawing &drawing, RelayDrag &drag, const PageScale &scale,
                           std::vector<RelayMarker *> markers)
    : drawing_(drawing),
      drag_(drag),
      scale_(scale),
      markers_(std::move(markers)) {
    for (RelayMarker *marker : markers_) {
        marker->installEventFilter(this);
    }
}

bool RelayPointer::eventFilter(QObject *watched, QEvent *event) {
    auto &under = static_cast<QWidget &>(*watched);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        const auto &mouse = static_cast<const QMouseEvent &>(*event);
        Press(mouse, under.pos() + mouse.position());
        return true;
    }
    case QEvent::MouseMove: {
        const auto &mouse = static_cast<const QMouseEvent &>(*event);
        Move(mouse, under.pos() + mouse.position());
        return true;
    }
    case QEvent::MouseButtonRelease:
        Release(static_cast<const QMouseEvent &>(*event));
        return true;
    case QEvent::ToolTip:
        ShowToolTip(under, static_cast<const QHelpEvent &>(*event));
        return true;
    case QEvent::Hide:
        AbandonDrag();
        return false;
    case QEvent::Leave:
        ShowHover(held_);
        return false;
    default:
        return false;
    }
}

int RelayPointer::Nearest(const QPoint &inChart) const {
    const auto distance = [&](std::size_t number) {
        return std::abs(markers_[number]->LineColumn() - inChart.x());
    };
    std::size_t nearest = 0;
    for (std::size_t number = 1; number < markers_.size(); ++number) {
        if (distance(number) < distance(nearest)) {
            nearest = number;
        }
    }
    return static_cast<int>(nearest);
}

// Returns the columns of `under` in which `number` is the nearest marker.
QRect RelayPointer::NearestPartOf(const QWidget &under, int number) const {
    QRect part;
    for (int column = 0; column < under.width(); ++column) {
        if (Nearest(under.pos() + QPoint(column, 0)) == number) {
            part |= QRect(column, 0, 1, under.height());
        }
    }
    return part;
}

// Limits the tool tip to the part of `under` that belongs to the nearest marker, so that it hides when the
// pointer comes nearer to another one.
void RelayPointer::ShowToolTip(QWidget &under, const QHelpEvent &help) const {
    const int number = Nearest(under.pos() + help.pos());
    QToolTip::showText(help.globalPos(), markers_[static_cast<std::size_t>(number)]->toolTip(), &under,
                       NearestPartOf(under, number));
}

float RelayPointer::InMarker(int number, const QPointF &inChart) const {
    const float twips = static_cast<float>(scale_.ToTwips(inChart.x()));
    return twips - drawing_.At(Drawing::ControlId::PicRelay, number).left;
}

void RelayPointer::Press(const QMouseEvent &event, const QPointF &inChart) {
    const bool left = event.button() == Qt::LeftButton;
    if (left) {
        AbandonDrag();
        held_ = Nearest(PixelOf(inChart));
    }
    const int number = held_.value_or(Nearest(PixelOf(inChart)));
    ShowHover(number);
    // The press has moved the focus to the topmost marker.
    markers_[static_cast<std::size_t>(number)]->setFocus(Qt::MouseFocusReason);
    drag_.MouseDown(number, left, InMarker(number, inChart));
    Q_EMIT Moved();
}

void RelayPointer::Move(const QMouseEvent &event, const QPointF &inChart) {
    if (!event.buttons().testFlag(Qt::LeftButton)) {
        AbandonDrag();
    }
    const int number = held_.value_or(Nearest(PixelOf(inChart)));
    ShowHover(number);
    drag_.MouseMove(number, event.buttons() == Qt::LeftButton, InMarker(number, inChart));
    Q_EMIT Moved();
}

void RelayPointer::Release(const QMouseEvent &event) {
    if (event.button() != Qt::LeftButton || !held_) {
        return;
    }
    const int number = *std::exchange(held_, std::nullopt);
    drag_.MouseUp(number, true);
    Q_EMIT Moved();
}

// Ends a drag whose button release was received by another widget or lost with the hidden page.
void RelayPointer::AbandonDrag() {
    if (held_) {
        drag_.Abandon(*std::exchange(held_, std::nullopt));
        Q_EMIT Moved();
    }
}

void RelayPointer::ShowHover(std::optional<int> number) {
    for (std::size_t i = 0; i < markers_.size(); ++i) {
        markers_[i]->ShowHover(number == static_cast<int>(i));
    }
}

} // namespace ztv
