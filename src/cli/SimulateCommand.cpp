#include "cli/Commands.h"

namespace ztv {

ExitStatus Simulate(CommandRun &) {
    throw Failure(ExitStatus::WrongUse, QStringLiteral("not there yet"));
}

} // namespace ztv
