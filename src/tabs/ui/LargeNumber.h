#pragma once

#include <QHash>
#include <QLabel>
#include <QPixmap>

// A label whose text is as large as it has room for. Digits of that size are drawn from their outlines
// anew each time, which a value that changes with every poll can't afford, so each is drawn once and kept.
class LargeNumber : public QLabel {
    Q_OBJECT

public:
    // `longest` must always fit.
    LargeNumber(const QString &longest, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    const QPixmap &Picture(QChar character);
    void FitFont();

    QString longest_;
    QHash<QChar, QPixmap> pictures_;
};
