#pragma once

#include <QPainter>
#include <QPalette>
#include <QWidget>

namespace ztv {

// An edge and a sign over a control whose value the sensor hasn't confirmed. Follows the control's size and
// takes no clicks. An assistive client reads it as the control's description.
class FailedMark : public QWidget {
    Q_OBJECT

public:
    // Shows or removes the mark of the control. Cheap while nothing changes.
    static void Show(QWidget &control, bool failed);

    // Paints the mark around `place`.
    static void Paint(QPainter &painter, const QRect &place, const QPalette &palette);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    explicit FailedMark(QWidget &control);
    void Cover();
    void Describe();
    void TakeDescriptionBack();

    QString givenDescription_;
};

} // namespace ztv
