#include "shell/LeastSize.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <utility>

namespace ztv {

namespace {

// The pixels of a window's frame and title, until the desktop tells them.
constexpr QSize usualFrame(4, 32);

QSize FrameOf(const QWidget &window) {
    return (window.frameGeometry().size() - window.size()).expandedTo(usualFrame);
}

} // namespace

QRect LeastSize::AvailableRoom(const QScreen &screen) {
    return screen.availableGeometry();
}

LeastSize::LeastSize(QWidget &window, const QSize &given, Room room)
    : window_(window),
      given_(given),
      room_(std::move(room)) {
    window_.installEventFilter(this);
    Update();
}

QScreen *LeastSize::Screen() const {
    if (window_.windowHandle() != nullptr) {
        return window_.windowHandle()->screen();
    }
    QScreen *below = QGuiApplication::screenAt(window_.geometry().center());
    return below != nullptr ? below : QGuiApplication::primaryScreen();
}

void LeastSize::Update() {
    Watch();
    const QScreen *screen = Screen();
    if (screen == nullptr) {
        return;
    }
    const QRect room = room_(*screen);
    const QSize frame = FrameOf(window_);
    frame_ = frame;
    window_.setMinimumSize(given_.boundedTo(room.size() - frame));
    if (!(window_.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized))) {
        KeepOnScreen(room, frame);
    }
}

// Leaves alone a width or height for which the screen has the given room: the user chose it.
void LeastSize::KeepOnScreen(const QRect &room, const QSize &frame) {
    const QSize most = room.size() - frame;
    const QSize size = window_.size();
    const bool tooWide = most.width() < given_.width() && size.width() > most.width();
    const bool tooHigh = most.height() < given_.height() && size.height() > most.height();
    if (tooWide || tooHigh) {
        window_.resize(tooWide ? most.width() : size.width(), tooHigh ? most.height() : size.height());
        window_.move(tooWide ? room.left() : window_.x(), tooHigh ? room.top() : window_.y());
    }
}

void LeastSize::Watch() {
    QScreen *screen = Screen();
    if (watched_ == screen) {
        return;
    }
    if (watched_) {
        watched_->disconnect(this);
    }
    watched_ = screen;
    if (screen != nullptr) {
        connect(screen, &QScreen::availableGeometryChanged, this, &LeastSize::Update);
        connect(screen, &QScreen::geometryChanged, this, &LeastSize::Update);
    }
}

bool LeastSize::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::Show:
        connect(window_.windowHandle(), &QWindow::screenChanged, this, &LeastSize::Update,
                Qt::UniqueConnection);
        Update();
        break;
    case QEvent::Move:
        if (FrameOf(window_) != frame_) {
            Update(); // the desktop has told the frame
        }
        break;
    case QEvent::WindowStateChange: // its size follows, sooner or later
        sizeFollows_ = true;
        QMetaObject::invokeMethod(this, &LeastSize::Update, Qt::QueuedConnection);
        break;
    case QEvent::Resize:
        if (std::exchange(sizeFollows_, false)) {
            QMetaObject::invokeMethod(this, &LeastSize::Update, Qt::QueuedConnection);
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ztv
