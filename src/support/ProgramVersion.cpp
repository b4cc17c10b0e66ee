#include "support/ProgramVersion.h"

namespace ztv {

QString ProgramVersion() {
    return QStringLiteral(ZTV_VERSION);
}

} // namespace ztv
