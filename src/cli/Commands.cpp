#include "cli/Commands.h"

namespace ztv {

ExitStatus RunCommand(const Arguments &arguments, const Surroundings &around) {
    using Command = Arguments::Command;
    CommandRun run(arguments, around);
    switch (arguments.command) {
    case Command::Ports:
        return Ports(run);
    case Command::Parameters:
        return Parameters(run);
    case Command::Search:
        return Search(run);
    case Command::Info:
        return Info(run);
    case Command::Get:
        return Get(run);
    case Command::Set:
        return Set(run);
    case Command::Save:
        return Save(run);
    case Command::Load:
        return Load(run);
    case Command::Diff:
        return Diff(run);
    case Command::Store:
        return Store(run);
    case Command::Reinit:
        return Reinit(run);
    case Command::Watch:
        return Watch(run);
    case Command::Flash:
        return Flash(run);
    case Command::Trace:
        return Trace(run);
    case Command::Simulate:
        return Simulate(run);
    }
    return ExitStatus::WrongUse;
}

} // namespace ztv
