#pragma once

#include <QHash>
#include <QLabel>
#include <QPixmap>

namespace ztv {

// A label whose text is as large as the label permits. Drawing digits of that size from their outlines at
// each poll is too slow, so each character is drawn once and cached.
class LargeNumber : public QLabel {
    Q_OBJECT

public:
    // Chooses the font so that `longest` fits.
    LargeNumber(const QString &longest, QWidget *parent);

    // Shows a number. Paints only the characters that differ from the previous one.
    void Show(const QString &number);

    // Shows the text in the colour of disabled text, or in that of text.
    void Dim(bool dimmed);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    const QPixmap &Picture(QChar character);
    QRect PlaceOf(const QString &number) const;
    QRect ChangedPart(const QString &number) const;
    void FitFont();

    QString longest_;
    bool dimmed_ = false;
    QHash<QChar, QPixmap> pictures_;
};

} // namespace ztv
