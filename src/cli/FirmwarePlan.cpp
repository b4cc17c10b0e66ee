#include "cli/FirmwarePlan.h"

#include "cli/Failure.h"
#include "cli/ImageFolder.h"
#include "firmware/BootSettings.h"
#include "firmware/FirmwareFile.h"
#include "firmware/HexFileAccess.h"
#include "firmware/MemoryImageLine.h"
#include "firmware/TextFileReader.h"
#include "support/Fault.h"

#include <QFileInfo>
#include <algorithm>
#include <limits>

namespace ztv {

namespace {

void Count(FirmwarePlan &plan, const QString &image) {
    plan.first = std::numeric_limits<std::uint32_t>::max();
    TextFileReader lines(image, MemoryImageLine::textLength);
    while (!lines.AtEnd()) {
        const std::uint32_t address = MemoryImageLine::AddressToWrite(lines.ReadLine());
        ++plan.lines;
        plan.first = std::min(plan.first, address);
        plan.last = std::max(plan.last, address + MemoryImageLine::byteCount - 1);
    }
}

} // namespace

FirmwarePlan PlanOf(const QString &file) {
    const FirmwareFile firmware(QFileInfo(file).absoluteFilePath());
    if (!firmware.IsGood()) {
        throw Failure(ExitStatus::File, firmware.Description());
    }
    FirmwarePlan plan{.file = firmware.Path()};
    try {
        const ImageFolder folder;
        BootSettings settings;
        settings.ProgramFile = folder.File("PROGMEM.MCP");
        settings.EepromFile = folder.File("EEDATA.MCP");
        settings.UserIdFile = folder.File("USERID.MCP");
        settings.ConfigFile = folder.File("CONFIG.MCP");
        HexFileAccess::ImportForDeviceFamily(settings, plan.file);
        Count(plan, settings.ProgramFile);
    } catch (const Fault &fault) {
        throw Failure(ExitStatus::File, fault.Description().simplified());
    }
    if (plan.lines == 0) {
        throw Failure(ExitStatus::File,
                      QStringLiteral("Firmware file without a byte for the sensor's program: ") + plan.file);
    }
    return plan;
}

} // namespace ztv
