#pragma once

#include <QGroupBox>
#include <QPixmap>

namespace ztv {

// A group box that is drawn once and cached. A child that changes at each poll makes the part of the group
// box below it repaint; a style that draws border and caption again needs more time for that than the child.
class StillFrame : public QGroupBox {
    Q_OBJECT

public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void Draw();

    QPixmap picture_;
};

} // namespace ztv
