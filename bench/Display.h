#pragma once

#include <QProcess>
#include <QString>
#include <cstdint>
#include <functional>
#include <xcb/xcb.h>

namespace ztv {

// A display without a screen, for programs that know no other. Programs that are started while it lives
// show their windows on it.
class Display {
public:
    static bool Available();

    // Throws std::runtime_error when it doesn't come up.
    Display();
    ~Display();
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    // The time, on the clock of Measure::NowMs, at which the next window shows. Throws std::runtime_error
    // when none does.
    double WaitForWindow();

    // Waits until that window is gone, so that nothing of its program is taken for the next one.
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
