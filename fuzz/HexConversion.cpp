#include "fuzz/HexConversion.h"

#include "firmware/HexFileAccess.h"

#include <QDir>

namespace ztv {

namespace {

// Restores the current folder, which the check of a file changes: the fuzzer's own paths are relative to it.
class CurrentFolder {
public:
    CurrentFolder() = default;
    ~CurrentFolder() { QDir::setCurrent(path_); }
    CurrentFolder(const CurrentFolder &) = delete;
    CurrentFolder &operator=(const CurrentFolder &) = delete;

private:
    QString path_ = QDir::currentPath();
};

} // namespace

HexConversion::HexConversion(std::uint8_t deviceFamily) : hexPath_(folder_.Path("FIRMWARE.HEX")) {
    settings_.DeviceFamily = deviceFamily;
    settings_.ProgramFile = folder_.Path("PROGMEM.MCP");
    settings_.EepromFile = folder_.Path("EEDATA.MCP");
    settings_.UserIdFile = folder_.Path("USERID.MCP");
    settings_.ConfigFile = folder_.Path("CONFIG.MCP");
}

void HexConversion::SetImages(const Images &images) {
    Fuzz::WriteFile(settings_.ProgramFile, images[0]);
    Fuzz::WriteFile(settings_.EepromFile, images[1]);
    if (ImageCount() == 4) {
        Fuzz::WriteFile(settings_.UserIdFile, images[2]);
        Fuzz::WriteFile(settings_.ConfigFile, images[3]);
    }
}

Images HexConversion::ReadImages() const {
    Images images{Fuzz::ReadFile(settings_.ProgramFile), Fuzz::ReadFile(settings_.EepromFile), {}, {}};
    if (ImageCount() == 4) {
        images[2] = Fuzz::ReadFile(settings_.UserIdFile);
        images[3] = Fuzz::ReadFile(settings_.ConfigFile);
    }
    return images;
}

std::int16_t HexConversion::Check(const QByteArray &hexFile) {
    const CurrentFolder current;
    qputenv("ZTVLINK_HOME", folder_.Itself().toLocal8Bit());
    Fuzz::WriteFile(hexPath_, hexFile);
    return HexFileAccess::CheckHexFile(hexPath_);
}

std::int16_t HexConversion::Import(const QByteArray &hexFile) {
    const CurrentFolder current;
    const std::int16_t code = Check(hexFile);
    REQUIRE(HexFileAccess::ImportForDeviceFamily(settings_, hexPath_) == code);
    REQUIRE(Fuzz::ReadFile(hexPath_) == hexFile);
    return code;
}

QByteArray HexConversion::Export() {
    HexFileAccess::ExportForDeviceFamily(settings_, hexPath_);
    return Fuzz::ReadFile(hexPath_);
}

void HexConversion::RequireStable() {
    const Images images = ReadImages();
    const QByteArray hexFile = Export();
    REQUIRE(ReadImages() == images);
    REQUIRE(Import(hexFile) == HexFileAccess::goodFile);
    REQUIRE(ReadImages() == images);
    REQUIRE(Export() == hexFile);
}

} // namespace ztv
