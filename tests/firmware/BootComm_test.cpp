#include "firmware/BootComm.h"

#include "firmware/HexDigits.h"
#include "support/Fault.h"
#include "tests/firmware/FakeLoader.h"
#include "tests/helpers/Printers.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <gtest/gtest.h>

namespace ztv {

namespace {

QByteArray Bytes(const char *hex) {
    return QByteArray::fromHex(hex);
}

class BootCommTest : public testing::Test {
protected:
    BootCommTest() {
        BootSettings &settings = comm_.Settings();
        settings.PortName = QStringLiteral("COM7");
        settings.ProgramFile = Path("PROGMEM.MCP");
        settings.ErrorFile = Path("ERROR.MCP");
        comm_.OnTransfer({.yield =
                              [this] {
                                  ++yields_;
                                  if (onYield_) {
                                      onYield_();
                                  }
                              },
                          .status = [this](const QString &word) { words_.append(word); },
                          .progress = [this](double done) { progress_.push_back(done); }});
        EXPECT_TRUE(comm_.OpenPort());
    }

    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }
    static QByteArray ContentOf(const QString &fileName) {
        QFile file(fileName);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }
    void MakeImage(const QByteArray &text) const {
        QFile file(Path("PROGMEM.MCP"));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
    }
    static QByteArray Line(std::int32_t address, std::uint8_t first) {
        QByteArray line = HexDigits(address, 6).toLatin1();
        for (std::uint8_t index = 0; index < 16; ++index) {
            line += ' ' + HexDigits((first + index) & 0xFF, 2).toLatin1();
        }
        return line;
    }

    TransferResult Read(std::int32_t start, std::int32_t end,
                        std::uint8_t command = BootCommand::ReadProgram) {
        return comm_.ReadRegion(start, end, 1, command, Path("PROGMEM.MCP"));
    }
    TransferResult Write() {
        const ImageWritten image =
            comm_.WriteProgramImage(8, 1, BootCommand::WriteProgram, Path("PROGMEM.MCP"));
        differingLines_ = image.differingLines;
        return image.result;
    }
    // Makes the verification find a different byte in the line at that address.
    void SpoilLineAt(std::uint32_t address) {
        loader_.instead = [address](const QByteArray &packet, QByteArray answer) {
            const bool isIt = static_cast<std::uint8_t>(packet.at(2)) == (address & 0xFF) &&
                              static_cast<std::uint8_t>(packet.at(3)) == address >> 8;
            if (packet.at(0) == BootCommand::ReadProgram && isIt) {
                answer[9] = static_cast<char>(answer.at(9) ^ 1);
            }
            return answer;
        };
    }

    QTemporaryDir folder_;
    FakeLoader loader_;
    BootComm comm_{loader_.Opener()};
    int differingLines_ = -1; // from the last Write
    int yields_ = 0;
    std::function<void()> onYield_;
    QStringList words_;
    std::vector<double> progress_;
};

} // namespace

TEST_F(BootCommTest, SettingsBeginAsTheyAre) {
    const BootSettings settings;
    EXPECT_EQ(settings.PortHandle, 0);
    EXPECT_EQ(settings.TimeoutMs, 1000);
    EXPECT_EQ(settings.MaxPacketBytes, 128);
    EXPECT_EQ(settings.Retries, 3);
    EXPECT_EQ(settings.DeviceMode, 0);
    EXPECT_EQ(settings.DeviceFamily, 1);
    EXPECT_EQ(settings.DeviceName, QStringLiteral("PIC18F2525"));
    EXPECT_EQ(settings.DeviceCode, QStringLiteral("102"));
    EXPECT_EQ(settings.WriteBlockBytes, 8);
    EXPECT_EQ(settings.WordBytes, 1);
    EXPECT_EQ(settings.EraseBlockBytes, 64);
    EXPECT_EQ(settings.AddressBytes, 1);
    EXPECT_EQ(settings.SpareCount, 0);
    EXPECT_EQ(settings.ProgramStart, 0x000800);
    EXPECT_EQ(settings.ProgramEnd, 0x00BFFF);
    EXPECT_EQ(settings.EepromStart, 0);
    EXPECT_EQ(settings.EepromEnd, 0x0003FF);
    EXPECT_EQ(settings.ConfigStart, 0x300000);
    EXPECT_EQ(settings.ConfigEnd, 0x30000F);
    EXPECT_EQ(settings.UserIdStart, 0x200000);
    EXPECT_EQ(settings.UserIdEnd, 0x20000F);
    EXPECT_EQ(settings.EditorCommand, QStringLiteral("notepad.exe"));
}

TEST_F(BootCommTest, OpensThePortOnceAndClosesItOnce) {
    EXPECT_TRUE(comm_.OpenPort());
    ASSERT_EQ(loader_.openedPorts.size(), 1u);
    EXPECT_EQ(loader_.openedPorts.front(), (std::pair<QByteArray, std::int32_t>("COM7", 38400)));
    EXPECT_GT(comm_.Settings().PortHandle, 0);
    comm_.ClosePort();
    EXPECT_EQ(comm_.Settings().PortHandle, -1);
    EXPECT_TRUE(loader_.closed);
    comm_.ClosePort();
    EXPECT_EQ(comm_.Settings().PortHandle, -1);
    loader_.opens = false;
    EXPECT_FALSE(comm_.OpenPort());
    EXPECT_LT(comm_.Settings().PortHandle, 0);
}

TEST_F(BootCommTest, ReadsTheLoadersVersion) {
    EXPECT_EQ(comm_.ReadBootVersion(), QStringLiteral("V1.5"));
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>{Bytes("00 02")});
    loader_.instead = [](auto &, auto &) { return Bytes("00 02 00 00"); };
    EXPECT_EQ(comm_.ReadBootVersion(), QStringLiteral("V0.0"));
    loader_.instead = [](auto &, auto &) { return Bytes("00 02 FF 0C"); };
    EXPECT_EQ(comm_.ReadBootVersion(), QStringLiteral("V12.255"));
}

TEST_F(BootCommTest, NoVersionIsAnEmptyText) {
    loader_.answers = false;
    EXPECT_EQ(comm_.ReadBootVersion(), QString());
    EXPECT_EQ(loader_.packets.size(), 3u);
}

TEST_F(BootCommTest, AsksOnceWhetherTheLoaderIsSilent) {
    EXPECT_FALSE(comm_.LoaderIsSilent());
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>{Bytes("00 02")});
    loader_.instead = [](auto &, auto &) { return Bytes("00"); };
    EXPECT_FALSE(comm_.LoaderIsSilent());
    loader_.instead = {};
    loader_.answers = false;
    EXPECT_TRUE(comm_.LoaderIsSilent());
    EXPECT_EQ(loader_.packets.size(), 3u);
    comm_.ClosePort();
    EXPECT_FALSE(comm_.LoaderIsSilent()) << "nobody was asked";
}

namespace {

// Transfers nothing and reports no error.
class IdleLibrary : public BootLibrary {
public:
    using BootLibrary::BootLibrary;
    std::int32_t ReadPIC(std::int32_t, const TransferRecord &, std::span<std::uint8_t>) override {
        ++reads;
        return 0;
    }
    std::int32_t WritePIC(std::int32_t, const TransferRecord &, std::span<const std::uint8_t>) override {
        return 0;
    }
    int reads = 0;
};

} // namespace

TEST_F(BootCommTest, NothingMovedIsNeitherAByteNorARunMode) {
    auto library = std::make_unique<IdleLibrary>(loader_.Opener());
    IdleLibrary &idle = *library;
    BootComm comm(std::move(library));
    ASSERT_TRUE(comm.OpenPort());
    EXPECT_EQ(comm.SetRunMode(), 0);
    EXPECT_EQ(comm.ReadEepromByte(1022), -1);
    EXPECT_EQ(idle.reads, 1);
}

TEST_F(BootCommTest, AReadThatMovesNothingGoesOnAtItsAddressUntilItIsAborted) {
    auto library = std::make_unique<IdleLibrary>(loader_.Opener());
    IdleLibrary &idle = *library;
    BootComm comm(std::move(library));
    QStringList words;
    comm.OnTransfer({.yield =
                         [&] {
                             if (idle.reads == 5) {
                                 comm.Settings().ContinueFlag = 0;
                             }
                         },
                     .status = [&](const QString &word) { words.append(word); },
                     .progress = [](double) {}});
    std::int32_t start = 0x800;
    std::int32_t end = 0x8FF;
    EXPECT_EQ(comm.ReadRegion(start, end, 1, BootCommand::ReadProgram, Path("PROGMEM.MCP")),
              TransferResult::Aborted);
    EXPECT_EQ(idle.reads, 5);
    EXPECT_EQ(words, QStringList(5, QStringLiteral("Reading: 2048")));
    EXPECT_EQ(ContentOf(Path("PROGMEM.MCP")), QByteArray());
}

TEST_F(BootCommTest, AResetAlwaysSucceeds) {
    EXPECT_EQ(comm_.ResetProcessor(), QString());
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>{Bytes("00 00")});
    loader_.answers = false;
    EXPECT_EQ(comm_.ResetProcessor(), QString());
    comm_.ClosePort();
    EXPECT_EQ(comm_.ResetProcessor(), QString());
    EXPECT_EQ(loader_.packets.size(), 2u);
}

TEST_F(BootCommTest, WritesTheRunMode) {
    EXPECT_EQ(comm_.SetRunMode(), 1);
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>{Bytes("05 01 FF 7F 00 00")});
    loader_.answers = false;
    EXPECT_LT(comm_.SetRunMode(), 0);
    EXPECT_EQ(loader_.packets.size(), 4u);
}

TEST_F(BootCommTest, ReadsAByteOfTheEeprom) {
    loader_.eeprom[1022] = 0xA5;
    EXPECT_EQ(comm_.ReadEepromByte(1022), 0xA5);
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>{Bytes("04 01 FE 03 00")});
    loader_.answers = false;
    EXPECT_EQ(comm_.ReadEepromByte(1022), -1);
}

TEST_F(BootCommTest, ReadsARegionInPacketsIntoLinesOfSixteenBytes) {
    for (std::uint32_t address = 0; address < 0xC000; ++address) {
        loader_.program[address] = static_cast<std::uint8_t>(address * 7 + (address >> 8));
    }
    EXPECT_EQ(Read(0x800, 0xBFFF), TransferResult::Finished);
    EXPECT_EQ(loader_.packets.size(), 368u);
    EXPECT_EQ(loader_.packets.front(), Bytes("01 80 00 08 00"));
    EXPECT_EQ(loader_.packets.back(), Bytes("01 80 80 BF 00"));
    const QList<QByteArray> lines = ContentOf(Path("PROGMEM.MCP")).split('\n');
    ASSERT_EQ(lines.size(), 47104 / 16 + 1);
    EXPECT_EQ(lines.first(), QByteArray("000800 08 0F 16 1D 24 2B 32 39 40 47 4E 55 5C 63 6A 71\r"));
    EXPECT_EQ(lines.at(2943).left(9), QByteArray("00BFF0 4F"));
    EXPECT_EQ(lines.last(), QByteArray());
    for (qsizetype index = 0; index < 2944; ++index) {
        ASSERT_EQ(lines.at(index).size(), 55); // with the carriage return
    }
    EXPECT_EQ(yields_, 368);
    EXPECT_EQ(words_.first(), QStringLiteral("Reading: 2176"));
    EXPECT_EQ(words_.last(), QStringLiteral("Reading: 49152"));
    EXPECT_EQ(progress_.back(), 1);
}

TEST_F(BootCommTest, ReadsTheEepromAndTheSmallAreas) {
    EXPECT_EQ(Read(0, 0x3FF, BootCommand::ReadEeprom), TransferResult::Finished);
    EXPECT_EQ(loader_.packets.size(), 8u);
    EXPECT_EQ(loader_.packets.front(), Bytes("04 80 00 00 00"));
    loader_.packets.clear();
    EXPECT_EQ(Read(0x300000, 0x30000F), TransferResult::Finished);
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>{Bytes("01 10 00 00 30")});
    EXPECT_EQ(ContentOf(Path("PROGMEM.MCP")),
              QByteArray("300000 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF\r\n"));
}

TEST_F(BootCommTest, NeverWritesALineThatIsNotFull) {
    EXPECT_EQ(Read(0x10, 0x27), TransferResult::Finished);
    EXPECT_EQ(ContentOf(Path("PROGMEM.MCP")).count('\n'), 1);
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>{Bytes("01 18 10 00 00")});
}

TEST_F(BootCommTest, MultipliesTheAddressesByTheBytesOfOne) {
    std::int32_t start = 0x10;
    std::int32_t end = 0x1F;
    EXPECT_EQ(comm_.ReadRegion(start, end, 2, BootCommand::ReadProgram, Path("PROGMEM.MCP")),
              TransferResult::Finished);
    EXPECT_EQ(start, 0x20);
    EXPECT_EQ(end, 0x3E);
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>{Bytes("01 1F 10 00 00")});
}

TEST_F(BootCommTest, AReadThatFailsKeepsTheLinesSoFar) {
    loader_.instead = [this](auto &, const QByteArray &answer) {
        return loader_.packets.size() > 2 ? QByteArray() : answer;
    };
    EXPECT_EQ(Read(0x800, 0xBFFF), TransferResult{BootResult::NoAnswer});
    EXPECT_EQ(loader_.packets.size(), 2u + 3u);
    EXPECT_EQ(ContentOf(Path("PROGMEM.MCP")).count('\n'), 16);
}

TEST_F(BootCommTest, AnAbortEndsAReadAtTheNextRound) {
    onYield_ = [this] {
        if (yields_ == 3) {
            comm_.Settings().ContinueFlag = 0;
        }
    };
    EXPECT_EQ(Read(0x800, 0xBFFF), TransferResult::Aborted);
    EXPECT_EQ(loader_.packets.size(), 2u);
    EXPECT_EQ(ContentOf(Path("PROGMEM.MCP")).count('\n'), 16);
    EXPECT_EQ(words_.last(), QStringLiteral("Reading: 2304"));
}

TEST_F(BootCommTest, AReadThatBringsNothingIsRepeatedUntilItIsAborted) {
    comm_.Settings().MaxPacketBytes = 0;
    onYield_ = [this] {
        if (yields_ == 50) {
            comm_.Settings().ContinueFlag = 0;
        }
    };
    EXPECT_EQ(Read(0x800, 0xBFFF), TransferResult::Aborted);
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>(49, Bytes("01 00 00 08 00")));
    EXPECT_EQ(words_.last(), QStringLiteral("Reading: 2048"));
    EXPECT_EQ(ContentOf(Path("PROGMEM.MCP")), QByteArray());
}

TEST_F(BootCommTest, EachLoopBeginsWithTheFlagSet) {
    comm_.Settings().ContinueFlag = 0;
    EXPECT_EQ(Read(0, 0xF), TransferResult::Finished);
    EXPECT_EQ(comm_.Settings().ContinueFlag, 1);
    comm_.Settings().ContinueFlag = 0;
    EXPECT_EQ(comm_.EraseRegion(0x800, 0x83F), TransferResult::Finished);
    comm_.Settings().ContinueFlag = 0;
    MakeImage(Line(0x800, 1));
    EXPECT_EQ(Write(), TransferResult::Finished);
}

TEST_F(BootCommTest, ErasesBlockByBlock) {
    EXPECT_EQ(comm_.EraseRegion(0x800, 0xBFFF), TransferResult::Finished);
    ASSERT_EQ(loader_.packets.size(), 736u);
    EXPECT_EQ(loader_.packets.at(0), Bytes("03 01 00 08 00"));
    EXPECT_EQ(loader_.packets.at(1), Bytes("03 01 40 08 00"));
    EXPECT_EQ(loader_.packets.back(), Bytes("03 01 C0 BF 00"));
    EXPECT_EQ(words_.first(), QStringLiteral("Erasing: 2112"));
    EXPECT_EQ(words_.last(), QStringLiteral("Erasing: 49152"));
    EXPECT_EQ(progress_.back(), 1);
    loader_.packets.clear();
    EXPECT_EQ(comm_.EraseRegion(0x123456, 0x123456), TransferResult::Finished);
    EXPECT_EQ(loader_.packets.front(), Bytes("03 01 56 34 12"));
}

TEST_F(BootCommTest, AnEraseIsTriedFiveTimes) {
    loader_.answers = false;
    EXPECT_EQ(comm_.EraseRegion(0x800, 0xBFFF), TransferResult{BootResult::NoAnswer});
    EXPECT_EQ(loader_.packets.size(), 5u);
    EXPECT_TRUE(words_.isEmpty());
}

TEST_F(BootCommTest, AnAbortEndsAnErase) {
    onYield_ = [this] { comm_.Settings().ContinueFlag = yields_ == 2 ? 0 : 1; };
    EXPECT_EQ(comm_.EraseRegion(0x800, 0xBFFF), TransferResult::Aborted);
    EXPECT_EQ(loader_.packets.size(), 1u);
}

TEST_F(BootCommTest, WritesAndVerifiesEachLine) {
    MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 0x40) +
              " \r\n"); // without and with the blank of an import
    EXPECT_EQ(Write(), TransferResult::Finished);
    const std::vector<QByteArray> expected = {
        Bytes("02 02 00 08 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10"),
        Bytes("01 10 00 08 00"),
        Bytes("02 02 10 08 00 40 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F"),
        Bytes("01 10 10 08 00"),
    };
    EXPECT_EQ(loader_.packets, expected);
    EXPECT_EQ(words_, (QStringList{QStringLiteral("Writing: 2048"), QStringLiteral("Writing: 2064")}));
    EXPECT_NEAR(progress_.back(), 1, 0.02);
    EXPECT_EQ(ContentOf(Path("ERROR.MCP")), QByteArray());
}

TEST_F(BootCommTest, AnEmptyImageIsWrittenAtOnce) {
    MakeImage({});
    EXPECT_EQ(Write(), TransferResult::Finished);
    EXPECT_TRUE(loader_.packets.empty());
    EXPECT_TRUE(QFileInfo::exists(Path("ERROR.MCP")));
}

TEST_F(BootCommTest, SendsWhateverLinesTheImageHolds) {
    MakeImage(Line(0x000000, 0) + "\r" + Line(0xF00000, 0));
    EXPECT_EQ(Write(), TransferResult::Finished);
    EXPECT_EQ(loader_.packets.at(0).mid(2, 3), Bytes("00 00 00"));
    EXPECT_EQ(loader_.packets.at(2).mid(2, 3), Bytes("00 00 F0"));
}

TEST_F(BootCommTest, AnEmptyLineIsSixteenZerosAtAddressOne) {
    MakeImage("\r\n\r\n");
    EXPECT_EQ(Write(), TransferResult::Finished);
    ASSERT_EQ(loader_.packets.size(), 4u);
    EXPECT_EQ(loader_.packets.at(0), Bytes("02 02 01 00 00") + QByteArray(16, '\0'));
    EXPECT_EQ(words_.last(), QStringLiteral("Writing: 1"));
}

TEST_F(BootCommTest, DividesTheAddressByTheBytesOfOne) {
    MakeImage(Line(0x800, 0));
    EXPECT_EQ(comm_.WriteProgramImage(8, 2, BootCommand::WriteProgram, Path("PROGMEM.MCP")).result,
              TransferResult::Finished);
    EXPECT_EQ(loader_.packets.at(0).mid(2, 3), Bytes("00 04 00"));
    EXPECT_EQ(words_.last(), QStringLiteral("Writing: 1024"));
}

TEST_F(BootCommTest, AMismatchOnTheLastLineIsReported) {
    MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 2) + " \r\n");
    SpoilLineAt(0x810);
    EXPECT_EQ(Write(), TransferResult::VerifyFailed);
    EXPECT_EQ(ContentOf(Path("ERROR.MCP")), Line(0x810, 2) + " \r\n"); // as read from the device
    EXPECT_EQ(words_.last(), QStringLiteral("Writing: 2064"));
}

TEST_F(BootCommTest, AMismatchOnAnEarlierLineIsOnlyKeptInTheErrorFile) {
    MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 2) + "\r\n" + Line(0x820, 3) + "\r\n");
    SpoilLineAt(0x810);
    EXPECT_EQ(Write(), TransferResult::Finished);
    EXPECT_EQ(loader_.packets.size(), 6u);
    EXPECT_EQ(ContentOf(Path("ERROR.MCP")), Line(0x810, 2) + "\r\n");
    loader_.instead = {};
    EXPECT_EQ(Write(), TransferResult::Finished);
    EXPECT_EQ(ContentOf(Path("ERROR.MCP")), QByteArray()); // each write begins a new file
}

TEST_F(BootCommTest, CountsEveryLineThatDiffers) {
    const auto spoil = [this](const std::vector<int> &lines) {
        loader_.instead = [lines](const QByteArray &packet, QByteArray answer) {
            const int line = static_cast<std::uint8_t>(packet.at(2)) >> 4;
            const bool isSpoilt = std::find(lines.begin(), lines.end(), line) != lines.end();
            if (packet.at(0) == BootCommand::ReadProgram && isSpoilt) {
                answer[9] = static_cast<char>(answer.at(9) ^ 1);
            }
            return answer;
        };
    };
    MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 2) + "\r\n" + Line(0x820, 3) + "\r\n");
    spoil({});
    EXPECT_EQ(Write(), TransferResult::Finished);
    EXPECT_EQ(differingLines_, 0);
    spoil({0, 1}); // the result of the last line
    EXPECT_EQ(Write(), TransferResult::Finished);
    EXPECT_EQ(differingLines_, 2);
    spoil({0, 2});
    EXPECT_EQ(Write(), TransferResult::VerifyFailed);
    EXPECT_EQ(differingLines_, 2);
    onYield_ = [this] { comm_.Settings().ContinueFlag = yields_ == 2 ? 0 : 1; };
    yields_ = 0;
    EXPECT_EQ(Write(), TransferResult::VerifyFailed);
    EXPECT_EQ(differingLines_, 1);
}

TEST_F(BootCommTest, CountsTheLinesThatDifferedBeforeALinkFailure) {
    MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 2) + "\r\n");
    SpoilLineAt(0x800);
    const auto spoil = loader_.instead;
    loader_.instead = [spoil](const QByteArray &packet, const QByteArray &answer) {
        return packet.at(2) == 0x10 ? QByteArray() : spoil(packet, answer);
    };
    EXPECT_EQ(Write(), TransferResult{BootResult::NoAnswer});
    EXPECT_EQ(differingLines_, 1);
}

TEST_F(BootCommTest, ALinkFailureEndsAWriteAtOnce) {
    for (const std::uint8_t command : {BootCommand::WriteProgram, BootCommand::ReadProgram}) {
        MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 2) + "\r\n" + Line(0x820, 3) + "\r\n");
        loader_.packets.clear();
        loader_.instead = [command](const QByteArray &packet, const QByteArray &answer) {
            const bool second = static_cast<std::uint8_t>(packet.at(2)) == 0x10;
            return packet.at(0) == command && second ? QByteArray() : answer;
        };
        EXPECT_EQ(Write(), TransferResult{BootResult::NoAnswer});
        EXPECT_EQ(loader_.packets.size(), command == BootCommand::WriteProgram ? 5u : 6u);
    }
}

TEST_F(BootCommTest, AnErrorFileOutlivesALinkFailure) {
    MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 2) + "\r\n");
    SpoilLineAt(0x800);
    const auto spoil = loader_.instead;
    loader_.instead = [spoil](const QByteArray &packet, const QByteArray &answer) {
        return static_cast<std::uint8_t>(packet.at(2)) == 0x10 ? QByteArray() : spoil(packet, answer);
    };
    EXPECT_EQ(Write(), TransferResult{BootResult::NoAnswer});
    EXPECT_EQ(ContentOf(Path("ERROR.MCP")), Line(0x800, 1) + "\r\n");
}

TEST_F(BootCommTest, AnAbortEndsAWrite) {
    MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 2) + "\r\n");
    onYield_ = [this] { comm_.Settings().ContinueFlag = yields_ == 2 ? 0 : 1; };
    EXPECT_EQ(Write(), TransferResult::Aborted);
    EXPECT_EQ(loader_.packets.size(), 2u);
}

TEST_F(BootCommTest, AnAbortBehindALineThatFailedIsToldAsThatFailure) {
    MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 2) + "\r\n");
    SpoilLineAt(0x800);
    onYield_ = [this] { comm_.Settings().ContinueFlag = yields_ == 2 ? 0 : 1; };
    EXPECT_EQ(Write(), TransferResult::VerifyFailed);
    EXPECT_EQ(loader_.packets.size(), 2u);
}

TEST_F(BootCommTest, AnImageThatChangesUnderAWriteEndsIt) {
    for (const QByteArray &other : {QByteArray(), Line(0x900, 7) + "\r\n", QByteArray(500, 'x')}) {
        MakeImage(Line(0x800, 1) + "\r\n" + Line(0x810, 2) + "\r\n" + Line(0x820, 3) + "\r\n");
        yields_ = 0;
        onYield_ = [this, other] { // as another command may do meanwhile
            if (yields_ == 2) {
                MakeImage(other);
            }
        };
        loader_.packets.clear();
        EXPECT_EQ(Write(), TransferResult::ImageChanged);
        EXPECT_EQ(loader_.packets.size(), 2u);
    }
}

// For example, an import during the read: its image must not be mixed with the device's lines.
TEST_F(BootCommTest, AnImageThatChangesUnderAReadEndsIt) {
    for (const bool aborts : {false, true}) {
        for (const int round : {2, 200}) { // before and after the first lines are on the disk
            const QByteArray other = Line(0x900, 7) + "\r\n";
            yields_ = 0;
            onYield_ = [this, other, round, aborts] {
                if (yields_ == round) {
                    MakeImage(other);
                    comm_.Settings().ContinueFlag = aborts ? 0 : 1;
                }
            };
            EXPECT_EQ(Read(0x800, 0xBFFF), aborts ? TransferResult::Aborted : TransferResult::ImageChanged);
            EXPECT_EQ(yields_, round);
            EXPECT_EQ(ContentOf(Path("PROGMEM.MCP")), other);
        }
    }
}

TEST_F(BootCommTest, AnImageThatIsErasedUnderAReadHoldsNothingElse) {
    onYield_ = [this] {
        if (yields_ == 200) {
            MakeImage({});
        }
    };
    EXPECT_EQ(Read(0x800, 0xBFFF), TransferResult::ImageChanged);
    EXPECT_EQ(ContentOf(Path("PROGMEM.MCP")), QByteArray());
}

TEST_F(BootCommTest, AnAbortDuringTheLastLineComesTooLate) {
    MakeImage(Line(0x800, 1) + "\r\n");
    onYield_ = [] {};
    loader_.instead = [this](auto &, const QByteArray &answer) {
        comm_.Settings().ContinueFlag = 0;
        return answer;
    };
    EXPECT_EQ(Write(), TransferResult::Finished);
    SpoilLineAt(0x800);
    EXPECT_EQ(Write(), TransferResult::VerifyFailed);
}

TEST_F(BootCommTest, GoesByTheSettings) {
    BootSettings &settings = comm_.Settings();
    settings.MaxPacketBytes = 0x40;
    EXPECT_EQ(Read(0x800, 0x87F), TransferResult::Finished);
    EXPECT_EQ(loader_.packets, (std::vector<QByteArray>{Bytes("01 40 00 08 00"), Bytes("01 40 40 08 00")}));
    settings.EraseBlockBytes = 128;
    loader_.packets.clear();
    EXPECT_EQ(comm_.EraseRegion(0x800, 0x8FF), TransferResult::Finished);
    EXPECT_EQ(loader_.packets, (std::vector<QByteArray>{Bytes("03 01 00 08 00"), Bytes("03 01 80 08 00")}));
    EXPECT_GE(loader_.longestWaitMs, 990); // the timeout plus the time on the line
    EXPECT_LT(loader_.longestWaitMs, 2000);
    comm_.ClosePort();
    settings.TimeoutMs = 7000;
    EXPECT_TRUE(comm_.OpenPort());
    settings.Retries = 2;
    loader_.answers = false;
    MakeImage(Line(0x800, 1));
    for (const std::function<void()> &transfer : std::vector<std::function<void()>>{
             [this] { Write(); }, [this] { Read(0x800, 0x87F); }, [this] { comm_.SetRunMode(); },
             [this] { comm_.ReadEepromByte(1022); }}) {
        loader_.packets.clear();
        transfer();
        EXPECT_EQ(loader_.packets.size(), 2u);
    }
    EXPECT_GE(loader_.longestWaitMs, 6990);
}

TEST_F(BootCommTest, FilesThatCantBeOpenedOrMadeAreFaultsThatNameThem) {
    const auto expectFault = [](const QString &name, const std::function<void()> &work) {
        try {
            work();
            ADD_FAILURE() << "no fault";
        } catch (const Fault &fault) {
            EXPECT_EQ(fault.Cause(), Fault::Kind::File);
            EXPECT_TRUE(fault.Description().contains(name)) << fault.what();
        }
    };
    expectFault(Path("PROGMEM.MCP"), [this] { Write(); });
    MakeImage(Line(0x800, 1));
    comm_.Settings().ErrorFile = Path("no/such/folder");
    expectFault(Path("no/such/folder"), [this] { Write(); });
    std::int32_t start = 0;
    std::int32_t end = 15;
    expectFault(Path("none/PROGMEM.MCP"),
                [&] { comm_.ReadRegion(start, end, 1, BootCommand::ReadProgram, Path("none/PROGMEM.MCP")); });
    EXPECT_TRUE(loader_.packets.empty());
}

} // namespace ztv
