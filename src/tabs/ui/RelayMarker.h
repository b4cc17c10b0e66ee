#pragma once

#include "tabs/RelayDrag.h"

#include <QWidget>

// The marker of a relay's threshold. The strip itself is a hair; this is as wide as a hand needs it.
class RelayMarker : public QWidget {
    Q_OBJECT

public:
    // The drawing and the drag must outlive this.
    RelayMarker(const BasicDrawing &drawing, RelayDrag &drag, int number, QWidget *parent);

    // Where this stands for the strip's place in the drawing.
    QRect Place() const;

Q_SIGNALS:
    void Moved(); // the drawing may have changed

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void LetGoOfKey();
    void PaintNumber(QPainter &painter, const QColor &colour);

    const BasicDrawing &drawing_;
    RelayDrag &drag_;
    int number_;
    bool movedByKey_ = false;
};
