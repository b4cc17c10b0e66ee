#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QWidget>
#include <vector>

namespace ztv {

// Shows the progress of a transfer and the time left. Keeps its space while there is no transfer. A transfer
// may start inside another, which is shown again after the inner one has ended.
class TransferBar : public QWidget {
    Q_OBJECT

public:
    explicit TransferBar(QWidget *parent = nullptr);

    void Start(const QString &what);
    void Advance(double done); // of the whole, 0 to 1
    void End();

private:
    struct Transfer {
        QString what;
        QElapsedTimer elapsed;
        qint64 shownAtMs = 0;
    };

    void Show(const QString &what);

    QProgressBar *progress_;
    QLabel *timeLeft_;
    std::vector<Transfer> transfers_; // the innermost last
};

} // namespace ztv
