#include "cli/Commands.h"
#include "support/ApplicationTitle.h"
#include "support/Fault.h"
#include "support/ProgramFolder.h"

#include <QCoreApplication>

namespace ztv {

namespace {

ExitStatus Run(const Arguments &arguments) {
    const SettingsStore settings(ApplicationTitle());
    return RunCommand(arguments, {.settings = settings, .programFolder = ProgramFolder()});
}

ExitStatus RunProgram(int argc, char *argv[]) {
    try {
        const std::optional<Arguments> arguments = ParseArguments(argc, argv);
        return arguments ? Run(*arguments) : ExitStatus::Done;
    } catch (const Failure &failure) {
        PrintMessage(stderr, failure.Text());
        return failure.Status();
    } catch (const Fault &fault) { // of the presets or a setting
        PrintMessage(stderr, fault.Description().simplified());
        return ExitStatus::File;
    }
}

} // namespace

} // namespace ztv

int main(int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    return static_cast<int>(ztv::RunProgram(argc, argv));
}
