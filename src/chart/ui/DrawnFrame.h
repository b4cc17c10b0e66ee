#pragma once

#include "chart/BasicDrawing.h"
#include "chart/DrawingChanges.h"
#include "widgets/PageScale.h"

#include <QFrame>

namespace ztv {

// A frame of the Basic tab that paints the lines and shapes in it.
class DrawnFrame : public QFrame {
    Q_OBJECT

public:
    // An opaque frame paints its own background, so that the widgets below it aren't painted on each tick.
    // REQUIRES: `drawing` and `scale`, the page's present one, outlive this.
    DrawnFrame(const BasicDrawing &drawing, const PageScale &scale, Drawing::ControlId id, bool opaque,
               QWidget *parent);

    // Sets the place of the drawing's origin, in pixels of this frame, where it isn't the frame's corner.
    void Origin(const QPoint &origin);

    // Schedules a repaint of an area of this frame.
    void UpdateArea(const DrawingChanges::Area &area);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const BasicDrawing &drawing_;
    const PageScale &scale_;
    Drawing::ControlId id_;
    bool opaque_;
    QPoint origin_;
};

} // namespace ztv
