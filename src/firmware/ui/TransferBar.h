#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QWidget>
#include <vector>

namespace ztv {

// Shows the progress of a transfer and the time left. Keeps its space while there is no transfer. A transfer
// may start inside another, which is shown again after the inner one has ended. One that failed remains, in
// words and colour, until the next starts.
class TransferBar : public QWidget {
    Q_OBJECT

public:
    explicit TransferBar(QWidget *parent = nullptr);

    void Start(const QString &what);
    void Advance(double done); // of the whole, 0 to 1
    void End(bool finished);
    void Clear(); // removes what remains of a failed transfer

protected:
    void changeEvent(QEvent *event) override;

private:
    struct Transfer {
        QString what;
        QElapsedTimer elapsed;
        qint64 shownAtMs = 0;
    };

    void Show(const QString &what);
    void ShowFailed(const QString &what);
    void Hide();
    void Colour();

    QProgressBar *progress_;
    QLabel *timeLeft_;
    std::vector<Transfer> transfers_; // the innermost last
    bool failed_ = false;
};

} // namespace ztv
