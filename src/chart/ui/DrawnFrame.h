#pragma once

#include "chart/BasicDrawing.h"
#include "chart/DrawingChanges.h"

#include <QFrame>

// A frame of the Basic tab, with the lines and shapes that stand in it.
class DrawnFrame : public QFrame {
    Q_OBJECT

public:
    // The drawing must outlive this. An opaque one paints its own background, so that what is behind it isn't
    // painted on each tick.
    DrawnFrame(const BasicDrawing &drawing, Drawing::ControlId id, bool opaque, QWidget *parent);

    // Has an area of it painted again.
    void UpdateArea(const DrawingChanges::Area &area);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const BasicDrawing &drawing_;
    Drawing::ControlId id_;
    bool opaque_;
};
