#include "chart/ui/DrawnFrame.h"

#include "chart/ui/DrawingPainter.h"

#include <QPaintEvent>
#include <QPainter>

namespace ztv {

namespace {

constexpr double penMargin = 2; // pixels that a line may reach beyond its coordinates

} // namespace

DrawnFrame::DrawnFrame(const BasicDrawing &drawing, Drawing::ControlId id, bool opaque, QWidget *parent)
    : QFrame(parent),
      drawing_(drawing),
      id_(id),
      opaque_(opaque) {
    if (drawing.At(id).border) {
        setFrameShape(QFrame::StyledPanel);
        setFrameShadow(QFrame::Sunken);
        setBackgroundRole(QPalette::Base);
    }
    setAttribute(Qt::WA_OpaquePaintEvent, opaque);
}

void DrawnFrame::UpdateArea(const DrawingChanges::Area &area) {
    const QRectF place(QPointF(DrawingPainter::ToPixels(area.left), DrawingPainter::ToPixels(area.top)),
                       QPointF(DrawingPainter::ToPixels(area.right), DrawingPainter::ToPixels(area.bottom)));
    update(place.adjusted(-penMargin, -penMargin, penMargin, penMargin).toAlignedRect());
}

void DrawnFrame::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    if (opaque_) {
        for (const QRect &exposed : event->region()) {
            painter.fillRect(exposed, palette().color(backgroundRole()));
        }
    }
    drawFrame(&painter);
    for (const Drawing::Shape &shape : BasicDrawing::Shapes()) {
        if (shape.parent == id_) {
            const Drawing::Colour fill = drawing_.ColourOf(shape);
            DrawingPainter::PaintShape(painter, shape, DrawingPainter::FillOf(fill, palette()));
        }
    }
    drawing_.VisitLines(id_, [&](const Drawing::Line &line) {
        const Drawing::Colour colour = drawing_.ColourOf(line);
        DrawingPainter::PaintLine(painter, line, DrawingPainter::ColourOf(colour, palette()));
    });
    if (drawing_.LineHyperbolic().front().parent == id_) {
        DrawingPainter::PaintCurve(painter, drawing_.LineHyperbolic(), palette());
    }
}

} // namespace ztv
