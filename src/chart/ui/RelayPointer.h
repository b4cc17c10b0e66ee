#pragma once

#include "chart/RelayDrag.h"
#include "chart/ui/RelayMarker.h"
#include "widgets/PageScale.h"

#include <QHelpEvent>
#include <QObject>
#include <optional>
#include <vector>

namespace ztv {

// Sends mouse events to the marker whose line is nearest to the pointer, even where another marker, which is
// wider than its line, lies on top. Of two equally near lines the first wins.
class RelayPointer : public QObject {
    Q_OBJECT

public:
    // `markers` are numbered as PicRelay; `scale` is the page's present one. REQUIRES: all arguments outlive
    // this.
    RelayPointer(const BasicDrawing &drawing, RelayDrag &drag, const PageScale &scale,
                 std::vector<RelayMarker *> markers);

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
    const PageScale &scale_;
    std::vector<RelayMarker *> markers_;
    std::optional<int> held_; // by the left button
};

} // namespace ztv
