#pragma once

#include <QString>
#include <map>
#include <optional>

namespace ztv {

// The per-user settings: strings by application title, section and key, in the registry on Windows and in an
// INI file in the user's configuration folder elsewhere. A setting that can't be stored still counts for this
// run, and each later write retries to store it.
class SettingsStore {
public:
    explicit SettingsStore(const QString &applicationTitle);

    // Returns the stored text, or `fallback` where there is none.
    QString Read(const QString &section, const QString &key, const QString &fallback) const;

    // Returns false when the store can't be written.
    bool Write(const QString &section, const QString &key, const QString &value);

    // Deletes one setting. Returns false when the store can't be written.
    bool Remove(const QString &section, const QString &key);

    // Deletes all of the application's settings. Returns false when the store can't be written.
    bool Clear();

    // The place of the settings, as a person would look for it.
    QString Place() const;

private:
    bool Store();

    QString title_;
    std::map<QString, std::optional<QString>> notStored_; // by section and key; no value: to be deleted
};

} // namespace ztv
