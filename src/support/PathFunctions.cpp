#include "support/PathFunctions.h"

QString PathFunctions::FileNameOfPath(const QString &path) {
    return path.mid(path.lastIndexOf(u'\\') + 1);
}
