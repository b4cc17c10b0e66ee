#include "support/SettingsStore.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <memory>

namespace ztv {

namespace {

// Opens the store for each use: the uses are few, and nothing is lost when the program ends abruptly.
std::unique_ptr<QSettings> Open(const QString &title) {
#ifdef Q_OS_WIN
    auto settings = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, title);
    settings->setFallbacksEnabled(false);
    return settings;
#else
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_unique<QSettings>(folder + u'/' + title + QStringLiteral(".conf"), QSettings::IniFormat);
#endif
}

bool Flush(QSettings &settings) {
    settings.sync();
    return settings.status() != QSettings::AccessError; // unreadable old content is gone by now
}

QString Name(const QString &section, const QString &key) {
    return section + u'/' + key;
}

} // namespace

SettingsStore::SettingsStore(const QString &applicationTitle) : title_(applicationTitle) {}

QString SettingsStore::Read(const QString &section, const QString &key, const QString &fallback) const {
    const QString name = Name(section, key);
    if (const auto found = notStored_.find(name); found != notStored_.end()) {
        return found->second.value_or(fallback);
    }
    return Open(title_)->value(name, fallback).toString();
}

bool SettingsStore::Write(const QString &section, const QString &key, const QString &value) {
    notStored_[Name(section, key)] = value;
    return Store();
}

bool SettingsStore::Remove(const QString &section, const QString &key) {
    notStored_[Name(section, key)] = std::nullopt;
    return Store();
}

bool SettingsStore::Store() {
    const auto settings = Open(title_);
    for (const auto &[name, value] : notStored_) {
        if (value) {
            settings->setValue(name, *value);
        } else {
            settings->remove(name);
        }
    }
    const bool stored = Flush(*settings);
    if (stored) {
        notStored_.clear();
    }
    return stored;
}

bool SettingsStore::Clear() {
    const auto settings = Open(title_);
    settings->clear();
    const bool cleared = Flush(*settings);
    if (cleared) {
        notStored_.clear();
    }
    return cleared;
}

QString SettingsStore::Place() const {
    return QDir::toNativeSeparators(Open(title_)->fileName());
}

} // namespace ztv
