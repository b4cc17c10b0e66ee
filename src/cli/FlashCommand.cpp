#include "cli/Commands.h"

namespace ztv {

ExitStatus Flash(CommandRun &) {
    throw Failure(ExitStatus::WrongUse, QStringLiteral("not there yet"));
}

} // namespace ztv
