#pragma once

#include <QObject>
#include <functional>

namespace ztv {

// Reports when the program's first window has been painted completely.
class FirstPaint : public QObject {
    Q_OBJECT

public:
    explicit FirstPaint(std::function<void()> onPainted);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> onPainted_;
};

// Prints one line: the stage, the clock, the processor time, the memory.
void ReportStage(const char *stage);

} // namespace ztv
