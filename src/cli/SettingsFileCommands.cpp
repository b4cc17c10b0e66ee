#include "cli/Commands.h"

namespace ztv {

ExitStatus Save(CommandRun &) {
    throw Failure(ExitStatus::WrongUse, QStringLiteral("not there yet"));
}

ExitStatus Load(CommandRun &) {
    throw Failure(ExitStatus::WrongUse, QStringLiteral("not there yet"));
}

ExitStatus Diff(CommandRun &) {
    throw Failure(ExitStatus::WrongUse, QStringLiteral("not there yet"));
}

} // namespace ztv
