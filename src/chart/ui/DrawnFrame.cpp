#include "chart/ui/DrawnFrame.h"

#include "chart/ui/DrawingPainter.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

namespace ztv {

namespace {

constexpr double penMargin = 2; // pixels at factor 1 that a line may reach beyond its coordinates

} // namespace

DrawnFrame::DrawnFrame(const BasicDrawing &drawing, const PageScale &scale, Drawing::ControlId id,
                       bool opaque, QWidget *parent)
    : QFrame(parent),
      drawing_(drawing),
      scale_(scale),
      id_(id),
      opaque_(opaque) {
    if (drawing.At(id).border) {
        setFrameShape(QFrame::StyledPanel);
        setFrameShadow(QFrame::Sunken);
        setBackgroundRole(QPalette::Base);
    }
    setAttribute(Qt::WA_OpaquePaintEvent, opaque);
}

void DrawnFrame::Origin(const QPoint &origin) {
    if (origin_ != origin) {
        origin_ = origin;
        update();
    }
}

void DrawnFrame::UpdateArea(const DrawingChanges::Area &area) {
    const QRectF place(QPointF(scale_.ToPixels(area.left), scale_.ToPixels(area.top)),
                       QPointF(scale_.ToPixels(area.right), scale_.ToPixels(area.bottom)));
    const double margin = penMargin * std::max(scale_.Factor(), 1.0);
    update(place.adjusted(-margin, -margin, margin, margin).toAlignedRect().translated(origin_));
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
            DrawingPainter::PaintShape(painter, scale_, shape, DrawingPainter::FillOf(fill, palette()),
                                       rect());
        }
    }
    drawing_.VisitLines(id_, [&](const Drawing::Line &line) {
        const Drawing::Colour colour = drawing_.ColourOf(line);
        DrawingPainter::PaintLine(painter, scale_, line, DrawingPainter::ColourOf(colour, palette()),
                                  origin_);
    });
    if (drawing_.LineHyperbolic().front().parent == id_) {
        DrawingPainter::PaintCurve(painter, scale_, drawing_.LineHyperbolic(), palette());
    }
}

} // namespace ztv
