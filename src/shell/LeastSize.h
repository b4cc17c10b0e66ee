#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <functional>

class QScreen;
class QWidget;

namespace ztv {

// Keeps a window's smallest size: the given one, or what the screen has where that is less. There it also
// makes a larger window smaller, so that its lower and right edges stay on the screen.
class LeastSize : public QObject {
    Q_OBJECT

public:
    // Returns the part of a screen that a window may cover.
    using Room = std::function<QRect(const QScreen &)>;

    static QRect AvailableRoom(const QScreen &screen);

    // REQUIRES: `window` outlives this.
    LeastSize(QWidget &window, const QSize &given, Room room = AvailableRoom);

    // Adapts to the window's present screen. Called by itself when the window is shown or comes to another
    // screen, and when that screen changes.
    void Update();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QScreen *Screen() const;
    void Watch();
    void KeepOnScreen(const QRect &room, const QSize &frame);

    QWidget &window_;
    QSize given_;
    Room room_;
    QPointer<QScreen> watched_;
    QSize frame_;
    bool sizeFollows_ = false; // the window is about to get the size of its new state
};

} // namespace ztv
