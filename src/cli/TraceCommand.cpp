#include "cli/Commands.h"

namespace ztv {

ExitStatus Trace(CommandRun &) {
    throw Failure(ExitStatus::WrongUse, QStringLiteral("not there yet"));
}

} // namespace ztv
