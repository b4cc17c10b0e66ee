#pragma once

#include <QString>
#include <QTemporaryDir>

namespace ztv {

// The folder with the presets that the program ships.
QString ShippedPresetsFolder();

// A temporary folder with the shipped Presets.fil, changed by SQL.
class ChangedPresets {
public:
    explicit ChangedPresets(const char *sql);

    QString Folder() const { return folder_.path(); }

private:
    QTemporaryDir folder_;
};

} // namespace ztv
