#include "desktop/FileAssociation.h"

#include "support/Fault.h"
#include "support/Numbers.h"

#include <QtEndian>
#include <optional>

namespace ztv {

namespace {

constexpr StoreStatus invalidData = 13; // ERROR_INVALID_DATA

QString ToText(const FileAssociation::Value &value) {
    const auto *text = std::get_if<QString>(&value);
    return text != nullptr ? *text : QString::number(std::get<std::int32_t>(value));
}

std::optional<std::int32_t> ToWhole(const FileAssociation::Value &value) {
    const auto *text = std::get_if<QString>(&value);
    try {
        return text != nullptr ? ToInt32(ToNumber(*text)) : std::get<std::int32_t>(value);
    } catch (const Fault &) {
        return std::nullopt;
    }
}

} // namespace

void FileAssociation::CreateAssociation(KeyStore &store, const QString &extension, const QString &className,
                                        const QString &description, const QString &application) {
    const QString extensionKey = extension.startsWith(u'.') ? extension : u'.' + extension;
    if (KeyExists(store, extensionKey)) {
        return;
    }
    CreateKey(store, extensionKey, RootKey::ClassesRoot);
    SetKeyValue(store, extensionKey, QString(), className, ValueType::Sz);
    CreateKey(store, CommandKey(className), RootKey::ClassesRoot); // creates the class's own key, too
    SetKeyValue(store, className, QString(), description, ValueType::Sz);
    SetKeyValue(store, CommandKey(className), QString(), Command(application), ValueType::Sz);
}

QString FileAssociation::CommandKey(const QString &className) {
    return className + QStringLiteral("\\shell\\open\\command");
}

QString FileAssociation::Command(const QString &application) {
    return u'"' + application + QStringLiteral("\" \"%1\"");
}

bool FileAssociation::KeyExists(KeyStore &store, const QString &keyPath) {
    return store.Open(RootKey::ClassesRoot, keyPath) != nullptr;
}

void FileAssociation::CreateKey(KeyStore &store, const QString &keyPath, RootKey rootKey) {
    store.Create(rootKey, keyPath);
}

void FileAssociation::SetKeyValue(KeyStore &store, const QString &keyPath, const QString &valueName,
                                  const Value &value, ValueType type) {
    if (const auto key = store.Open(RootKey::ClassesRoot, keyPath)) {
        StoreValue(*key, valueName, type, value);
    }
}

StoreStatus FileAssociation::StoreValue(OpenKey &key, const QString &valueName, ValueType type,
                                        const Value &value) {
    switch (type) {
    case ValueType::Sz:
        return key.Store(valueName, type, ToText(value).toLocal8Bit() + '\0');
    case ValueType::Dword: {
        const auto number = ToWhole(value);
        if (!number) {
            return invalidData;
        }
        QByteArray bytes(sizeof(*number), Qt::Uninitialized);
        qToLittleEndian(*number, bytes.data());
        return key.Store(valueName, type, bytes);
    }
    }
    return 0;
}

} // namespace ztv
