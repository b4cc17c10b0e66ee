#include "cli/Commands.h"

namespace ztv {

ExitStatus Search(CommandRun &) {
    throw Failure(ExitStatus::WrongUse, QStringLiteral("not there yet"));
}

} // namespace ztv
