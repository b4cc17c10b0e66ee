// Fuzzes the export of memory images, for both device families. An input is the images program, EEPROM, ids,
// configuration, separated by form feeds.

#include "firmware/HexFileAccess.h"
#include "fuzz/HexConversion.h"

#include <QList>

namespace ztv {

namespace {

Images Split(const QByteArray &content) {
    Images images;
    const QList<QByteArray> parts = content.split('\f');
    for (std::size_t index = 0; index < images.size(); ++index) {
        images[index] = parts.value(static_cast<qsizetype>(index));
    }
    return images;
}

QList<QByteArray> LinesOf(QByteArray text) {
    text.replace("\r\n", "\n").replace('\r', '\n');
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

// Whether the line ends between the two digits of a byte. Its record then lacks a digit, and the checksum is
// one place too early.
bool EndsInAByte(const QByteArray &line) {
    return line.size() >= 8 && line.size() < 54 && (line.size() - 8) % 3 == 0;
}

void CheckFamily(HexConversion &conversion, const Images &images) {
    conversion.SetImages(images);
    qsizetype lines = 0;
    bool whole = true;
    for (std::size_t index = 0; index < conversion.ImageCount(); ++index) {
        for (const QByteArray &line : LinesOf(images[index])) {
            ++lines;
            whole = whole && !EndsInAByte(line);
        }
    }
    const QByteArray hexFile = conversion.Export();
    REQUIRE(hexFile.endsWith(":00000001FF\r\n"));
    REQUIRE(hexFile.count("\r\n:10") + (hexFile.startsWith(":10") ? 1 : 0) == lines);
    const std::int16_t code = conversion.Check(hexFile);
    REQUIRE(code == HexFileAccess::goodFile || (code == HexFileAccess::wrongChecksum && !whole));
    if (code == HexFileAccess::goodFile) {
        REQUIRE(conversion.Import(hexFile) == code);
        conversion.RequireStable();
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static HexConversion familyOne(1);
    static HexConversion otherFamily(2);
    const Images images = Split(Fuzz::Bytes(data, size));
    CheckFamily(familyOne, images);
    CheckFamily(otherFamily, images);
    return 0;
}

} // namespace ztv
