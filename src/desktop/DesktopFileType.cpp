#include "desktop/DesktopFileType.h"

#include "desktop/DesktopEntry.h"
#include "desktop/MimePackage.h"
#include "support/ReplaceContent.h"
#include "support/SettingsFileType.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace ztv {

namespace {

QString InDataFolder(const QString &path) {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u'/' + path;
}

QString EntryName() {
    return QStringLiteral("applications/ztv-link.desktop");
}

QString IconName() {
    return QStringLiteral("ztv-link");
}

bool Write(const QString &path, const QByteArray &content) {
    return QDir().mkpath(QFileInfo(path).path()) && TryReplaceContent(path, content);
}

bool WriteIcons(const QByteArray &icon) {
    const QString theme = InDataFolder(QStringLiteral("icons/hicolor/"));
    // The icon of a MIME type has the type's name.
    const QString ofType = SettingsFileType::MimeType().replace(u'/', u'-');
    if (!Write(theme + QStringLiteral("scalable/apps/") + IconName() + QStringLiteral(".svg"), icon) ||
        !Write(theme + QStringLiteral("scalable/mimetypes/") + ofType + QStringLiteral(".svg"), icon)) {
        return false;
    }
    // Changes the time of the theme's folder, so that caches of the theme count as outdated.
    QTemporaryFile(theme + QStringLiteral("XXXXXX")).open();
    return true;
}

// Starts a tool without output to the program's own terminal, and ignores failures.
void RunTool(const QString &name, const QString &folder) {
    const QString tool = QStandardPaths::findExecutable(name);
    if (tool.isEmpty()) {
        return;
    }
    QProcess process;
    process.setProgram(tool);
    process.setArguments({folder});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.startDetached();
}

} // namespace

bool DesktopFileType::IsPublished() {
    return !QStandardPaths::locate(QStandardPaths::GenericDataLocation, EntryName()).isEmpty();
}

void DesktopFileType::Publish(const Binding &binding, const QByteArray &icon) {
    if (!icon.isEmpty() && !WriteIcons(icon)) {
        return;
    }
    const QByteArray entry = DesktopEntry::Text({.name = binding.className,
                                                 .application = binding.application,
                                                 .icon = IconName(),
                                                 .mimeType = SettingsFileType::MimeType()});
    if (Write(InDataFolder(QStringLiteral("mime/packages/ztv-link.xml")),
              MimePackage::Text(binding.extension, binding.description)) &&
        Write(InDataFolder(EntryName()), entry)) {
        RunTool(QStringLiteral("update-mime-database"), InDataFolder(QStringLiteral("mime")));
        RunTool(QStringLiteral("update-desktop-database"), InDataFolder(QStringLiteral("applications")));
    }
}

} // namespace ztv
