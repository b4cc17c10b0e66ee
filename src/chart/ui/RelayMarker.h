#pragma once

#include "chart/RelayDrag.h"

#include <QWidget>

// The marker of a relay's threshold, with its keys. The strip itself is a hair; this is as wide as a hand
// needs it. Markers lie over each other, so the mouse is RelayPointer's.
class RelayMarker : public QWidget {
    Q_OBJECT

public:
    // The drawing and the drag must outlive this.
    RelayMarker(const BasicDrawing &drawing, RelayDrag &drag, int number, QWidget *parent);

    // Where this stands for the strip's place in the drawing.
    QRect Place() const;

    // The column of the chart's pixels that the line is painted in.
    int LineColumn() const;

    // The pointer is, or isn't, at this marker.
    void ShowHover(bool hovered);

Q_SIGNALS:
    void Moved(); // the drawing may have changed

    // The user wants to type the threshold; `first` is the digit that says so, if it was one.
    void EditWanted(QChar first);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void MoveByKey(const QKeyEvent &key);
    void LetGoOfKey();
    void PaintNumber(QPainter &painter, const QColor &colour);

    const BasicDrawing &drawing_;
    RelayDrag &drag_;
    int number_;
    bool movedByKey_ = false;
    bool hovered_ = false;
};
