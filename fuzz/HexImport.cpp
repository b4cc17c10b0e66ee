// Fuzzes the check and the import of hex files, for both device families. An input is a hex file.

#include "firmware/HexFileAccess.h"
#include "fuzz/HexConversion.h"
#include "support/Fault.h"

#include <QList>
#include <random>

namespace ztv {

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t most)
    __attribute__((weak));
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t most,
                                               unsigned seed);

namespace {

// The expected result, computed in memory in the plainest way.
struct Model {
    std::int16_t code = HexFileAccess::noEndRecord;
    bool tooLong = false; // contains a record that the import refuses
    bool stays = true;    // no line reaches beyond the region of its record
    Images images;
};

QList<QByteArray> LinesOf(QByteArray text) {
    text.replace("\r\n", "\n").replace('\r', '\n');
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

// The number that a field's leading digits give; positions count from 0.
int Field(const QByteArray &line, qsizetype from, qsizetype count) {
    int value = 0;
    for (const char character : line.mid(from, count)) {
        const QByteArray digit(1, character);
        bool isDigit = false;
        const int one = digit.toInt(&isDigit, 16);
        if (!isDigit || !std::isxdigit(static_cast<unsigned char>(character))) {
            break;
        }
        value = value * 16 + one;
    }
    return value;
}

std::int16_t CodeOf(const QList<QByteArray> &lines) {
    if (lines.isEmpty()) {
        return HexFileAccess::emptyFile;
    }
    for (const QByteArray &line : lines) {
        if (line.isEmpty() || line.front() == ' ' || line.front() == '\t') {
            continue;
        }
        if (line.front() != ':') {
            return HexFileAccess::wrongCharacter;
        }
        int sum = 0;
        for (int group = 0; group < Field(line, 1, 2) + 5; ++group) {
            sum += Field(line, 1 + 2 * group, 2);
        }
        if (sum > 32767) {
            return HexFileAccess::failure;
        }
        if (sum % 256 != 0) {
            return HexFileAccess::wrongChecksum;
        }
        if (Field(line, 7, 2) == 1) {
            return HexFileAccess::goodFile;
        }
    }
    return HexFileAccess::noEndRecord;
}

// The number of the image for an upper address word, or -1.
int ImageOf(int upperWord, std::uint8_t family) {
    if (family != 1) {
        return upperWord == 0 ? 0 : -1;
    }
    return upperWord < 0x20 ? 0 : upperWord == 0x20 ? 2 : upperWord == 0x30 ? 3 : upperWord == 0xF0 ? 1 : -1;
}

void TakeData(Model &model, const QByteArray &line, int upperWord, std::uint8_t family) {
    const int image = ImageOf(upperWord, family);
    const int length = Field(line, 1, 2);
    const int offset = Field(line, 3, 4) % 16;
    model.tooLong = model.tooLong || (image >= 0 && length > 240) || offset + length > 257;
    if (image < 0) {
        return;
    }
    QByteArray bytes(offset + 256 + 16, '\xFF');
    for (int k = 0; k < length; ++k) {
        bytes[offset + k] = static_cast<char>(Field(line, 9 + 2 * k, 2));
    }
    const int base = family == 1 && image != 1 ? upperWord << 16 : 0;
    for (int start = 0; start < length; start += 16) {
        const int address = base + (Field(line, 3, 4) & 0xFFF0) + start;
        model.stays = model.stays && ImageOf((address >> 16) + (image == 1 ? 0xF0 : 0), family) == image;
        model.images[static_cast<std::size_t>(image)] +=
            QByteArray::number(address, 16).toUpper().rightJustified(6, '0') + ' ' +
            bytes.mid(start, 16).toHex(' ').toUpper() + " \r\n";
    }
}

Model ModelOf(const QByteArray &content, std::uint8_t family) {
    const QList<QByteArray> lines = LinesOf(content);
    Model model;
    model.code = CodeOf(lines);
    int upperWord = 0;
    for (const QByteArray &line : lines) {
        const int type = Field(line, 7, 2);
        if (!line.startsWith(':')) {
            continue;
        }
        if (type == 1 || model.tooLong) {
            break;
        }
        if (type == 4) {
            upperWord = Field(line, 9, 4);
        } else if (type == 0) {
            TakeData(model, line, upperWord, family);
        }
    }
    return model;
}

void CheckFamily(HexConversion &conversion, const QByteArray &content, std::uint8_t family) {
    const Images old{"old program", "old EEPROM", family == 1 ? "old ids" : "",
                     family == 1 ? "old configuration" : ""};
    conversion.SetImages(old);
    const Model model = ModelOf(content, family);
    REQUIRE(conversion.Check(content) == model.code);
    REQUIRE(conversion.ReadImages() == old);
    try {
        REQUIRE(conversion.Import(content) == model.code);
    } catch (const Fault &fault) {
        REQUIRE(fault.Cause() == Fault::Kind::File);
        REQUIRE(model.code == HexFileAccess::goodFile && model.tooLong);
        return;
    }
    if (model.code < 0) {
        REQUIRE(conversion.ReadImages() == old);
        return;
    }
    REQUIRE(!model.tooLong);
    REQUIRE(conversion.ReadImages() == model.images);
    for (const QByteArray &image : model.images) {
        REQUIRE(image.size() % 57 == 0);
        REQUIRE(image.count('\n') == image.size() / 57); // 55 characters and the line end
    }
    if (model.stays) {
        conversion.RequireStable();
    } else { // a line beyond its region moves to another image once; after that the images are stable
        REQUIRE(conversion.Import(conversion.Export()) == HexFileAccess::goodFile);
        conversion.RequireStable();
    }
}

// Corrects the checksum of a line, if the line is as long as it claims.
void MendChecksum(QByteArray &line) {
    const int length = Field(line, 1, 2);
    if (!line.startsWith(':') || line.size() < 11 + 2 * length) {
        return;
    }
    int sum = 0;
    for (int group = 0; group < length + 4; ++group) {
        sum += Field(line, 1 + 2 * group, 2);
    }
    line.replace(9 + 2 * length, 2, QByteArray::number(-sum & 0xFF, 16).toUpper().rightJustified(2, '0'));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static HexConversion familyOne(1);
    static HexConversion otherFamily(2);
    const QByteArray content = Fuzz::Bytes(data, size);
    CheckFamily(familyOne, content, 1);
    CheckFamily(otherFamily, content, 2);
    return 0;
}

// Corrects checksums in most inputs. Random changes seldom produce one, and then the check hides the rest of
// the code.
std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t most, unsigned seed) {
    size = LLVMFuzzerMutate(data, size, most);
    if (seed % 4 == 0) {
        return size;
    }
    QList<QByteArray> lines = Fuzz::Bytes(data, size).split('\n');
    for (QByteArray &line : lines) {
        MendChecksum(line);
    }
    const QByteArray mended = lines.join('\n');
    std::copy(mended.begin(), mended.end(), data);
    return static_cast<std::size_t>(mended.size());
}

} // namespace ztv
