// Compares many hex files and images with what other programs read from the same files.

#include "firmware/HexFileAccess.h"
#include "support/Fault.h"
#include "tests/firmware/HexFolder.h"
#include "tests/helpers/Printers.h"

#include <QProcess>
#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <memory>

namespace ztv {

using namespace HexFileAccess;

namespace {

using MemoryMap = std::map<std::uint32_t, std::uint8_t>;

struct Converter {
    QString program;
    QStringList (*arguments)(const QString &hexFile, const QString &records);
};

// Both write Motorola records, a format that shares only addresses and bytes with Intel's.
const Converter converters[] = {
    {QStringLiteral("srec_cat"),
     [](const QString &hexFile, const QString &records) {
         return QStringList{hexFile, QStringLiteral("-Intel"), QStringLiteral("-Output"), records,
                            QStringLiteral("-Motorola")};
     }},
    {QStringLiteral("objcopy"),
     [](const QString &hexFile, const QString &records) {
         return QStringList{QStringLiteral("-I"),
                            QStringLiteral("ihex"),
                            QStringLiteral("-O"),
                            QStringLiteral("srec"),
                            hexFile,
                            records};
     }},
};

void RunProgram(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments);
    ASSERT_TRUE(process.waitForFinished(60000)) << program.toStdString();
    ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
}

MemoryMap MapOfMotorolaRecords(const QByteArray &content) {
    MemoryMap map;
    for (const QByteArray &line : content.split('\n')) {
        const int addressBytes = line.size() > 1 ? line[1] - '0' + 1 : 0;
        if (addressBytes < 2 || addressBytes > 4) {
            continue;
        }
        const QByteArray bytes = QByteArray::fromHex(line.mid(2));
        std::uint32_t address = 0;
        for (int index = 1; index <= addressBytes; ++index) {
            address = address << 8 | static_cast<std::uint8_t>(bytes[index]);
        }
        for (qsizetype index = 1 + addressBytes; index < bytes.size() - 1; ++index) {
            map[address++] = static_cast<std::uint8_t>(bytes[index]);
        }
    }
    return map;
}

void AddImage(MemoryMap &map, const QByteArray &content, std::uint32_t base) {
    for (const QByteArray &line : content.split('\n')) {
        if (line.isEmpty()) {
            continue;
        }
        const QList<QByteArray> words = line.simplified().split(' ');
        ASSERT_EQ(words.size(), 17) << line.constData();
        std::uint32_t address = words[0].toUInt(nullptr, 16) + base;
        for (int index = 1; index < words.size(); ++index) {
            map[address++] = static_cast<std::uint8_t>(words[index].toUInt(nullptr, 16));
        }
    }
}

// Where another program has no byte, the import has filled a line with 0xFF.
void ExpectPadded(const MemoryMap &ours, const MemoryMap &theirs) {
    for (const auto &[address, byte] : theirs) {
        const auto found = ours.find(address);
        ASSERT_NE(found, ours.end()) << std::hex << address;
        ASSERT_EQ(found->second, byte) << std::hex << address;
    }
    for (const auto &[address, byte] : ours) {
        if (!theirs.contains(address)) {
            ASSERT_EQ(byte, 0xFF) << std::hex << address;
            ASSERT_TRUE(theirs.upper_bound(address | 15) != theirs.lower_bound(address & ~15U))
                << std::hex << address;
        }
    }
}

} // namespace

class HexCorpusTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        corpus_ = std::make_unique<QTemporaryDir>();
        RunProgram(QStringLiteral("python3"),
                   {QStringLiteral(ZTV_TESTS_DIR "/firmware/hex_corpus.py"), corpus_->path()});
    }
    static void TearDownTestSuite() { corpus_.reset(); }

    static QFileInfoList Files(const char *kind, qsizetype atLeast) {
        const QFileInfoList files =
            QDir(corpus_->filePath(QString::fromLatin1(kind))).entryInfoList(QDir::Files);
        EXPECT_GE(files.size(), atLeast);
        return files;
    }

    std::int16_t Import(const QString &path) {
        folder_.SetImages(OldImages());
        return ImportHexFile(folder_.Settings(), path);
    }

    MemoryMap Images() const {
        MemoryMap map;
        AddImage(map, folder_.Program(), 0);
        AddImage(map, folder_.UserId(), 0);
        AddImage(map, folder_.Config(), 0);
        AddImage(map, folder_.Eeprom(), 0xF00000);
        return map;
    }

    MemoryMap ReadBy(const Converter &converter, const QString &hexFile) const {
        const QString records = folder_.Path("records");
        QFile::remove(records);
        RunProgram(converter.program, converter.arguments(hexFile, records));
        return MapOfMotorolaRecords(ReadFile(records));
    }

    // Exports the imported images. The file must be valid, and importing it must give the same images.
    void ExpectRoundTrip() {
        const QString path = folder_.Path("out.hex");
        const std::array<QByteArray, 4> images = folder_.Images();
        ExportHexFile(folder_.Settings(), path);
        EXPECT_EQ(CheckHexFile(path), goodFile);
        EXPECT_EQ(Import(path), goodFile);
        EXPECT_TRUE(folder_.Images() == images);
    }

    HexFolder folder_;

private:
    static inline std::unique_ptr<QTemporaryDir> corpus_;
};

TEST_F(HexCorpusTest, OtherProgramsReadTheSameMemory) {
    for (const QFileInfo &file : Files("padded", 55)) {
        SCOPED_TRACE(file.fileName().toStdString());
        ASSERT_EQ(Import(file.filePath()), goodFile);
        const MemoryMap ours = Images();
        EXPECT_FALSE(ours.empty());
        const QString exported = folder_.Path("out.hex");
        ExportHexFile(folder_.Settings(), exported);
        for (const Converter &converter : converters) {
            SCOPED_TRACE(converter.program.toStdString());
            ExpectPadded(ours, ReadBy(converter, file.filePath()));
            EXPECT_TRUE(ours == ReadBy(converter, exported));
        }
        ExpectRoundTrip();
    }
}

TEST_F(HexCorpusTest, TakesEveryGoodFile) {
    int faults = 0;
    for (const QFileInfo &file : Files("good", 220)) {
        SCOPED_TRACE(file.fileName().toStdString());
        EXPECT_EQ(CheckHexFile(file.filePath()), goodFile);
        try {
            EXPECT_EQ(Import(file.filePath()), goodFile);
            ExpectRoundTrip();
        } catch (const Fault &fault) {
            EXPECT_EQ(fault.Cause(), Fault::Kind::File);
            EXPECT_TRUE(file.fileName().contains(QStringLiteral("long_2"))) << fault.what();
            ++faults;
        }
    }
    // 15 lengths above 240 at 5 offsets, and those that don't fit the work buffer.
    EXPECT_EQ(faults, 15 * 5 + 12 + 13);
}

TEST_F(HexCorpusTest, RefusesEveryBrokenFileWithItsCodeAndTouchesNothing) {
    for (const QFileInfo &file : Files("broken", 30)) {
        SCOPED_TRACE(file.fileName().toStdString());
        EXPECT_EQ(Import(file.filePath()), file.fileName().section(u'_', 0, 0).toInt());
        EXPECT_TRUE(folder_.Images() == OldImages());
    }
}

TEST_F(HexCorpusTest, StandsDamagedFilesAndNoise) {
    int good = 0;
    for (const QFileInfo &file : Files("garbage", 300)) {
        SCOPED_TRACE(file.fileName().toStdString());
        const std::int16_t code = CheckHexFile(file.filePath());
        EXPECT_TRUE(code == goodFile || (code >= failure && code <= emptyFile && code != fileNotPadded))
            << code;
        try {
            EXPECT_EQ(Import(file.filePath()), code);
            if (code < 0) {
                EXPECT_TRUE(folder_.Images() == OldImages());
            } else {
                ++good;
                ExpectRoundTrip();
            }
        } catch (const Fault &fault) {
            EXPECT_EQ(code, goodFile);
            EXPECT_EQ(fault.Cause(), Fault::Kind::File);
        }
        folder_.SetImages(OldImages());
        try {
            EXPECT_EQ(ImportHexFileOfOtherFamily(folder_.Settings(), file.filePath()), code);
        } catch (const Fault &) {
            EXPECT_EQ(code, goodFile);
        }
    }
    EXPECT_GT(good, 50);
}

TEST_F(HexCorpusTest, ExportsALineForALineWhateverStandsInTheImages) {
    for (const QFileInfo &file : Files("images", 150)) {
        SCOPED_TRACE(file.fileName().toStdString());
        const QByteArray image = ReadFile(file.filePath());
        folder_.SetImages({image, image, image, image});
        for (const auto &[exportImages, images] :
             {std::pair(&ExportHexFile, 4), std::pair(&ExportHexFileOfOtherFamily, 2)}) {
            exportImages(folder_.Settings(), folder_.Path("out.hex"));
            const QList<QByteArray> records = ReadFile(folder_.Path("out.hex")).split(':');
            const auto data = std::count_if(records.begin(), records.end(),
                                            [](const QByteArray &record) { return record.startsWith("10"); });
            QByteArray lines = image;
            lines.replace("\r\n", "\n").replace('\r', '\n');
            const auto expected = lines.count('\n') + (lines.isEmpty() || lines.endsWith('\n') ? 0 : 1);
            EXPECT_EQ(data, expected * images);
            EXPECT_TRUE(records.back() == QByteArray("00000001FF\r\n"));
        }
    }
}

} // namespace ztv
