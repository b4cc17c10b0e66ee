#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "support/ApplicationTitle.h"
#include "support/Fault.h"
#include "support/ProgramFolder.h"

#include <QCoreApplication>
#include <csignal>
#include <cstdio>

namespace ztv {

namespace {

constexpr int endedBySignal = 128; // a shell's own convention; the signal's number is added

// A reader that goes must not end a transfer to the sensor.
void OutliveReaders() {
#ifdef Q_OS_UNIX
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

// Ends as any program does whose reader is gone.
int EndWithoutReader() {
#ifdef Q_OS_UNIX
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
#endif
    return static_cast<int>(ExitStatus::File);
}

ExitStatus Run(const Arguments &arguments) {
    const SettingsStore settings(ApplicationTitle());
    return RunCommand(
        arguments, {.settings = settings, .programFolder = ProgramFolder(), .console = Console::OfProcess()});
}

int RunProgram(int argc, char *argv[]) {
    Console console(Console::OfProcess(), false);
    try {
        const std::optional<Arguments> arguments = ParseArguments(argc, argv);
        return static_cast<int>(arguments ? Run(*arguments) : ExitStatus::Done);
    } catch (const Failure &failure) {
        console.Fail(failure.Text());
        return static_cast<int>(failure.Status());
    } catch (const Fault &fault) { // of the presets or a setting
        console.Fail(fault.Description().simplified());
        return static_cast<int>(ExitStatus::File);
    } catch (const Interrupted &) {
        return endedBySignal + Interruption::Signal();
    } catch (const ReaderGone &) {
        return EndWithoutReader();
    }
}

} // namespace

} // namespace ztv

int main(int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    ztv::OutliveReaders();
    const ztv::Interruption interruption;
    return ztv::RunProgram(argc, argv);
}
