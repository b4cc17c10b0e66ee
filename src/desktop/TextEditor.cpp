#include "desktop/TextEditor.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <array>

namespace ztv {

namespace {

// Tries the desktop's own opener last, because it may know no program for a name of an unknown type. An
// editor opens any file.
constexpr std::array editors = {"gnome-text-editor", "gedit",   "kwrite", "kate",
                                "mousepad",          "xed",     "pluma",  "featherpad",
                                "leafpad",           "l3afpad", "geany",  "xdg-open"};

bool Start(const QString &program, const QString &fileName) {
    const QString path = QStandardPaths::findExecutable(program);
    return !path.isEmpty() && QProcess::startDetached(path, {QDir::toNativeSeparators(fileName)});
}

} // namespace

bool TextEditor::Show(const QString &command, const QString &fileName) {
    if (Start(command, fileName)) {
        return true;
    }
    for (const char *editor : editors) {
        if (Start(QString::fromLatin1(editor), fileName)) {
            return true;
        }
    }
    return false;
}

} // namespace ztv
