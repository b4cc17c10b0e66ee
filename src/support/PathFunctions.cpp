#include "support/PathFunctions.h"

namespace ztv {

QString PathFunctions::FileNameOfPath(const QString &path) {
    return path.mid(path.lastIndexOf(u'\\') + 1);
}

} // namespace ztv
