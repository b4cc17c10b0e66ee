#include "cli/FirmwarePlan.h"

#include "cli/Failure.h"
#include "cli/ImageFolder.h"
#include "firmware/BootSettings.h"
#include "firmware/HexFileAccess.h"
#include "firmware/HexRecord.h"
#include "firmware/MemoryImageLine.h"
#include "firmware/TextFileReader.h"
#include "support/Fault.h"

#include <QFileInfo>
#include <algorithm>
#include <limits>

namespace ztv {

namespace {

constexpr std::uint32_t lastUpperWordOfProgram = 0x1F;

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

// The import ignores the base of segments, and of each record it takes only as many whole lines as the
// record's bytes fill if they begin at the start of one.
QString DefectOf(const HexRecord &record, std::uint32_t upperWord) {
    constexpr std::uint32_t segmentType = 2;
    const std::uint32_t offset = record.Address() % MemoryImageLine::byteCount;
    if (record.Type() == segmentType && record.UpperWord() != 0) {
        return QStringLiteral("Firmware file with segment addresses; make one with linear ones: ");
    }
    const int lines = (record.Length() + MemoryImageLine::byteCount - 1) / MemoryImageLine::byteCount;
    const bool isCut = static_cast<int>(offset) + record.Length() > lines * MemoryImageLine::byteCount;
    return record.Type() == HexRecord::dataType && upperWord <= lastUpperWordOfProgram && isCut
               ? QStringLiteral("Firmware file with a record that crosses the end of its 16 bytes, at %1; "
                                "make one with aligned records: ")
                     .arg(Hexadecimal(upperWord << 16 | record.Address()))
               : QString();
}

// Throws a Failure (file) for a file of which the sensor would get less than it holds, or elsewhere.
void RefuseLoss(const QString &file) {
    TextFileReader lines(file, HexRecord::longestText);
    std::uint32_t upperWord = 0;
    while (!lines.AtEnd()) {
        const QByteArrayView line = lines.ReadLine();
        const HexRecord record(line);
        if (!HexRecord::IsRecord(line)) {
            continue;
        }
        if (record.Type() == HexRecord::endType) {
            return;
        }
        if (const QString defect = DefectOf(record, upperWord); !defect.isEmpty()) {
            throw Failure(ExitStatus::File, defect + file);
        }
        upperWord = record.Type() == HexRecord::upperWordType ? record.UpperWord() : upperWord;
    }
}

} // namespace

QString Hexadecimal(std::uint32_t address) {
    constexpr int digits = 6;
    constexpr int base = 16;
    return QStringLiteral("0x") + QString::number(address, base).toUpper().rightJustified(digits, u'0');
}

FirmwarePlan PlanOf(const QString &file) {
    const FirmwareFile firmware(QFileInfo(file).absoluteFilePath());
    if (!firmware.IsGood()) {
        throw Failure(ExitStatus::File, firmware.Description());
    }
    FirmwarePlan plan{.firmware = firmware};
    try {
        RefuseLoss(firmware.Path());
        const ImageFolder folder;
        BootSettings settings;
        settings.ProgramFile = folder.File("PROGMEM.MCP");
        settings.EepromFile = folder.File("EEDATA.MCP");
        settings.UserIdFile = folder.File("USERID.MCP");
        settings.ConfigFile = folder.File("CONFIG.MCP");
        HexFileAccess::ImportForDeviceFamily(settings, firmware.Path());
        Count(plan, settings.ProgramFile);
    } catch (const Fault &fault) {
        throw Failure(ExitStatus::File, fault.Description().simplified());
    }
    if (plan.lines == 0) {
        throw Failure(ExitStatus::File,
                      QStringLiteral("Firmware file without a byte for the sensor's program: ") +
                          firmware.Path());
    }
    return plan;
}

} // namespace ztv
