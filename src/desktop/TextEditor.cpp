#include "desktop/TextEditor.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <array>

namespace {

// The desktop's own opener may not know what to do with a name that it has never heard of; an editor does.
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
