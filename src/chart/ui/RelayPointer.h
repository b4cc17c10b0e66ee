#pragma once

#include "chart/RelayDrag.h"
#include "chart/ui/RelayMarker.h"

#include <QHelpEvent>
#include <QObject>
#include <optional>
#include <vector>

// Leads the mouse to the marker whose line is nearest to the pointer, whichever of the markers, each wider
// than its line, lies on top there. Of two lines that are as near the first one is taken.
class RelayPointer : public QObject {
    Q_OBJECT

public:
    // By the numbers of PicRelay. All must outlive this.
    RelayPointer(const BasicDrawing &drawing, RelayDrag &drag, std::vector<RelayMarker *> markers);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void Moved(); // the drawing may have changed

private:
    int Nearest(const QPoint &inChart) const;
    QRect NearestPartOf(const QWidget &under, int number) const;
    void ShowToolTip(QWidget &under, const QHelpEvent &help) const;
    float InMarker(int number, const QPointF &inChart) const;
    void Press(const QMouseEvent &event, const QPointF &inChart);
    void Move(const QMouseEvent &event, const QPointF &inChart);
    void Release(const QMouseEvent &event);
    void AbandonDrag();
    void ShowHover(std::optional<int> number);

    const BasicDrawing &drawing_;
    RelayDrag &drag_;
    std::vector<RelayMarker *> markers_;
    std::optional<int> held_; // by the left button
};
