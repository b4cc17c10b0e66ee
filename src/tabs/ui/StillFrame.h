#pragma once

#include <QGroupBox>
#include <QPixmap>

// A group box that is drawn once and kept. What changes in it with every poll lies over it and has that much
// of it painted again, which costs more than the change where the style draws border and caption anew.
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
