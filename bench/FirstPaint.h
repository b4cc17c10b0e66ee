#pragma once

#include <QObject>
#include <functional>

namespace ztv {

// Waits for the first window of the program to be painted as a whole.
class FirstPaint : public QObject {
    Q_OBJECT

public:
    explicit FirstPaint(std::function<void()> onPainted);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> onPainted_;
};

// One line on standard output: the stage, the clock, the processor time, the memory.
void ReportStage(const char *stage);

} // namespace ztv
