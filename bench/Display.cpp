#include "bench/Display.h"

#include "bench/Measure.h"

#include <QStandardPaths>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <stdexcept>

namespace ztv {

namespace {

constexpr int patienceMs = 30000;
constexpr int pulseMs = 100; // bounds each wait, so that the deadline is checked

QString Server() {
    return QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
}

} // namespace

bool Display::Available() {
    return !Server().isEmpty();
}

Display::Display() : formerPlatform_(qgetenv("QT_QPA_PLATFORM")), formerDisplay_(qgetenv("DISPLAY")) {
    StartServer();
    WatchWindows();
    qputenv("QT_QPA_PLATFORM", "xcb");
}

Display::~Display() {
    qputenv("QT_QPA_PLATFORM", formerPlatform_);
    qputenv("DISPLAY", formerDisplay_);
    xcb_disconnect(connection_);
    server_.terminate();
    server_.waitForFinished();
}

void Display::StartServer() {
    // The server chooses a free number, prints it, and doesn't reset when its last client disconnects.
    server_.start(Server(), {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-noreset"),
                             QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-screen"),
                             QStringLiteral("0"), QStringLiteral("1280x1024x24")});
    if (!server_.waitForReadyRead(patienceMs)) {
        throw std::runtime_error("the display doesn't start");
    }
    qputenv("DISPLAY", ':' + server_.readLine().trimmed());
}

void Display::WatchWindows() {
    connection_ = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("the display can't be reached");
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection_);
}

void Display::WaitFor(const std::function<bool(const xcb_generic_event_t &)> &wanted) {
    const double deadline = Measure::NowMs() + patienceMs;
    while (Measure::NowMs() < deadline) {
        while (xcb_generic_event_t *raw = xcb_poll_for_event(connection_)) {
            const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(raw, &std::free);
            if (wanted(*event)) {
                return;
            }
        }
        pollfd wait = {.fd = xcb_get_file_descriptor(connection_), .events = POLLIN, .revents = 0};
        poll(&wait, 1, pulseMs);
    }
    throw std::runtime_error("a window doesn't come or go");
}

double Display::WaitForWindow() {
    WaitFor([this](const xcb_generic_event_t &event) {
        if (event.response_type != XCB_MAP_NOTIFY) {
            return false;
        }
        window_ = reinterpret_cast<const xcb_map_notify_event_t &>(event).window;
        return true;
    });
    return Measure::NowMs();
}

void Display::WaitForItsEnd() {
    WaitFor([this](const xcb_generic_event_t &event) {
        return event.response_type == XCB_DESTROY_NOTIFY &&
               reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window == window_;
    });
}

} // namespace ztv
