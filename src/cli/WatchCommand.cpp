#include "cli/Commands.h"

namespace ztv {

ExitStatus Watch(CommandRun &) {
    throw Failure(ExitStatus::WrongUse, QStringLiteral("not there yet"));
}

} // namespace ztv
