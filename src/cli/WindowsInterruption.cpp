#include "cli/Interruption.h"

#include <atomic>
#include <csignal>
#include <qt_windows.h>

namespace ztv {

namespace {

std::atomic<Interruption *> present = nullptr;
std::atomic<int> taken = 0;

} // namespace

// The system calls it on a thread of its own.
class ConsoleHandler {
public:
    static BOOL WINAPI OnEvent(DWORD event) {
        Interruption *interruption = present;
        if (interruption == nullptr || taken.exchange(SignalOf(event)) != 0) {
            return FALSE; // ends the process
        }
        QMetaObject::invokeMethod(interruption, [interruption] { interruption->Take(); });
        return TRUE;
    }

private:
    static int SignalOf(DWORD event) { return event == CTRL_C_EVENT ? SIGINT : SIGTERM; }
};

Interruption::Interruption() {
    taken = 0;
    present = this;
    SetConsoleCtrlHandler(&ConsoleHandler::OnEvent, TRUE);
}

Interruption::~Interruption() {
    SetConsoleCtrlHandler(&ConsoleHandler::OnEvent, FALSE);
    present = nullptr;
}

Interruption *Interruption::Present() {
    return present;
}

int Interruption::Signal() {
    return taken;
}

void Interruption::Take() {
    Q_EMIT Wanted();
}

} // namespace ztv
