#pragma once

#include <QString>

// The per-user settings: strings by application title, section and key. The registry on Windows, an INI
// file in the user's configuration folder elsewhere.
class SettingsStore {
public:
    explicit SettingsStore(const QString &applicationTitle);

    // The stored text, or `fallback` where there is none.
    QString Read(const QString &section, const QString &key, const QString &fallback) const;

    // False when the store can't be written.
    bool Write(const QString &section, const QString &key, const QString &value);

    // Deletes one. False when the store can't be written.
    bool Remove(const QString &section, const QString &key);

    // Deletes all of the application's settings. False when the store can't be written.
    bool Clear();

private:
    QString title_;
};
