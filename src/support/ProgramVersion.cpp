#include "support/ProgramVersion.h"

QString ProgramVersion() {
    return QStringLiteral(ZTV_VERSION);
}
