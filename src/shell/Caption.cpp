#include "shell/Caption.h"

#include "support/ApplicationTitle.h"
#include "support/PathFunctions.h"

#include <QDir>

namespace ztv {

namespace {

// On systems other than Windows a backslash is part of a name.
QString LastComponent(const QString &path) {
    return QDir::separator() == u'\\' ? PathFunctions::FileNameOfPath(path) : path.section(u'/', -1);
}

} // namespace

void UpdateCaption(QWidget &form, const QString &currentFileName) {
    if (currentFileName.isEmpty()) {
        return;
    }
    QString name = LastComponent(currentFileName);
    name.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")); // the escaped form of "[*]" in a title
    form.setWindowTitle(name + QStringLiteral(" - ") + ApplicationTitle());
}

} // namespace ztv
