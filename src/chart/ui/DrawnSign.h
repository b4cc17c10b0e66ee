#pragma once

#include "chart/BasicDrawing.h"

#include <QWidget>

namespace ztv {

// A lamp or mark of the Basic tab: a small figure with the number of its relay. Its tool tip is also read
// out.
class DrawnSign : public QWidget {
    Q_OBJECT

public:
    // REQUIRES: `drawing` outlives this.
    DrawnSign(const BasicDrawing &drawing, Drawing::ControlId id, QWidget *parent);

    // Takes the texts from the drawing.
    void ShowTexts();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const BasicDrawing &drawing_;
    Drawing::ControlId id_;
};

} // namespace ztv
