#pragma once

#include <QProcess>
#include <QString>
#include <cstdint>
#include <functional>
#include <xcb/xcb.h>

namespace ztv {

// A display server without a screen. Programs that are started while it exists show their windows on it.
class Display {
public:
    static bool Available();

    // Throws std::runtime_error if the server doesn't start.
    Display();
    ~Display();
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    // Waits for the next window and returns the time of its appearance, on the clock of Measure::NowMs.
    // Throws std::runtime_error if none appears.
    double WaitForWindow();

    // Waits until that window is gone, so that it isn't mistaken for the next program's.
    void WaitForItsEnd();

private:
    void StartServer();
    void WatchWindows();
    void WaitFor(const std::function<bool(const xcb_generic_event_t &)> &wanted);

    QProcess server_;
    QByteArray formerPlatform_;
    QByteArray formerDisplay_;
    xcb_connection_t *connection_ = nullptr;
    std::uint32_t window_ = 0;
};

} // namespace ztv
