#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QWidget>

// How far a transfer has come, and the time that it will still take. Keeps its room while there is none.
class TransferBar : public QWidget {
    Q_OBJECT

public:
    explicit TransferBar(QWidget *parent = nullptr);

    void Start(const QString &what);
    void Advance(double done); // of the whole, 0 to 1
    void End();

private:
    QProgressBar *progress_;
    QLabel *timeLeft_;
    QElapsedTimer elapsed_;
    qint64 shownAtMs_ = 0;
};
