#include "chart/ui/DrawingPainter.h"

#include "widgets/Colours.h"

#include <QPolygonF>
#include <algorithm>
#include <cmath>

namespace ztv {

namespace {

// Of the side of a figure's square.
constexpr double rimPart = 0.12;
constexpr double marginPart = 0.1;

Qt::PenStyle StyleOf(Drawing::LineStyle style) {
    switch (style) {
    case Drawing::LineStyle::Dot:
        return Qt::DotLine;
    case Drawing::LineStyle::Dash:
        return Qt::DashLine;
    case Drawing::LineStyle::DashDot:
        return Qt::DashDotLine;
    case Drawing::LineStyle::Solid:
        break;
    }
    return Qt::SolidLine;
}

// Returns the width of a pen in pixels of the device: whole, and at least one.
double DeviceWidth(const QPainter &painter, const PageScale &scale, int width) {
    return std::max(1.0, std::round(width * scale.Factor() * painter.deviceTransform().m11()));
}

QPen PenOf(const QPainter &painter, const PageScale &scale, const Drawing::Line &line, const QColor &colour) {
    QPen pen(colour, DeviceWidth(painter, scale, line.width) / painter.deviceTransform().m11());
    pen.setStyle(StyleOf(line.style));
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen;
}

// Returns the place, near `place`, of the middle of a line that is `width` of the device's pixels wide and
// covers whole ones. The widget begins at `origin` of the device, which may be within a pixel.
double Snapped(double place, double ratio, double origin, double width) {
    const double half = std::fmod(width, 2) / 2;
    return (std::floor(place * ratio + origin) + half - origin) / ratio;
}

QPointF ToPoint(const PageScale &scale, float x, float y, QPointF origin) {
    return QPointF(scale.ToPixels(x), scale.ToPixels(y)) + origin;
}

} // namespace

namespace DrawingPainter {

QColor ColourOf(Drawing::Colour colour, const QPalette &palette) {
    switch (colour) {
    case Drawing::Colour::Blue:
        return Colours::Of(Colours::Blue, palette);
    case Drawing::Colour::Green:
        return Colours::Of(Colours::Green, palette);
    case Drawing::Colour::Red:
        return Colours::Of(Colours::Red, palette);
    case Drawing::Colour::Olive:
        return Colours::Of(Colours::Olive, palette);
    case Drawing::Colour::Amber:
        return Colours::Of(Colours::Amber, palette);
    case Drawing::Colour::Gray:
        return Colours::Of(Colours::Gray, palette);
    case Drawing::Colour::Dimmed:
        return Colours::LegibleDisabledText(palette);
    case Drawing::Colour::Text:
        break;
    }
    return palette.color(QPalette::WindowText);
}

QColor FillOf(Drawing::Colour colour, const QPalette &palette) {
    return colour == Drawing::Colour::Dimmed ? palette.color(QPalette::Disabled, QPalette::Text)
                                             : ColourOf(colour, palette);
}

void PaintLine(QPainter &painter, const PageScale &scale, const Drawing::Line &line, const QColor &colour,
               QPointF origin) {
    QPointF from = ToPoint(scale, line.x1, line.y1, origin);
    QPointF to = ToPoint(scale, line.x2, line.y2, origin);
    const QTransform &device = painter.deviceTransform();
    const double width = DeviceWidth(painter, scale, line.width);
    if (line.x1 == line.x2) {
        from.setX(Snapped(from.x(), device.m11(), device.dx(), width));
        to.setX(from.x());
    }
    if (line.y1 == line.y2) {
        from.setY(Snapped(from.y(), device.m22(), device.dy(), width));
        to.setY(from.y());
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(PenOf(painter, scale, line, colour));
    painter.drawLine(from, to);
}

void PaintCurve(QPainter &painter, const PageScale &scale, const std::vector<Drawing::Line> &segments,
                const QPalette &palette) {
    QPolygonF points;
    for (const Drawing::Line &segment : segments) {
        if (!segment.visible) {
            continue;
        }
        if (points.isEmpty()) {
            points << ToPoint(scale, segment.x1, segment.y1, {});
        }
        points << ToPoint(scale, segment.x2, segment.y2, {});
    }
    if (!points.isEmpty()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(PenOf(painter, scale, segments.front(), ColourOf(segments.front().colour, palette)));
        painter.drawPolyline(points);
    }
}

void PaintShape(QPainter &painter, const PageScale &scale, const Drawing::Shape &shape, const QColor &fill,
                const QRect &frame) {
    const double width = std::max(1, scale.Pixels(1));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(fill.darker(), width));
    painter.setBrush(fill);
    const QRectF place = scale.FromTwips(shape.left, shape.top, shape.width, shape.height).intersected(frame);
    const double half = width / 2;
    const QRectF outline = place.adjusted(half, half, -half, -half); // keeps the pen within the shape
    if (shape.outline == Drawing::Outline::Circle) {
        painter.drawEllipse(outline);
    } else {
        painter.drawRect(outline);
    }
}

void PaintLamp(QPainter &painter, const QRectF &square, bool lit, const QColor &colour) {
    const double pen = square.width() * rimPart;
    const double margin = pen / 2 + square.width() * marginPart;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, pen));
    painter.setBrush(lit ? QBrush(colour) : QBrush(Qt::NoBrush));
    painter.drawEllipse(square.adjusted(margin, margin, -margin, -margin));
}

// Bright amber needs a rim to be seen on white.
void PaintWarning(QPainter &painter, const QRectF &square, const QPalette &palette) {
    const double margin = square.width() * marginPart;
    const QRectF place = square.adjusted(margin, margin, -margin, -margin);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ColourOf(Drawing::Colour::Amber, palette), square.width() * rimPart));
    painter.setBrush(QColor::fromRgb(Colours::Amber.onDark));
    painter.drawPolygon(
        QPolygonF({QPointF(place.center().x(), place.top()), place.bottomRight(), place.bottomLeft()}));
}

} // namespace DrawingPainter

} // namespace ztv
