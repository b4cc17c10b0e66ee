#include "cli/Commands.h"

namespace ztv {

ExitStatus Set(CommandRun &) {
    throw Failure(ExitStatus::WrongUse, QStringLiteral("not there yet"));
}

} // namespace ztv
