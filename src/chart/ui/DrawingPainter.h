#pragma once

#include "chart/DrawingElements.h"
#include "widgets/PageScale.h"

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QPointF>
#include <QRectF>
#include <vector>

namespace ztv {

// Paints the elements of a drawing. Vertical and horizontal lines are crisp at any scale factor.
namespace DrawingPainter {

// Return the colour of a line, and of a shape, which needs less contrast than a line when it is dimmed.
QColor ColourOf(Drawing::Colour colour, const QPalette &palette);
QColor FillOf(Drawing::Colour colour, const QPalette &palette);

// `origin` is the origin of the line's coordinates, in pixels of the painter.
void PaintLine(QPainter &painter, const PageScale &scale, const Drawing::Line &line, const QColor &colour,
               QPointF origin = {});

// Paints the visible segments of a curve as one line, so that they join.
void PaintCurve(QPainter &painter, const PageScale &scale, const std::vector<Drawing::Line> &segments,
                const QPalette &palette);

// Keeps the outline within the rectangle `frame`, whose edges are rounded in another place than the shape's.
void PaintShape(QPainter &painter, const PageScale &scale, const Drawing::Shape &shape, const QColor &fill,
                const QRect &frame);

// Paint a lamp, and a triangle that warns, in a square.
void PaintLamp(QPainter &painter, const QRectF &square, bool lit, const QColor &colour);
void PaintWarning(QPainter &painter, const QRectF &square, const QPalette &palette);

} // namespace DrawingPainter

} // namespace ztv
