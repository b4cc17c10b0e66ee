#pragma once

#include "firmware/BootSettings.h"
#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/Files.h"

#include <QTemporaryDir>
#include <array>

namespace ztv {

// A program folder with the memory images in it.
class HexFolder {
public:
    HexFolder() : home_("ZTVLINK_HOME", folder_.path()) {
        settings_.ProgramFile = Path("PROGMEM.MCP");
        settings_.EepromFile = Path("EEDATA.MCP");
        settings_.UserIdFile = Path("USERID.MCP");
        settings_.ConfigFile = Path("CONFIG.MCP");
    }
    ~HexFolder() { QDir::setCurrent(current_); }
    HexFolder(const HexFolder &) = delete;
    HexFolder &operator=(const HexFolder &) = delete;

    BootSettings &Settings() { return settings_; }
    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }

    QByteArray Program() const { return ReadFile(settings_.ProgramFile); }
    QByteArray Eeprom() const { return ReadFile(settings_.EepromFile); }
    QByteArray UserId() const { return ReadFile(settings_.UserIdFile); }
    QByteArray Config() const { return ReadFile(settings_.ConfigFile); }
    std::array<QByteArray, 4> Images() const { return {Program(), Eeprom(), UserId(), Config()}; }

    void SetImages(const std::array<QByteArray, 4> &images) const {
        WriteFile(settings_.ProgramFile, images[0]);
        WriteFile(settings_.EepromFile, images[1]);
        WriteFile(settings_.UserIdFile, images[2]);
        WriteFile(settings_.ConfigFile, images[3]);
    }

private:
    QTemporaryDir folder_;
    QString current_ = QDir::currentPath();
    EnvironmentVariable home_;
    BootSettings settings_;
};

// Contents that an import never produces.
inline std::array<QByteArray, 4> OldImages() {
    return {"old program", "old EEPROM", "old ids", "old configuration"};
}

} // namespace ztv
