#include "desktop/FileType.h"

#include "desktop/FileAssociation.h"
#include "support/SettingsFileType.h"

#include <QCoreApplication>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include "desktop/RegistryKeyStore.h"

#include <QDir>
#else
#include "desktop/DesktopFileType.h"
#include "desktop/FileKeyStore.h"
#include "desktop/MimePackage.h"

#include <QFile>
#include <optional>
#endif

namespace ztv {

#ifdef Q_OS_WIN

QString FileType::ThisApplication() {
    const QFileInfo program(QCoreApplication::applicationFilePath());
    return QDir::toNativeSeparators(program.path() + u'/' + program.completeBaseName());
}

void FileType::Register(const QString &application, const QString &) {
    RegistryKeyStore store;
    FileAssociation::CreateAssociation(store, SettingsFileType::Extension(), SettingsFileType::ClassName(),
                                       SettingsFileType::Description(), application);
}

#else

namespace {

std::optional<QString> TextOf(const FileKeyStore &store, const QString &keyPath) {
    std::optional<QByteArray> bytes = store.Read(RootKey::ClassesRoot, keyPath, QString(), ValueType::Sz);
    if (!bytes || !bytes->endsWith('\0')) {
        return std::nullopt;
    }
    bytes->chop(1);
    return QString::fromLocal8Bit(*bytes);
}

// Returns the application in the command; none if the command has another form than FileAssociation::Command.
std::optional<QString> ApplicationOf(const std::optional<QString> &command) {
    const QString around = FileAssociation::Command(QString());
    const QString tail = around.mid(1);
    if (!command || command->size() <= around.size() || !command->startsWith(u'"') ||
        !command->endsWith(tail)) {
        return std::nullopt;
    }
    return command->mid(1, command->size() - around.size());
}

// Reads the settings files' association from the keys. Returns none if it is incomplete or binds another
// program's class.
std::optional<DesktopFileType::Binding> BindingIn(const FileKeyStore &store) {
    const QString extension = SettingsFileType::Extension();
    const QString className = SettingsFileType::ClassName();
    if (TextOf(store, extension) != className) {
        return std::nullopt;
    }
    const auto description = TextOf(store, className);
    const auto application = ApplicationOf(TextOf(store, FileAssociation::CommandKey(className)));
    if (!description || !application) {
        return std::nullopt;
    }
    return DesktopFileType::Binding{.extension = extension,
                                    .className = className,
                                    .description = *description,
                                    .application = *application};
}

// Creates the keys if there are none: all of them or none, because the next start would mistake a part, as a
// full disk leaves it, for a binding.
void CreateKeys(FileKeyStore &store, const QString &application) {
    if (FileAssociation::KeyExists(store, SettingsFileType::Extension())) {
        return;
    }
    FileAssociation::CreateAssociation(store, SettingsFileType::Extension(), SettingsFileType::ClassName(),
                                       SettingsFileType::Description(), application);
    if (FileAssociation::KeyExists(store, SettingsFileType::Extension()) && !BindingIn(store)) {
        store.Remove(RootKey::ClassesRoot, SettingsFileType::Extension());
    }
}

QByteArray ContentOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QString FileType::ThisApplication() {
    return QCoreApplication::applicationFilePath();
}

void FileType::Register(const QString &application, const QString &iconFile) {
    if (DesktopFileType::IsPublished() || MimePackage::IsBoundElsewhere(SettingsFileType::Extension())) {
        return;
    }
    FileKeyStore store(FileKeyStore::UsersFolder());
    CreateKeys(store, application);
    // Publishes the binding in the keys: an earlier start may have created them and failed to publish them.
    if (const auto binding = BindingIn(store)) {
        DesktopFileType::Publish(*binding, ContentOf(iconFile));
    }
}

#endif

} // namespace ztv
