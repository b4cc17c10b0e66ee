#pragma once

#include "setup/LiveReading.h"

#include <QLabel>

namespace ztv {

// A word about a state, behind a mark whose colour and shape say whether it is good. It keeps the room of its
// longest text, so that nothing moves; a text that finds less room is elided and whole in the tool tip.
class StateLabel : public QLabel {
    Q_OBJECT

public:
    explicit StateLabel(const QString &longest, QWidget *parent = nullptr);

    // Shows nothing for an empty text. Costs nothing if that shows already.
    void Show(LiveReading::Tone tone, const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    int MarkSide() const;
    int TextLeft() const;
    QString Shortened() const;
    void Explain();
    void Colour();

    QString longest_;
    LiveReading::Tone tone_ = LiveReading::Tone::Bad;
};

} // namespace ztv
