#include "firmware/UpgradeReport.h"

#include "model/ParamDefines.h"
#include "tests/firmware/FakeLoader.h"
#include "tests/firmware/ShortWait.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/TestPresets.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>
#include <utility>

namespace ztv {

namespace {

using Tone = UpgradeNotice::Tone;

constexpr auto firmware = ":10080000000102030405060708090A0B0C0D0E0F70\r\n"
                          ":10081000000102030405060708090A0B0C0D0E0F60\r\n:00000001FF\r\n";
constexpr auto dontCut = "Don't cut the power, and don't pull the cable.";
constexpr auto pressAgain = "The boot loader is safe: press Upgrade Firmware again.";

// Uses the console and the upgrade as a program without a window would.
class UpgradeReportTest : public testing::Test {
protected:
    UpgradeReportTest() { console_.Load(1, 38400, folder_.path()); }

    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }
    void Make(const char *name, const QByteArray &content) const {
        QFile file(Path(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }
    void MakeFirmware() const { Make("firmware.hex", firmware); }
    UpgradeOutcome Upgrade() { return upgrade_.Run(Path("firmware.hex")); }

    // Answers no packet of that command from the count-th on.
    void FailAt(std::uint8_t command, int count) {
        loader_.instead = [command, left = count](const QByteArray &packet,
                                                  const QByteArray &answer) mutable {
            left -= packet.at(0) == command ? 1 : 0;
            return packet.at(0) == command && left <= 0 ? QByteArray() : answer;
        };
    }
    // Makes the verification of each line from the first to the last of these find a different byte.
    void SpoilLines(int first, int last) {
        loader_.instead = [first, last, line = 0](const QByteArray &packet, QByteArray answer) mutable {
            if (packet.at(0) == BootCommand::ReadProgram) {
                ++line;
                answer[5] = line >= first && line <= last ? 'x' : answer[5];
            }
            return answer;
        };
    }
    void ExpectNotice(Tone tone, const QString &text, bool offersStart = false) const {
        const UpgradeNotice &notice = report_.Notice();
        EXPECT_EQ(notice.text, text);
        EXPECT_EQ(notice.tone, tone);
        EXPECT_EQ(notice.offersStart, offersStart);
    }
    void ExpectNotice(Tone tone, const char *text, bool offersStart = false) const {
        ExpectNotice(tone, QString::fromLatin1(text), offersStart);
    }
    void ExpectStopped(const char *where) const {
        ExpectNotice(Tone::Failure, QString::fromLatin1(where) + u' ' + QString::fromLatin1(pressAgain));
    }

    QTemporaryDir folder_;
    FakeLoader loader_;
    BootComm boot_{loader_.Opener()};
    UpgradeConsole console_{boot_, {.showInEditor = [](auto &, auto &) { return true; }}};
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    QString device_ = QStringLiteral("/no/such/device");
    LinkSession link_{zentrova_,
                      {.deviceOfPort = [this](std::int16_t) { return device_; },
                       .askDirection = [] { return ConnectChoice::Cancel; }}};
    OneButtonUpgrade upgrade_{console_, link_, zentrova_};
    UpgradeVersions versions_{link_, zentrova_};
    UpgradeReport report_{console_, upgrade_, versions_};
};

} // namespace

TEST_F(UpgradeReportTest, HasNothingToSayAtFirst) {
    ExpectNotice(Tone::Quiet, "");
}

TEST_F(UpgradeReportTest, WarnsOfAPowerCutFromTheEraseToTheEnd) {
    MakeFirmware();
    std::vector<std::pair<std::uint8_t, bool>> seen;
    loader_.instead = [&](const QByteArray &packet, const QByteArray &answer) {
        const auto command = static_cast<std::uint8_t>(packet.at(0));
        const bool warned = report_.Notice().text == QString::fromLatin1(dontCut);
        if (seen.empty() || seen.back() != std::pair(command, warned)) {
            seen.emplace_back(command, warned);
        }
        return answer;
    };
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Upgraded);
    const std::vector<std::pair<std::uint8_t, bool>> expected{
        {BootCommand::VersionOrReset, false}, {BootCommand::ReadEeprom, false},
        {BootCommand::EraseProgram, true},    {BootCommand::WriteProgram, true},
        {BootCommand::ReadProgram, true},     {BootCommand::WriteProgram, true},
        {BootCommand::ReadProgram, true},     {BootCommand::WriteEeprom, true},
        {BootCommand::VersionOrReset, true}};
    EXPECT_EQ(seen, expected);
    ExpectNotice(Tone::Success, "The sensor was restarted with the new firmware.");
}

TEST_F(UpgradeReportTest, SaysWhereAnEraseStopped) {
    MakeFirmware();
    FailAt(BootCommand::EraseProgram, 155);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::EraseFailed);
    ExpectStopped("Stopped at 20 %."); // 154 of 736 blocks
    FailAt(BootCommand::EraseProgram, 1);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::EraseFailed);
    ExpectStopped("Stopped at 0 %.");
}

TEST_F(UpgradeReportTest, SaysWhereAWriteStopped) {
    MakeFirmware();
    FailAt(BootCommand::WriteProgram, 2);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::WriteFailed);
    ExpectStopped("Stopped at 48 %.");
}

TEST_F(UpgradeReportTest, SaysWhereAnAbortStopped) {
    MakeFirmware();
    loader_.instead = [this](const QByteArray &packet, const QByteArray &answer) {
        if (packet.at(0) == BootCommand::WriteProgram) {
            console_.Abort();
        }
        return answer;
    };
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Aborted);
    ExpectStopped("Stopped at 48 %.");
}

TEST_F(UpgradeReportTest, SaysThatTheLastLineDiffers) {
    MakeFirmware();
    SpoilLines(2, 2);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::WriteFailed);
    ExpectStopped("The sensor's memory differs from the firmware.");
}

// The result of the last line hides an earlier one's.
TEST_F(UpgradeReportTest, DoesntHideLinesThatDifferedBeforeTheLast) {
    MakeFirmware();
    SpoilLines(1, 1);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Upgraded);
    ExpectNotice(Tone::Failure,
                 "The sensor was restarted, but 1 of the lines written to it differed from the "
                 "firmware. Press Upgrade Firmware again.");
    loader_.instead = {};
    loader_.restarted = false;
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Upgraded);
    ExpectNotice(Tone::Success, "The sensor was restarted with the new firmware.");
}

TEST_F(UpgradeReportTest, SaysThatAnotherCommandChangedTheFiles) {
    MakeFirmware();
    loader_.instead = [this](const QByteArray &packet, const QByteArray &answer) {
        if (packet.at(0) == BootCommand::EraseProgram) {
            console_.EraseFiles();
        }
        return answer;
    };
    EXPECT_EQ(Upgrade(), UpgradeOutcome::WriteFailed);
    ExpectStopped("Stopped: another command changed the files or the sensor.");
}

TEST_F(UpgradeReportTest, OffersToStartASensorThatWaitsWithItsNewFirmware) {
    MakeFirmware();
    FailAt(BootCommand::WriteEeprom, 1);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::RunModeFailed);
    ExpectNotice(Tone::Failure, "The new firmware is written. The sensor waits in its boot loader.", true);
    loader_.instead = {};
    loader_.resetsToLose = 100;
    EXPECT_EQ(Upgrade(), UpgradeOutcome::StillInLoader);
    ExpectNotice(Tone::Failure,
                 "The new firmware is written. The sensor waits in its boot loader, or the adapter is gone. "
                 "Start Sensor, or cut its power for some seconds.",
                 true);
    loader_.resetsToLose = 0;
    EXPECT_EQ(console_.RunApp(), UpgradeConsole::RunOutcome::Started);
    ExpectNotice(Tone::Success, "The sensor was restarted. Go online to see whether it measures.");
}

TEST_F(UpgradeReportTest, OffersToStartASensorThatWasInItsLoaderBefore) {
    EXPECT_EQ(Upgrade(), UpgradeOutcome::BadFirmware);
    ExpectNotice(Tone::Caution,
                 "The sensor waits in its boot loader. It was there before: Start Sensor if its firmware is "
                 "complete.",
                 true);
}

TEST_F(UpgradeReportTest, DoesntOfferToStartASensorWithoutFirmware) {
    MakeFirmware();
    FailAt(BootCommand::WriteProgram, 1);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::WriteFailed);
    loader_.instead = {};
    Make("firmware.hex", "");
    EXPECT_EQ(Upgrade(), UpgradeOutcome::BadFirmware);
    ExpectNotice(Tone::Failure,
                 "The sensor waits in its boot loader. It has no complete firmware: choose a firmware file, "
                 "then press Upgrade Firmware again.");
}

TEST_F(UpgradeReportTest, SaysThatARunningSensorWasLeftAlone) {
    loader_.answers = false;
    EXPECT_EQ(Upgrade(), UpgradeOutcome::BadFirmware);
    ExpectNotice(Tone::Caution,
                 "The sensor wasn't changed. Choose a firmware file, then press Upgrade Firmware again.");
    report_.FirmwareIsThere();
    ExpectNotice(Tone::Quiet, "");
}

TEST_F(UpgradeReportTest, AFirmwareFileDoesntEndTheNoticeOfASensorInItsLoader) {
    EXPECT_EQ(Upgrade(), UpgradeOutcome::BadFirmware);
    const UpgradeNotice notice = report_.Notice();
    report_.FirmwareIsThere();
    EXPECT_EQ(report_.Notice(), notice);
}

TEST_F(UpgradeReportTest, SaysThatASensorThatDidntAnswerWasLeftAlone) {
    const ScriptedLine line;
    device_ = line.Path();
    MakeFirmware();
    loader_.answers = false;
    CutWaitShort(upgrade_);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::NotPolled);
    ExpectNotice(Tone::Failure, "The sensor didn't answer and wasn't changed. Make sure that you can go "
                                "online, then press Upgrade Firmware again.");
}

TEST_F(UpgradeReportTest, ANoticeStaysUntilTheNextCommand) {
    EXPECT_EQ(Upgrade(), UpgradeOutcome::BadFirmware);
    const UpgradeNotice notice = report_.Notice();
    console_.DisconnectBootloader();
    EXPECT_EQ(report_.Notice(), notice) << "the sensor still waits";
    console_.ConnectBootloader();
    EXPECT_EQ(report_.Notice(), notice);
    console_.ReadDevice();
    ExpectNotice(Tone::Quiet, "");
}

TEST_F(UpgradeReportTest, ASensorWhoseLoaderAnswersIsNotCalledRestarted) {
    MakeFirmware();
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Upgraded);
    EXPECT_EQ(report_.Notice().tone, Tone::Success);
    loader_.restarted = false;
    console_.ConnectBootloader();
    ExpectNotice(Tone::Quiet, "");
}

TEST_F(UpgradeReportTest, AReadThatStoppedChangedNothing) {
    console_.ConnectBootloader();
    int changes = 0;
    QObject::connect(&report_, &UpgradeReport::NoticeChanged, [&changes] { ++changes; });
    FailAt(BootCommand::ReadEeprom, 1);
    EXPECT_NE(console_.ReadDevice(), TransferResult::Finished);
    EXPECT_EQ(changes, 1) << "a read needs no warning";
    EXPECT_TRUE(report_.Notice().text.endsWith(QStringLiteral(" %. The sensor wasn't changed.")));
    EXPECT_EQ(report_.Notice().tone, Tone::Failure);
}

TEST_F(UpgradeReportTest, TheWarningEndsWithASingleWrite) {
    console_.ConnectBootloader();
    Make("PROGMEM.MCP", "000800 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\r\n");
    QStringList texts;
    QObject::connect(&report_, &UpgradeReport::NoticeChanged, [&] { texts.append(report_.Notice().text); });
    console_.EraseDevice();
    console_.WriteDevice();
    const QString warning = QString::fromLatin1(dontCut);
    EXPECT_EQ(texts, (QStringList{warning, QString(), warning, QString()}));
}

TEST_F(UpgradeReportTest, AReadInsideAnEraseDoesntEndTheWarning) {
    console_.ConnectBootloader();
    bool isInside = false;
    loader_.instead = [&](const QByteArray &packet, const QByteArray &answer) {
        if (packet.at(0) == BootCommand::EraseProgram && !std::exchange(isInside, true)) {
            QTimer::singleShot(0, &console_, [this] { console_.ReadDevice(); });
        } else if (isInside) {
            EXPECT_EQ(report_.Notice().text, QString::fromLatin1(dontCut));
        }
        return answer;
    };
    console_.EraseDevice();
    ExpectNotice(Tone::Quiet, "");
}

TEST_F(UpgradeReportTest, ASensorThatIsStartedWithoutFirmwareDoesntMeasure) {
    console_.ConnectBootloader();
    console_.EraseDevice();
    EXPECT_EQ(console_.RunApp(), UpgradeConsole::RunOutcome::Started);
    ExpectStopped("The sensor was restarted, but has no complete firmware.");
    loader_.restarted = false;
    console_.ConnectBootloader();
    Make("PROGMEM.MCP", "000800 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\r\n");
    console_.WriteDevice();
    EXPECT_EQ(console_.RunApp(), UpgradeConsole::RunOutcome::Started);
    ExpectNotice(Tone::Success, "The sensor was restarted. Go online to see whether it measures.");
}

TEST_F(UpgradeReportTest, AStartThatIsntConfirmedCanBeTriedAgain) {
    console_.ConnectBootloader();
    FailAt(BootCommand::WriteEeprom, 1);
    EXPECT_EQ(console_.RunApp(), UpgradeConsole::RunOutcome::RunModeFailed);
    ExpectNotice(
        Tone::Failure,
        "The sensor waits in its boot loader and didn't confirm the start. Check the cable, then try "
        "again.",
        true);
    report_.NoLoaderToStart();
    ExpectNotice(Tone::Caution,
                 "No boot loader answered. Check the cable, and go online to see whether the sensor runs "
                 "already.",
                 true);
}

TEST_F(UpgradeReportTest, BeginsWithTheVersionsOfTheLastUpgradeWhereBothAreKnown) {
    zentrova_.ParamUpdate(ParamDefines::FirmwareVersion, 214);
    Q_EMIT link_.FirstReadComplete();
    versions_.UpgradeStarted();
    versions_.UpgradeEnded(true);
    EXPECT_EQ(UpgradeReport(console_, upgrade_, versions_).Notice(), UpgradeNotice());
    zentrova_.ParamUpdate(ParamDefines::FirmwareVersion, 300);
    Q_EMIT link_.FirstReadComplete();
    EXPECT_EQ(
        UpgradeReport(console_, upgrade_, versions_).Notice(),
        (UpgradeNotice{.tone = Tone::Success, .text = QStringLiteral("The last upgrade: 2.14 -> 3.00")}));
}

} // namespace ztv
