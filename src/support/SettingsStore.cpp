#include "support/SettingsStore.h"

#include <QSettings>
#include <QStandardPaths>
#include <memory>

namespace {

// Opened for each use: the places are few, and nothing is lost when the program ends abruptly.
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
    return settings.status() == QSettings::NoError;
}

} // namespace

SettingsStore::SettingsStore(const QString &applicationTitle) : title_(applicationTitle) {}

QString SettingsStore::Read(const QString &section, const QString &key, const QString &fallback) const {
    return Open(title_)->value(section + u'/' + key, fallback).toString();
}

bool SettingsStore::Write(const QString &section, const QString &key, const QString &value) {
    const auto settings = Open(title_);
    settings->setValue(section + u'/' + key, value);
    return Flush(*settings);
}

bool SettingsStore::Remove(const QString &section, const QString &key) {
    const auto settings = Open(title_);
    settings->remove(section + u'/' + key);
    return Flush(*settings);
}

bool SettingsStore::Clear() {
    const auto settings = Open(title_);
    settings->clear();
    return Flush(*settings);
}
