#include "shell/WindowPlacement.h"

#include "widgets/Controls.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace ztv {

namespace {

constexpr int titleBarAllowance = 32; // pixels of the window's title that must stay reachable

} // namespace

void WindowPlacement::Restore() {
    const WindowPlace place = ReadWindowPlace(store_);
    const QRect wanted = Controls::FromTwips(place.left, place.top, place.width, place.height);
    const QRect title(wanted.topLeft(), QSize(wanted.width(), titleBarAllowance));
    QRect desktop;
    bool withinReach = false;
    for (const QScreen *screen : QGuiApplication::screens()) {
        desktop |= screen->geometry();
        withinReach = withinReach || screen->availableGeometry().intersects(title);
    }
    window_.resize(wanted.size().boundedTo(2 * desktop.size())); // a far larger window can't be painted
    window_.move(withinReach ? wanted.topLeft() : QPoint(0, 0));
    storedState_ = ReadWindowState(store_);
}

void WindowPlacement::Show() {
    switch (storedState_) {
    case WindowState::Minimised:
        window_.showMinimized();
        break;
    case WindowState::Maximised:
        window_.showMaximized();
        break;
    case WindowState::Normal:
        window_.show();
        break;
    }
}

bool WindowPlacement::Store() {
    if (window_.isMinimized()) {
        return true;
    }
    const bool maximised = window_.isMaximized();
    bool stored = WriteWindowState(store_, maximised ? WindowState::Maximised : WindowState::Normal);
    const std::optional<WindowPlace> place = window_.isFullScreen() ? beforeFullScreen_ : Place();
    if (!maximised && place) {
        stored = WriteWindowPlace(store_, *place) && stored;
    }
    return stored;
}

WindowPlace WindowPlacement::Place() const {
    const auto twips = [](int pixels) { return static_cast<double>(pixels * Controls::TwipsPerPixel); };
    return {.top = twips(window_.y()),
            .left = twips(window_.x()),
            .height = twips(window_.height()),
            .width = twips(window_.width())};
}

void WindowPlacement::ToggleFullScreen() {
    beforeFullScreen_.reset();
    if (!window_.isFullScreen()) {
        beforeFullScreen_ = Place();
    }
    window_.setWindowState(window_.windowState() ^ Qt::WindowFullScreen); // keeps "maximised"
}

} // namespace ztv
