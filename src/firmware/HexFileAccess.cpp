#include "firmware/HexFileAccess.h"

#include "firmware/HexField.h"
#include "firmware/HexRecord.h"
#include "firmware/MemoryImageLine.h"
#include "firmware/TextFileReader.h"
#include "firmware/TextFileWriter.h"
#include "support/Fault.h"
#include "support/ProgramFolder.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <array>
#include <cstring>
#include <deque>
#include <limits>
#include <span>

namespace ztv {

namespace {

struct Image {
    QString BootSettings::*file;
    std::uint32_t exportOffset; // added to each line's address
};

// The target of the records under an upper word.
struct Region {
    std::uint32_t firstUpperWord;
    std::uint32_t lastUpperWord;
    std::size_t image;
    bool keepsUpperWord; // includes the upper word in the addresses of the image
};

struct Conversion {
    std::span<const Image> images; // in the order of the export
    std::span<const Region> regions;
    std::uint32_t exportStart; // the address that the first line is compared with
};

constexpr std::array fourImages = {
    Image{&BootSettings::ProgramFile, 0},
    Image{&BootSettings::UserIdFile, 0},
    Image{&BootSettings::ConfigFile, 0},
    Image{&BootSettings::EepromFile, 0xF00000},
};
constexpr std::array fourRegions = {
    Region{0x0000, 0x001F, 0, true},
    Region{0x0020, 0x0020, 1, true},
    Region{0x0030, 0x0030, 2, true},
    Region{0x00F0, 0x00F0, 3, false},
};
constexpr Conversion familyOne{fourImages, fourRegions, 0x7FFFFF};

// The import empties the EEPROM image: that family has no region for it.
constexpr std::array twoImages = {
    Image{&BootSettings::ProgramFile, 0},
    Image{&BootSettings::EepromFile, 0x2100},
};
constexpr std::array oneRegion = {
    Region{0x0000, 0x0000, 0, true},
};
constexpr Conversion otherFamily{twoImages, oneRegion, 0};

const Conversion &ConversionFor(const BootSettings &settings) {
    return settings.DeviceFamily == 1 ? familyOne : otherFamily;
}

constexpr qsizetype longestImageLine = MemoryImageLine::textLength + 1;
constexpr std::size_t workBufferSize = 257;
constexpr int mostDataBytes = 240; // the lines of a longer record overflow a byte

bool IsSameFile(const QString &one, const QString &other) {
    const QFileInfo first(one);
    const QFileInfo second(other);
    return first.exists() && second.exists() ? first == second
                                             : first.absoluteFilePath() == second.absoluteFilePath();
}

bool IsImageOf(const Conversion &conversion, const BootSettings &settings, const QString &path) {
    return std::any_of(conversion.images.begin(), conversion.images.end(),
                       [&](const Image &image) { return IsSameFile(path, settings.*image.file); });
}

// Rejects a memory image as hex file: the images are read or emptied while the hex file is open.
void RefuseImage(const BootSettings &settings, const Conversion &conversion, const QString &path) {
    if (IsImageOf(conversion, settings, path)) {
        throw Fault::File(path, QStringLiteral("this is a memory image of the program"));
    }
}

HexFileAccess::Result Judge(TextFileReader &file) {
    if (file.AtEnd()) {
        return HexFileAccess::Result::Empty;
    }
    do {
        const QByteArrayView line = file.ReadLine();
        std::uint32_t type = HexRecord::dataType;
        if (HexRecord::IsRecord(line)) {
            const HexRecord record(line);
            const int sum = record.Sum();
            if (sum > std::numeric_limits<std::int16_t>::max()) {
                return HexFileAccess::Result::Failed;
            }
            if (sum % 256 != 0) {
                return HexFileAccess::Result::WrongChecksum;
            }
            type = record.Type();
        } else if (!line.isEmpty() && line.front() != ' ' && line.front() != '\t') {
            return HexFileAccess::Result::WrongCharacter;
        }
        if (type == HexRecord::endType) {
            return HexFileAccess::Result::Good;
        }
    } while (!file.AtEnd());
    return HexFileAccess::Result::NoEndRecord;
}

// Writes the data records of an import to the images.
class ImportedImages {
public:
    ImportedImages(const BootSettings &settings, const Conversion &conversion, const QString &hexFile)
        : conversion_(conversion),
          hexFile_(hexFile) {
        for (const Image &image : conversion.images) {
            files_.emplace_back(settings.*image.file);
        }
    }

    void Take(const HexRecord &record, std::uint32_t upperWord) {
        std::array<std::uint8_t, workBufferSize> buffer{};
        buffer.fill(0xFF);
        const int length = record.Length();
        const std::size_t offset = record.Address() % MemoryImageLine::byteCount;
        if (offset + static_cast<std::size_t>(length) > buffer.size()) {
            throw TooLong(length);
        }
        for (int index = 0; index < length; ++index) {
            buffer[offset + static_cast<std::size_t>(index)] = record.Byte(index);
        }
        const auto region = std::find_if(
            conversion_.regions.begin(), conversion_.regions.end(), [upperWord](const Region &candidate) {
                return upperWord >= candidate.firstUpperWord && upperWord <= candidate.lastUpperWord;
            });
        if (region == conversion_.regions.end()) {
            return;
        }
        if (length > mostDataBytes) {
            throw TooLong(length);
        }
        std::uint32_t address = (record.Address() & 0xFFF0) + (region->keepsUpperWord ? upperWord << 16 : 0);
        for (int start = 0; start < length; start += MemoryImageLine::byteCount) {
            WriteLine(files_[region->image], address, buffer.data() + start);
            address += MemoryImageLine::byteCount;
        }
    }

    void Close() {
        for (TextFileWriter &file : files_) {
            file.Close();
        }
    }

private:
    // Writes a line with a blank after the last byte; a line read from the device has none.
    static void WriteLine(TextFileWriter &file, std::uint32_t address, const std::uint8_t *bytes) {
        std::array<char, MemoryImageLine::textLength + 1> line{};
        *MemoryImageLine::Put(line.data(), address, bytes) = ' ';
        file.WriteLine(line);
    }

    Fault TooLong(int length) const {
        return Fault::File(
            hexFile_,
            QStringLiteral("there is a record of %1 data bytes, and %2 is the most that can be taken")
                .arg(length)
                .arg(mostDataBytes));
    }

    const Conversion &conversion_;
    QString hexFile_;
    std::deque<TextFileWriter> files_; // in the order of the images
};

HexFileAccess::Result Import(const BootSettings &settings, const Conversion &conversion,
                             const QString &path) {
    const HexFileAccess::Result result = HexFileAccess::CheckHexFile(path);
    if (result != HexFileAccess::Result::Good) {
        return result;
    }
    TextFileReader file(path, HexRecord::longestText);
    RefuseImage(settings, conversion, path);
    ImportedImages images(settings, conversion, path);
    std::uint32_t upperWord = 0;
    while (!file.AtEnd()) {
        const QByteArrayView line = file.ReadLine();
        if (!HexRecord::IsRecord(line)) {
            continue;
        }
        const HexRecord record(line);
        const std::uint32_t type = record.Type();
        if (type == HexRecord::endType) {
            break;
        }
        if (type == HexRecord::upperWordType) {
            upperWord = record.UpperWord();
        } else if (type == HexRecord::dataType) {
            images.Take(record, upperWord);
        }
    }
    images.Close();
    return result;
}

// The text of a record under construction.
// REQUIRES: no added part is longer than two digits a byte.
class RecordText {
public:
    explicit RecordText(QByteArrayView start) { Add(start); }

    RecordText &Add(QByteArrayView digits) {
        end_ = std::copy(digits.begin(), digits.end(), end_);
        return *this;
    }
    RecordText &AddNumber(std::uint32_t value, int width) {
        end_ = HexField::Put(end_, value, width);
        return *this;
    }

    // Appends the checksum of the first `groups` groups of digits and returns the whole record.
    QByteArrayView WithChecksumOf(int groups) {
        AddNumber(HexRecord::Checksum(Text(), groups), 2);
        return Text();
    }

private:
    QByteArrayView Text() const { return {text_.data(), end_}; }

    std::array<char, 1 + 2 * (MemoryImageLine::byteCount + 5)> text_{};
    char *end_ = text_.data();
};

void WriteUpperWord(TextFileWriter &file, std::uint32_t address) {
    file.WriteLine(RecordText(":0200000400").AddNumber(address >> 16 & 0xFF, 2).WithChecksumOf(6));
}

void WriteData(TextFileWriter &file, std::uint32_t address, QByteArrayView imageLine) {
    RecordText record(":10");
    record.AddNumber(address & 0xFFFF, 4).Add("00");
    for (int index = 0; index < MemoryImageLine::byteCount; ++index) {
        record.Add(MemoryImageLine::Digits(imageLine, index));
    }
    file.WriteLine(record.WithChecksumOf(4 + MemoryImageLine::byteCount));
}

void Export(const BootSettings &settings, const Conversion &conversion, const QString &path) {
    std::deque<TextFileReader> images; // opened first: if that fails, the old file stays whole
    for (const Image &image : conversion.images) {
        images.emplace_back(settings.*image.file, longestImageLine);
    }
    RefuseImage(settings, conversion, path);
    TextFileWriter file(path);
    std::uint32_t address = conversion.exportStart;
    for (std::size_t index = 0; index < images.size(); ++index) {
        TextFileReader &image = images[index];
        while (!image.AtEnd()) {
            const QByteArrayView line = image.ReadLine();
            const std::uint32_t oldAddress = address;
            address = MemoryImageLine::Address(line) + conversion.images[index].exportOffset;
            if (((oldAddress ^ address) & 0xFF0000) != 0) {
                WriteUpperWord(file, address);
            }
            WriteData(file, address, line);
        }
    }
    file.WriteLine(":00000001FF");
    file.Close();
}

} // namespace

HexFileAccess::Result HexFileAccess::CheckContent(const QString &path) {
    TextFileReader file(path, HexRecord::longestText);
    try {
        return Judge(file);
    } catch (const Fault &) { // the file couldn't be read to its end
        return Result::Failed;
    }
}

HexFileAccess::Result HexFileAccess::CheckHexFile(const QString &path) {
    const QString folder = ProgramFolder();
    if (!QDir::setCurrent(folder)) {
        throw Fault::File(folder, QStringLiteral("this can't be made the current folder"));
    }
    return CheckContent(path);
}

HexFileAccess::Result HexFileAccess::ImportHexFile(const BootSettings &settings, const QString &path) {
    return Import(settings, familyOne, path);
}

void HexFileAccess::ExportHexFile(const BootSettings &settings, const QString &path) {
    Export(settings, familyOne, path);
}

HexFileAccess::Result HexFileAccess::ImportHexFileOfOtherFamily(const BootSettings &settings,
                                                                const QString &path) {
    return Import(settings, otherFamily, path);
}

void HexFileAccess::ExportHexFileOfOtherFamily(const BootSettings &settings, const QString &path) {
    Export(settings, otherFamily, path);
}

bool HexFileAccess::IsMemoryImage(const BootSettings &settings, const QString &path) {
    return IsImageOf(ConversionFor(settings), settings, path);
}

HexFileAccess::Result HexFileAccess::ImportForDeviceFamily(const BootSettings &settings,
                                                           const QString &path) {
    return Import(settings, ConversionFor(settings), path);
}

void HexFileAccess::ExportForDeviceFamily(const BootSettings &settings, const QString &path) {
    Export(settings, ConversionFor(settings), path);
}

} // namespace ztv
