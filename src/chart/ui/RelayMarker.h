#pragma once

#include "chart/RelayDrag.h"
#include "widgets/PageScale.h"

#include <QWidget>

namespace ztv {

// The marker of a relay's threshold; handles its keys. It is wider than the strip in the drawing, so that the
// mouse can grab it. Markers overlap, so RelayPointer handles the mouse.
class RelayMarker : public QWidget {
    Q_OBJECT

public:
    // REQUIRES: the drawing, the drag and `scale`, the page's present one, outlive this.
    RelayMarker(const BasicDrawing &drawing, RelayDrag &drag, const PageScale &scale, int number,
                QWidget *parent);

    // Returns the geometry of this widget for the strip's present place in the drawing.
    QRect Place() const;

    // Returns the column of the chart's pixels in which the line is painted.
    int LineColumn() const;

    // Shows whether the pointer is at this marker.
    void ShowHover(bool hovered);

Q_SIGNALS:
    void Moved(); // the drawing may have changed

    // The user wants to type the threshold. `first` is the digit that was pressed, or null for Enter.
    void EditWanted(QChar first);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int Grab() const;
    int LineInStrip() const;
    void MoveByKey(const QKeyEvent &key);
    void LetGoOfKey();
    void ShowName();
    void PaintNumber(QPainter &painter, const QColor &colour);

    const BasicDrawing &drawing_;
    RelayDrag &drag_;
    const PageScale &scale_;
    int number_;
    bool movedByKey_ = false;
    bool named_ = false; // the label showed when this lost the focus
    bool hovered_ = false;
};

} // namespace ztv
