#pragma once

#include <QString>
#include <map>
#include <optional>

// The per-user settings: strings by application title, section and key. The registry on Windows, an INI
// file in the user's configuration folder elsewhere. What can't be stored counts for this run all the same,
// and each later write tries to store it again.
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

    // Where the settings are, as a person would look for them.
    QString Place() const;

private:
    bool Store();

    QString title_;
    std::map<QString, std::optional<QString>> notStored_; // by section and key; nothing: to be removed
};
