#include "firmware/HexFileAccess.h"

#include "support/Fault.h"
#include "tests/firmware/HexFolder.h"
#include "tests/helpers/FileSizeLimit.h"
#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace ztv {

using namespace HexFileAccess;

namespace {

const QByteArray end = ":00000001FF\r\n";

QByteArray Digits(int value, int width) {
    return QByteArray::number(value, 16).toUpper().rightJustified(width, '0');
}

// Makes a record with a good checksum.
QByteArray Record(int type, int address, const QByteArray &data) {
    QByteArray bytes;
    bytes.append(static_cast<char>(data.size()));
    bytes.append(static_cast<char>(address >> 8));
    bytes.append(static_cast<char>(address));
    bytes.append(static_cast<char>(type));
    bytes.append(data);
    int sum = 0;
    for (const char byte : bytes) {
        sum += static_cast<unsigned char>(byte);
    }
    bytes.append(static_cast<char>(-sum));
    return ':' + bytes.toHex().toUpper() + "\r\n";
}

QByteArray UpperWord(int word) {
    return Record(4, 0, QByteArray(1, static_cast<char>(word >> 8)) + static_cast<char>(word));
}

QByteArray Counted(int count, int first = 0) {
    QByteArray bytes;
    for (int index = 0; index < count; ++index) {
        bytes.append(static_cast<char>(first + index));
    }
    return bytes;
}

// A line of an image, filled with 0xFF; each byte is followed by a blank, as the import writes it.
QByteArray ImageLine(int address, QByteArray bytes) {
    bytes.append(16 - bytes.size(), '\xFF');
    return Digits(address, 6) + ' ' + bytes.toHex(' ').toUpper() + " \r\n";
}

// The peak memory of this process so far.
qint64 MostResidentBytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return qint64{1024} * usage.ru_maxrss;
}

struct CodeOfFile {
    const char *name;
    QByteArray content;
    std::int16_t code;
};

const CodeOfFile codesOfFiles[] = {
    {"good", Record(0, 0, "abc") + end, goodFile},
    {"only an end record", end, goodFile},
    {"end record without a line end", Record(0, 0, "abc") + ":00000001FF", goodFile},
    {"only an end record without a line end", ":00000001FF", goodFile},
    {"line feeds", ":0100000041BE\n:00000001FF\n", goodFile},
    {"carriage returns", ":0100000041BE\r:00000001FF\r", goodFile},
    {"lower case", ":01000000aa55\r\n:00000001ff\r\n", goodFile},
    {"blank lines and lines that start with white space", "\r\n  x\r\n\tx\r\n\r\n" + end, goodFile},
    {"a colon alone, all of whose groups are missing", ":\r\n" + end, goodFile},
    {"missing groups that read as 0", ":05000000FB\r\n" + end, goodFile},
    {"a record that goes on behind its checksum", ":0100000041BExyz\r\n" + end, goodFile},
    {"unknown types",
     Record(2, 0, "ab") + Record(3, 0, "abcd") + Record(5, 0, "abcd") + Record(99, 0, "x") + end, goodFile},
    {"anything behind the first end record", end + "garbage\r\n:01000000000\r\n", goodFile},
    {"a type of one digit at the end of the line", ":FF00001\r\n", goodFile},
    {"no content", "", emptyFile},
    {"a wrong checksum", ":0100000041BF\r\n" + end, wrongChecksum},
    {"a wrong checksum of the end record", ":00000001FE\r\n", wrongChecksum},
    {"a wrong checksum of an upper word", ":020000040020DB\r\n" + end, wrongChecksum},
    {"a wrong checksum of a last record without an end record", ":0100000041BF\r\n", wrongChecksum},
    {"a wrong checksum of an unknown type", ":0100000941BE\r\n" + end, wrongChecksum},
    {"a missing checksum", ":0100000041\r\n" + end, wrongChecksum},
    {"digits that aren't", ":01000000zz00\r\n" + end, wrongChecksum},
    {"a letter", "x\r\n" + end, wrongCharacter},
    {"a letter after good records", Record(0, 0, "abc") + "x\r\n" + end, wrongCharacter},
    {"a letter in the last line", Record(0, 0, "abc") + "x", wrongCharacter},
    {"a digit", "00000001FF\r\n" + end, wrongCharacter},
    {"a form feed", "\f\r\n" + end, wrongCharacter},
    {"a byte order mark", "\xEF\xBB\xBF" + end, wrongCharacter},
    {"a zero byte", QByteArray(1, '\0') + end, wrongCharacter},
    {"blank lines only", "\r\n  \r\n\t\r\n", noEndRecord},
    {"one line end only", "\n", noEndRecord},
    {"one blank only", " ", noEndRecord},
    {"a last line of data", Record(0, 0, "abc"), noEndRecord},
    {"a last line of data without a line end", Record(0, 0, "abc").trimmed(), noEndRecord},
    {"an end record behind a blank", " :00000001FF\r\n", noEndRecord},
    {"a sum past 32767", Record(0, 0, QByteArray(255, '\xFF')) + end, failure},
    {"a sum past 32767 in an end record", ":FF000001" + QByteArray(512, 'F') + "\r\n", failure},
};

} // namespace

class HexFileAccessTest : public testing::Test {
protected:
    QString Hex(const QByteArray &content) const {
        WriteFile(folder_.Path("a.hex"), content);
        return folder_.Path("a.hex");
    }
    std::int16_t Import(const QByteArray &content) {
        folder_.SetImages(OldImages());
        return ImportHexFile(folder_.Settings(), Hex(content));
    }
    QByteArray Export(const std::array<QByteArray, 4> &images) {
        folder_.SetImages(images);
        ExportHexFile(folder_.Settings(), folder_.Path("out.hex"));
        return ReadFile(folder_.Path("out.hex"));
    }
    QByteArray ExportOfOtherFamily(const std::array<QByteArray, 4> &images) {
        folder_.SetImages(images);
        ExportHexFileOfOtherFamily(folder_.Settings(), folder_.Path("out.hex"));
        return ReadFile(folder_.Path("out.hex"));
    }

    // Expects that a call raises a fault that names the file.
    template <typename Call>
    static void ExpectFault(const QString &path, Call call) {
        try {
            call();
            FAIL() << "no fault";
        } catch (const Fault &fault) {
            EXPECT_EQ(fault.Cause(), Fault::Kind::File);
            EXPECT_TRUE(fault.Description().startsWith(path + QStringLiteral(": "))) << fault.what();
            EXPECT_GT(fault.Description().size(), path.size() + 3);
        }
    }

    HexFolder folder_;
};

// The check

TEST_F(HexFileAccessTest, GivesEachFileItsCode) {
    for (const auto &[name, content, code] : codesOfFiles) {
        EXPECT_EQ(CheckHexFile(Hex(content)), code) << name;
    }
}

TEST_F(HexFileAccessTest, ImportAnswersWithTheCodeOfTheCheckAndTouchesNothingUnlessItIsGood) {
    for (const auto &[name, content, code] : codesOfFiles) {
        EXPECT_EQ(Import(content), code) << name;
        if (code < 0) {
            EXPECT_EQ(folder_.Images(), OldImages()) << name;
        } else {
            EXPECT_NE(folder_.Images(), OldImages()) << name;
        }
    }
}

TEST_F(HexFileAccessTest, TakesASumOf32767AndNoMore) {
    // The length of a record of 250 bytes is part of its sum.
    const auto recordOfSum = [](int sum) {
        int rest = sum - 250;
        QByteArray text = ":FA000000";
        for (int index = 0; index < 251; ++index) {
            const int byte = std::min(rest, 255);
            rest -= byte;
            text += Digits(byte, 2);
        }
        return text + "\r\n" + end;
    };
    EXPECT_EQ(CheckHexFile(Hex(recordOfSum(32512))), goodFile);
    EXPECT_EQ(CheckHexFile(Hex(recordOfSum(32767))), wrongChecksum);
    EXPECT_EQ(CheckHexFile(Hex(recordOfSum(32768))), failure);
}

TEST_F(HexFileAccessTest, FindsTheFirstFault) {
    EXPECT_EQ(CheckHexFile(Hex("x\r\n:0100000041BF\r\n")), wrongCharacter);
    EXPECT_EQ(CheckHexFile(Hex(":0100000041BF\r\nx\r\n")), wrongChecksum);
}

TEST_F(HexFileAccessTest, MakesTheProgramFolderTheCurrentOne) {
    QDir::setCurrent(QStringLiteral("/"));
    Hex(end);
    EXPECT_EQ(CheckHexFile(QStringLiteral("a.hex")), goodFile);
    EXPECT_EQ(QFileInfo(QDir::currentPath()), QFileInfo(folder_.Path(".")));
    EXPECT_EQ(ImportHexFile(folder_.Settings(), QStringLiteral("a.hex")), goodFile);
}

TEST_F(HexFileAccessTest, FailsWithoutAProgramFolder) {
    const QString gone = folder_.Path("gone");
    const QString path = Hex(end);
    const EnvironmentVariable home("ZTVLINK_HOME", gone);
    ExpectFault(gone, [&path] { CheckHexFile(path); });
}

TEST_F(HexFileAccessTest, AFileThatCantBeOpenedIsAFault) {
    const QString pipe = folder_.Path("pipe");
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    folder_.SetImages(OldImages());
    for (const QString &path : {folder_.Path("gone.hex"), folder_.Path("."), pipe, QString()}) {
        ExpectFault(path, [&path] { CheckHexFile(path); });
        ExpectFault(path, [this, &path] { ImportHexFile(folder_.Settings(), path); });
    }
    EXPECT_EQ(folder_.Images(), OldImages());
}

TEST_F(HexFileAccessTest, AFileThatCantBeReadOnceItIsOpenIsAFailure) {
    EXPECT_EQ(CheckHexFile(QStringLiteral("/proc/self/mem")), failure);
}

TEST_F(HexFileAccessTest, JudgesAHugeLineWithoutKeepingIt) {
    // A sparse file: a colon, then zero bytes that occupy no disk space.
    constexpr qint64 mebibyte = 1024 * 1024;
    const QString path = Hex(":");
    ASSERT_TRUE(QFile::resize(path, 256 * mebibyte));
    const qint64 before = MostResidentBytes();
    EXPECT_EQ(CheckHexFile(path), noEndRecord);
    EXPECT_LT(MostResidentBytes() - before, 16 * mebibyte);
}

// The import

TEST_F(HexFileAccessTest, ReplacesAllImagesAlsoWithNothing) {
    EXPECT_EQ(Import(end), goodFile);
    EXPECT_EQ(folder_.Images(), (std::array<QByteArray, 4>{}));
}

TEST_F(HexFileAccessTest, MakesImagesThatWerentThere) {
    EXPECT_EQ(ImportHexFile(folder_.Settings(), Hex(end)), goodFile);
    for (const char *name : {"PROGMEM.MCP", "EEDATA.MCP", "USERID.MCP", "CONFIG.MCP"}) {
        EXPECT_TRUE(QFile::exists(folder_.Path(name))) << name;
    }
}

TEST_F(HexFileAccessTest, WritesALineOf55Characters) {
    EXPECT_EQ(Import(Record(0, 0x800, Counted(16, 0xA0)) + end), goodFile);
    EXPECT_EQ(folder_.Program(), QByteArray("000800 A0 A1 A2 A3 A4 A5 A6 A7 A8 A9 AA AB AC AD AE AF \r\n"));
    EXPECT_EQ(folder_.Program().size(), 55 + 2);
}

TEST_F(HexFileAccessTest, PutsAllDataIntoTheProgramWithoutAnUpperWord) {
    EXPECT_EQ(Import(Record(0, 0x0000, Counted(16)) + Record(0, 0xFFF0, Counted(16)) + end), goodFile);
    EXPECT_EQ(folder_.Images(), (std::array<QByteArray, 4>{
                                    ImageLine(0, Counted(16)) + ImageLine(0xFFF0, Counted(16)), "", "", ""}));
}

TEST_F(HexFileAccessTest, PutsEachRegionIntoItsImage) {
    EXPECT_EQ(Import(UpperWord(0x00F0) + Record(0, 0x0010, "e") + UpperWord(0x0030) + Record(0, 0x0020, "c") +
                     UpperWord(0x0020) + Record(0, 0x0030, "i") + UpperWord(0x001F) + Record(0, 0x0040, "q") +
                     UpperWord(0x0001) + Record(0, 0x0050, "p") + UpperWord(0) + Record(0, 0x0060, "o") +
                     end),
              goodFile);
    EXPECT_EQ(folder_.Program(),
              ImageLine(0x1F0040, "q") + ImageLine(0x010050, "p") + ImageLine(0x000060, "o"));
    EXPECT_EQ(folder_.Eeprom(), ImageLine(0x000010, "e"));
    EXPECT_EQ(folder_.UserId(), ImageLine(0x200030, "i"));
    EXPECT_EQ(folder_.Config(), ImageLine(0x300020, "c"));
}

TEST_F(HexFileAccessTest, DropsRecordsOfOtherRegionsWithoutAWord) {
    QByteArray content;
    for (const int word : {0x21, 0x22, 0x2F, 0x31, 0xEF, 0xF1, 0xFF, 0x100, 0x2000, 0x8000, 0xF000, 0xFFFF}) {
        content += UpperWord(word) + Record(0, 0x0800, Counted(16));
    }
    EXPECT_EQ(Import(content + end), goodFile);
    EXPECT_EQ(folder_.Images(), (std::array<QByteArray, 4>{}));
}

TEST_F(HexFileAccessTest, KeepsTheUpperWordUntilTheNext) {
    EXPECT_EQ(Import(UpperWord(2) + Record(0, 0x10, "a") + Record(2, 0, "zz") + Record(5, 0, "zzzz") +
                     Record(0, 0x20, "b") + end),
              goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0x020010, "a") + ImageLine(0x020020, "b"));
}

TEST_F(HexFileAccessTest, ReadsWhatTheUpperWordLacksAsItsLeadingDigits) {
    EXPECT_EQ(Import(":01000004FB\r\n" + Record(0, 0x10, "a") + end), goodFile);
    EXPECT_EQ(folder_.Images(), (std::array<QByteArray, 4>{})); // the checksum is in the place of the word
    EXPECT_EQ(Import(":0200000400xxFA\r\n" + Record(0, 0x10, "a") + end), goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0x000010, "a"));
}

TEST_F(HexFileAccessTest, FillsBeforeARecordThatStartsPastTheBoundary) {
    EXPECT_EQ(Import(Record(0, 0x0805, "abc") + end), goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0x800, "\xFF\xFF\xFF\xFF\xFF"
                                                  "abc"));
}

TEST_F(HexFileAccessTest, FillsBehindAShortRecord) {
    EXPECT_EQ(Import(Record(0, 0x0800, "a") + end), goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0x800, "a"));
}

TEST_F(HexFileAccessTest, LosesWhatPassesTheBoundary) {
    EXPECT_EQ(Import(Record(0, 0x0808, Counted(16)) + end), goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0x800, QByteArray(8, '\xFF') + Counted(8)));
    EXPECT_EQ(Import(Record(0, 0x080F, "ab") + end), goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0x800, QByteArray(15, '\xFF') + 'a'));
}

TEST_F(HexFileAccessTest, WritesALineForEachRecordOfTheSame16Bytes) {
    EXPECT_EQ(Import(Record(0, 0x0800, "ab") + Record(0, 0x0802, "cd") + Record(0, 0x0800, "xy") + end),
              goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0x800, "ab") +
                                     ImageLine(0x800, "\xFF\xFF"
                                                      "cd") +
                                     ImageLine(0x800, "xy"));
}

TEST_F(HexFileAccessTest, WritesALineForEach16BytesOfLength) {
    EXPECT_EQ(Import(Record(0, 0x0800, Counted(17)) + end), goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0x800, Counted(16)) + ImageLine(0x810, Counted(1, 16)));
    EXPECT_EQ(Import(Record(0, 0x0808, Counted(32)) + end), goodFile);
    EXPECT_EQ(folder_.Program(),
              ImageLine(0x800, QByteArray(8, '\xFF') + Counted(8)) + ImageLine(0x810, Counted(16, 8)));
}

TEST_F(HexFileAccessTest, LetsTheAddressesOfALongRecordRunOnPast64K) {
    EXPECT_EQ(Import(Record(0, 0xFFF0, Counted(32)) + UpperWord(0xF0) + Record(0, 0xFFF0, Counted(32)) + end),
              goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0xFFF0, Counted(16)) + ImageLine(0x10000, Counted(16, 16)));
    EXPECT_EQ(folder_.Eeprom(), ImageLine(0xFFF0, Counted(16)) + ImageLine(0x10000, Counted(16, 16)));
}

TEST_F(HexFileAccessTest, KeepsTheOrderOfTheRecords) {
    EXPECT_EQ(Import(Record(0, 0x20, "b") + Record(0, 0x10, "a") + Record(0, 0x30, "c") + end), goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0x20, "b") + ImageLine(0x10, "a") + ImageLine(0x30, "c"));
}

TEST_F(HexFileAccessTest, WritesNothingForARecordWithoutData) {
    EXPECT_EQ(Import(Record(0, 0x0800, {}) + ":\r\n" + end), goodFile);
    EXPECT_EQ(folder_.Program(), QByteArray());
}

TEST_F(HexFileAccessTest, ReadsMissingBytesAsZero) {
    EXPECT_EQ(Import(":04080000F4\r\n" + end), goodFile); // the checksum is the first byte
    EXPECT_EQ(folder_.Program(), ImageLine(0x800, QByteArray("\xF4\0\0\0", 4)));
}

TEST_F(HexFileAccessTest, PassesOverWhatIsntARecordAndWhatComesBehindTheEnd) {
    EXPECT_EQ(Import("\r\n  blank\r\n\ttab\r\n" + Record(0, 0, "a") + end + Record(0, 0x10, "b") + "x"),
              goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0, "a"));
}

TEST_F(HexFileAccessTest, TakesLowerCaseAndWritesUpperCase) {
    EXPECT_EQ(Import(Record(0, 0x0ab0, Counted(16, 0xA0)).toLower() + end), goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0xAB0, Counted(16, 0xA0)));
}

TEST_F(HexFileAccessTest, TakesEveryLineEndAlike) {
    const QByteArray content = UpperWord(0) + Record(0, 0x800, Counted(16)) + Record(0, 0x810, "x") + end;
    for (const char *lineEnd : {"\r\n", "\n", "\r"}) {
        QByteArray converted = content;
        converted.replace("\r\n", lineEnd);
        EXPECT_EQ(Import(converted), goodFile);
        EXPECT_EQ(folder_.Program(), ImageLine(0x800, Counted(16)) + ImageLine(0x810, "x"));
    }
}

TEST_F(HexFileAccessTest, DoesntHoldDataToTheLimitsOfTheRegions) {
    EXPECT_EQ(Import(Record(0, 0x0000, "b") + Record(0, 0xC000, "p") + UpperWord(0x20) +
                     Record(0, 0x1000, "i") + end),
              goodFile);
    EXPECT_EQ(folder_.Program(), ImageLine(0, "b") + ImageLine(0xC000, "p"));
    EXPECT_EQ(folder_.UserId(), ImageLine(0x201000, "i"));
}

TEST_F(HexFileAccessTest, Takes240BytesAtAnyOffset) {
    for (const int offset : {0, 15}) {
        const QByteArray data = QByteArray(240 - 16, '\x01') + Counted(16);
        EXPECT_EQ(Import(Record(0, 0x1000 + offset, data) + end), goodFile);
        const QByteArray buffer = QByteArray(offset, '\xFF') + data;
        QByteArray expected;
        for (int start = 0; start < 240; start += 16) {
            expected += ImageLine(0x1000 + start, buffer.mid(start, 16));
        }
        EXPECT_EQ(folder_.Program(), expected) << offset;
    }
}

TEST_F(HexFileAccessTest, ARecordOfMoreThan240BytesIsAFault) {
    for (int length = 241; length <= 255; ++length) {
        for (const int offset : {0, 1, 2, 14, 15}) {
            const QByteArray content = Record(0, offset, QByteArray(length, '\x01')) + end;
            ExpectFault(folder_.Path("a.hex"), [this, &content] { Import(content); });
        }
    }
}

TEST_F(HexFileAccessTest, ADroppedRecordIsAFaultOnlyWhereItPassesTheWorkBuffer) {
    const auto dropped = [](int length, int offset) {
        return UpperWord(0x50) + Record(0, offset, QByteArray(length, '\x01')) + end;
    };
    EXPECT_EQ(Import(dropped(255, 2)), goodFile);
    EXPECT_EQ(Import(dropped(242, 15)), goodFile);
    ExpectFault(folder_.Path("a.hex"), [&] { Import(dropped(255, 3)); });
    ExpectFault(folder_.Path("a.hex"), [&] { Import(dropped(243, 15)); });
}

TEST_F(HexFileAccessTest, ALongRecordOfAnotherTypeIsPassedOver) {
    EXPECT_EQ(Import(Record(7, 15, QByteArray(255, '\x01')) + end), goodFile);
}

TEST_F(HexFileAccessTest, AnImageThatCantBeCreatedIsAFault) {
    for (QString BootSettings::*file : {&BootSettings::ProgramFile, &BootSettings::EepromFile,
                                        &BootSettings::UserIdFile, &BootSettings::ConfigFile}) {
        BootSettings settings = folder_.Settings();
        settings.*file = folder_.Path("gone/X.MCP");
        const QString path = Hex(end);
        ExpectFault(settings.*file, [&] { ImportHexFile(settings, path); });
    }
}

TEST_F(HexFileAccessTest, AnImportWithoutRoomIsAFault) {
    QByteArray content;
    for (int address = 0; address < 0x10000; address += 16) {
        content += Record(0, address, Counted(16));
    }
    const QString path = Hex(content + end);
    for (const rlim_t room : {10, 100000}) {
        const FileSizeLimit limit(room);
        ExpectFault(folder_.Settings().ProgramFile, [&] { ImportHexFile(folder_.Settings(), path); });
    }
}

// The export

TEST_F(HexFileAccessTest, ExportsEmptyImagesAsAnEndRecordAlone) {
    EXPECT_EQ(Export({}), end);
}

TEST_F(HexFileAccessTest, ExportsTheImagesInTheirOrder) {
    EXPECT_EQ(Export({ImageLine(0x800, Counted(16)), ImageLine(0x10, Counted(16, 0x10)),
                      ImageLine(0x200000, Counted(16, 0x20)), ImageLine(0x300000, Counted(16, 0x30))}),
              UpperWord(0x00) + Record(0, 0x0800, Counted(16)) + UpperWord(0x20) +
                  Record(0, 0, Counted(16, 0x20)) + UpperWord(0x30) + Record(0, 0, Counted(16, 0x30)) +
                  UpperWord(0xF0) + Record(0, 0x0010, Counted(16, 0x10)) + end);
}

TEST_F(HexFileAccessTest, ExportsKnownText) {
    EXPECT_EQ(Export({"000100 21 46 01 36 01 21 47 01 36 00 7E FE 09 D2 19 01 \r\n"
                      "000110 21 46 01 7E 17 C2 00 01 FF 5F 16 00 21 48 01 19\r\n",
                      "", "", ""}),
              QByteArray(":020000040000FA\r\n"
                         ":10010000214601360121470136007EFE09D2190140\r\n"
                         ":100110002146017E17C20001FF5F16002148011928\r\n"
                         ":00000001FF\r\n"));
}

TEST_F(HexFileAccessTest, WritesAnUpperWordWhereverItChanges) {
    const QByteArray data = Counted(16);
    EXPECT_EQ(Export({ImageLine(0x00FFF0, data) + ImageLine(0x010000, data) + ImageLine(0x010010, data) +
                          ImageLine(0x000000, data),
                      "", "", ""}),
              UpperWord(0) + Record(0, 0xFFF0, data) + UpperWord(1) + Record(0, 0, data) +
                  Record(0, 0x10, data) + UpperWord(0) + Record(0, 0, data) + end);
}

TEST_F(HexFileAccessTest, WritesNoUpperWordForAFirstLineBelow800000) {
    EXPECT_EQ(Export({ImageLine(0x7F1230, Counted(16)), "", "", ""}), Record(0, 0x1230, Counted(16)) + end);
}

TEST_F(HexFileAccessTest, LetsTheAddressRunOnFromFileToFile) {
    const QByteArray data = Counted(16);
    EXPECT_EQ(Export({ImageLine(0x200000, data), "", ImageLine(0x200010, data), ImageLine(0x200020, data)}),
              UpperWord(0x20) + Record(0, 0, data) + Record(0, 0x10, data) + Record(0, 0x20, data) + end);
}

TEST_F(HexFileAccessTest, LooksAtNoMoreOfAnEepromAddressThanItsUpperByte) {
    EXPECT_EQ(Export({"", ImageLine(0xFF1230, Counted(16)), "", ""}),
              UpperWord(0xEF) + Record(0, 0x1230, Counted(16)) + end);
}

TEST_F(HexFileAccessTest, ExportsBothFormsOfLinesAlike) {
    const QByteArray fromImport = ImageLine(0x800, Counted(16));
    QByteArray fromDevice = fromImport;
    fromDevice.replace(" \r\n", "\r\n");
    EXPECT_EQ(fromDevice.size(), 54 + 2);
    EXPECT_EQ(Export({fromImport, "", "", ""}), Export({fromDevice, "", "", ""}));
    EXPECT_EQ(Export({fromDevice.trimmed(), "", "", ""}), Export({fromDevice, "", "", ""}));
}

TEST_F(HexFileAccessTest, CopiesTheDigitsAsTheyStand) {
    const QByteArray line = QByteArray("000800 0a 0B xy 1z").leftJustified(52, ' ') + "77 and more";
    const QByteArray data = QByteArray("0a0Bxy1z").leftJustified(30, ' ') + "77";
    const int sum = 0x10 + 0x08 + 0x0A + 0x0B + 0x01 + 0x77;
    EXPECT_EQ(Export({line, "", "", ""}),
              UpperWord(0) + ":10080000" + data + Digits(0x100 - sum, 2) + "\r\n" + end);
}

TEST_F(HexFileAccessTest, CopiesWhatStandsInALineThatIsTooShort) {
    EXPECT_EQ(Export({"000800 01 0\r\n\r\n12", "", "", ""}), ":020000040000FA\r\n:10080000010" +
                                                                 Digits(0x100 - 0x19, 2) +
                                                                 "\r\n:10000000F0\r\n:10001200DE\r\n" + end);
}

TEST_F(HexFileAccessTest, ReadsAnAddressThatIsntHexadecimalAsItsLeadingDigits) {
    EXPECT_EQ(Export({"01x800 " + QByteArray("00 ").repeated(16) + "\r\nhello\r\n", "", "", ""}),
              UpperWord(0) + Record(0, 1, QByteArray(16, '\0')) + ":10000000F0\r\n" + end);
}

TEST_F(HexFileAccessTest, KeepsTheStartOfAHugeLine) {
    EXPECT_EQ(Export({ImageLine(0x800, Counted(16)).trimmed() + QByteArray(300000, '5'), "", "", ""}),
              UpperWord(0) + Record(0, 0x800, Counted(16)) + end);
}

TEST_F(HexFileAccessTest, DiscardsWhatTheHexFileHeld) {
    WriteFile(folder_.Path("out.hex"), QByteArray(10000, 'x'));
    EXPECT_EQ(Export({}), end);
}

TEST_F(HexFileAccessTest, AMissingImageIsAFaultAndTheHexFileStaysWhole) {
    for (const char *name : {"PROGMEM.MCP", "EEDATA.MCP", "USERID.MCP", "CONFIG.MCP"}) {
        folder_.SetImages({});
        const QString path = folder_.Path("out.hex");
        WriteFile(path, "old");
        ASSERT_TRUE(QFile::remove(folder_.Path(name)));
        ExpectFault(folder_.Path(name), [&] { ExportHexFile(folder_.Settings(), path); });
        EXPECT_EQ(ReadFile(path), QByteArray("old"));
    }
}

TEST_F(HexFileAccessTest, AHexFileThatCantBeCreatedIsAFault) {
    folder_.SetImages({});
    for (const QString &path : {folder_.Path("gone/out.hex"), folder_.Path("."), QString()}) {
        ExpectFault(path, [&] { ExportHexFile(folder_.Settings(), path); });
    }
}

TEST_F(HexFileAccessTest, AnExportWithoutRoomIsAFault) {
    folder_.SetImages({ImageLine(0x800, Counted(16)).repeated(10000), "", "", ""});
    const QString path = folder_.Path("out.hex");
    for (const rlim_t room : {10, 100000}) {
        const FileSizeLimit limit(room);
        ExpectFault(path, [&] { ExportHexFile(folder_.Settings(), path); });
    }
}

TEST_F(HexFileAccessTest, AnImageIsntTakenForTheHexFile) {
    const std::array<QByteArray, 4> images = {end, end, end, end};
    folder_.SetImages(images);
    ASSERT_TRUE(QFile::link(folder_.Path("USERID.MCP"), folder_.Path("link.hex")));
    for (const char *name : {"PROGMEM.MCP", "EEDATA.MCP", "link.hex", "CONFIG.MCP"}) {
        const QString path = folder_.Path(name);
        ExpectFault(path, [&] { ExportHexFile(folder_.Settings(), path); });
        ExpectFault(path, [&] { ImportHexFile(folder_.Settings(), path); });
    }
    EXPECT_EQ(folder_.Images(), images);
}

TEST_F(HexFileAccessTest, ImportingAndExportingGivesRecordsOf16Bytes) {
    EXPECT_EQ(
        Import(UpperWord(0xF0) + Record(0, 3, "e") + UpperWord(0) + Record(0, 0x800, Counted(20)) + end),
        goodFile);
    EXPECT_EQ(Export(folder_.Images()),
              UpperWord(0) + Record(0, 0x800, Counted(16)) +
                  Record(0, 0x810, Counted(4, 16) + QByteArray(12, '\xFF')) + UpperWord(0xF0) +
                  Record(0, 0, QByteArray(3, '\xFF') + 'e' + QByteArray(12, '\xFF')) + end);
    const std::array<QByteArray, 4> images = folder_.Images();
    EXPECT_EQ(Import(ReadFile(folder_.Path("out.hex"))), goodFile);
    EXPECT_EQ(folder_.Images(), images);
}

// The other family

TEST_F(HexFileAccessTest, TheOtherFamilyTakesTheLowest64KIntoTheProgramOnly) {
    folder_.SetImages(OldImages());
    const QString path = Hex(Record(0, 0x0005, "a") + Record(0, 0x4200, "b") + UpperWord(1) +
                             Record(0, 0, "x") + UpperWord(0x20) + Record(0, 0, "x") + UpperWord(0xF0) +
                             Record(0, 0, "x") + UpperWord(0) + Record(0, 0xFFF0, "c") + end);
    EXPECT_EQ(ImportHexFileOfOtherFamily(folder_.Settings(), path), goodFile);
    EXPECT_EQ(folder_.Program(),
              ImageLine(0, QByteArray(5, '\xFF') + 'a') + ImageLine(0x4200, "b") + ImageLine(0xFFF0, "c"));
    EXPECT_EQ(folder_.Eeprom(), QByteArray());
    EXPECT_EQ(folder_.UserId(), OldImages()[2]);
    EXPECT_EQ(folder_.Config(), OldImages()[3]);
}

TEST_F(HexFileAccessTest, TheOtherFamilyHasTheSameCheck) {
    for (const auto &[name, content, code] : codesOfFiles) {
        folder_.SetImages(OldImages());
        EXPECT_EQ(ImportHexFileOfOtherFamily(folder_.Settings(), Hex(content)), code) << name;
        EXPECT_EQ(folder_.Images() == OldImages(), code < 0) << name;
    }
}

TEST_F(HexFileAccessTest, TheOtherFamilyExportsTwoImagesFromAddress0) {
    const QByteArray data = Counted(16);
    EXPECT_EQ(ExportOfOtherFamily({ImageLine(0x0010, data) + ImageLine(0x010020, data), ImageLine(0x30, data),
                                   ImageLine(0x40, data), ImageLine(0x50, data)}),
              Record(0, 0x10, data) + UpperWord(1) + Record(0, 0x20, data) + UpperWord(0) +
                  Record(0, 0x2130, data) + end);
    EXPECT_EQ(ExportOfOtherFamily({"", ImageLine(0x01FF00, data), "", ""}),
              UpperWord(2) + Record(0, 0x2000, data) + end);
}

TEST_F(HexFileAccessTest, TheOtherFamilyDoesWithoutTheIdAndConfigurationImages) {
    folder_.SetImages({});
    ASSERT_TRUE(QFile::remove(folder_.Path("USERID.MCP")));
    ASSERT_TRUE(QFile::remove(folder_.Path("CONFIG.MCP")));
    ExportHexFileOfOtherFamily(folder_.Settings(), folder_.Path("out.hex"));
    EXPECT_EQ(ReadFile(folder_.Path("out.hex")), end);
    EXPECT_EQ(ImportHexFileOfOtherFamily(folder_.Settings(), folder_.Path("out.hex")), goodFile);
    EXPECT_FALSE(QFile::exists(folder_.Path("USERID.MCP")));
}

TEST_F(HexFileAccessTest, TheDeviceFamilySelectsThePair) {
    const QString path = Hex(UpperWord(0x20) + Record(0, 0, Counted(16)) + end);
    const QString out = folder_.Path("out.hex");
    for (const int family : {0, 1, 2, 255}) {
        folder_.Settings().DeviceFamily = static_cast<std::uint8_t>(family);
        folder_.SetImages(OldImages());
        EXPECT_EQ(ImportForDeviceFamily(folder_.Settings(), path), goodFile);
        EXPECT_EQ(folder_.UserId(), family == 1 ? ImageLine(0x200000, Counted(16)) : OldImages()[2]);
        folder_.SetImages({ImageLine(0, Counted(16)), "", "", ""});
        ExportForDeviceFamily(folder_.Settings(), out);
        EXPECT_EQ(ReadFile(out),
                  (family == 1 ? UpperWord(0) : QByteArray()) + Record(0, 0, Counted(16)) + end);
    }
}

} // namespace ztv
