#include "firmware/OneButtonUpgrade.h"
#include "support/Fault.h"
#include "tests/firmware/FakeLoader.h"
#include "tests/firmware/ShortWait.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

namespace {

using Connect = UpgradeConsole::ConnectOutcome;
using HexFile = UpgradeConsole::HexFileOutcome;
using RunApp = UpgradeConsole::RunOutcome;

constexpr auto goodHexFile = ":10080000000102030405060708090A0B0C0D0E0F70\r\n:00000001FF\r\n";

// Uses the console and the upgrade as a program without a window would.
class UpgradeOutcomeTest : public testing::Test {
protected:
    UpgradeOutcomeTest() {
        console_.Load(1, 38400, folder_.path());
        QObject::connect(&console_, &UpgradeConsole::PanelChanged,
                         [this](UpgradeConsole::Panel panel, const QString &text) {
                             word_ = panel == UpgradeConsole::Panel::Status ? text : word_;
                         });
        QObject::connect(&upgrade_, &OneButtonUpgrade::Ended, [this](UpgradeOutcome outcome) {
            EXPECT_TRUE(upgrade_.Running());
            ended_.push_back(outcome);
            wordAtEnd_ = word_;
        });
    }
    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }
    void Make(const char *name, const QByteArray &content) const {
        QFile file(Path(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }
    void DontAnswer(std::uint8_t command) {
        loader_.instead = [command](const QByteArray &packet, const QByteArray &answer) {
            return packet.at(0) == command ? QByteArray() : answer;
        };
    }
    void AbortAt(std::uint8_t command) {
        loader_.instead = [this, command](const QByteArray &packet, const QByteArray &answer) {
            if (packet.at(0) == command) {
                console_.Abort();
            }
            return answer;
        };
    }
    // Makes the verification find a different byte in every line.
    void SpoilWhatIsRead() {
        loader_.instead = [](const QByteArray &packet, QByteArray answer) {
            if (packet.at(0) == BootCommand::ReadProgram) {
                answer[5] = 'x';
            }
            return answer;
        };
    }
    UpgradeOutcome Upgrade() {
        ended_.clear();
        const UpgradeOutcome outcome = upgrade_.Run(Path("firmware.hex"));
        EXPECT_EQ(ended_, std::vector<UpgradeOutcome>{outcome});
        EXPECT_FALSE(upgrade_.Running());
        return outcome;
    }

    QTemporaryDir folder_;
    FakeLoader loader_;
    BootComm boot_{loader_.Opener()};
    QStringList shown_;
    bool hasEditor_ = true;
    UpgradeConsole console_{boot_, {.showInEditor = [this](const QString &, const QString &fileName) {
                                shown_.append(fileName);
                                return hasEditor_;
                            }}};
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    LinkSession link_{zentrova_,
                      {.deviceOfPort = [](std::int16_t) { return QStringLiteral("/no/such/device"); },
                       .askDirection = [] { return ConnectChoice::Cancel; }}};
    OneButtonUpgrade upgrade_{console_, link_, zentrova_};
    QString word_;
    QString wordAtEnd_;
    std::vector<UpgradeOutcome> ended_;
};

} // namespace

TEST_F(UpgradeOutcomeTest, AConnectSaysHowFarItGot) {
    loader_.opens = false;
    EXPECT_EQ(console_.ConnectBootloader(), Connect::PortRefused);
    loader_.opens = true;
    loader_.answers = false;
    EXPECT_EQ(console_.ConnectBootloader(), Connect::NoLoader);
    loader_.answers = true;
    EXPECT_EQ(console_.ConnectBootloader(), Connect::Connected);
}

TEST_F(UpgradeOutcomeTest, AFaultOfAConnectIsReportedWithItsWord) {
    QStringList faults;
    QObject::connect(&console_, &UpgradeConsole::ConnectFaulted, [&](const QString &word) {
        EXPECT_EQ(word_, word);
        faults.append(word);
    });
    loader_.instead = [](auto &, auto &) -> QByteArray { throw Fault::Overflow(QStringLiteral("a test")); };
    EXPECT_EQ(console_.ConnectBootloader(), Connect::Faulted);
    ASSERT_EQ(faults.size(), 1);
    EXPECT_TRUE(faults.first().contains(QStringLiteral("a test")));
}

TEST_F(UpgradeOutcomeTest, TransfersSayWhatEndedThem) {
    ASSERT_EQ(console_.ConnectBootloader(), Connect::Connected);
    EXPECT_EQ(console_.ReadDevice(), TransferResult::Finished);
    EXPECT_EQ(console_.EraseDevice(), TransferResult::Finished);
    AbortAt(BootCommand::EraseProgram);
    EXPECT_EQ(console_.EraseDevice(), TransferResult::Aborted);
    AbortAt(BootCommand::ReadEeprom);
    EXPECT_EQ(console_.ReadDevice(), TransferResult::Aborted);
    DontAnswer(BootCommand::EraseProgram);
    EXPECT_EQ(console_.EraseDevice(), TransferResult{BootResult::NoAnswer});
    DontAnswer(BootCommand::ReadEeprom); // the later regions are read
    EXPECT_EQ(console_.ReadDevice(), TransferResult{BootResult::NoAnswer});
    EXPECT_EQ(word_, QStringLiteral("Finished operation..."));
}

TEST_F(UpgradeOutcomeTest, AWriteCountsTheLinesThatDiffer) {
    ASSERT_EQ(console_.ConnectBootloader(), Connect::Connected);
    Make("PROGMEM.MCP", "000800 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\r\n"
                        "000810 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\r\n");
    SpoilWhatIsRead();
    QStringList missing;
    QObject::connect(&console_, &UpgradeConsole::EditorMissing,
                     [&](const QString &fileName) { missing.append(fileName); });
    for (const bool hasEditor : {true, false}) {
        hasEditor_ = hasEditor;
        shown_.clear();
        const ImageWritten image = console_.WriteDevice();
        EXPECT_EQ(image.result, TransferResult::VerifyFailed);
        EXPECT_EQ(image.differingLines, 2);
        EXPECT_EQ(shown_, QStringList{Path("ERROR.MCP")});
    }
    EXPECT_EQ(missing, QStringList{Path("ERROR.MCP")});
}

TEST_F(UpgradeOutcomeTest, AHexFileIsGoodInvalidOrNotThere) {
    Make("good.hex", goodHexFile);
    Make("bad.hex", "hello\r\n");
    EXPECT_EQ(console_.CheckHexFile(Path("good.hex")), HexFile::Good);
    EXPECT_EQ(console_.CheckHexFile(Path("bad.hex")), HexFile::Invalid);
    EXPECT_EQ(console_.CheckHexFile(Path("none.hex")), HexFile::NotFound);
    EXPECT_EQ(console_.OpenHexFile(Path("good.hex")), HexFile::Good);
    EXPECT_EQ(console_.OpenHexFile(Path("bad.hex")), HexFile::Invalid);
    EXPECT_EQ(console_.OpenHexFile(Path("none.hex")), HexFile::NotFound);
    EXPECT_EQ(console_.ImportHexFile(Path("good.hex")), HexFile::Good);
    EXPECT_THROW(console_.ImportHexFile(Path("none.hex")), Fault);
}

TEST_F(UpgradeOutcomeTest, AHexFileReplacesNoMemoryImage) {
    console_.EraseFiles();
    EXPECT_TRUE(console_.SaveHexFile(Path("out.hex")));
    EXPECT_TRUE(QFile::exists(Path("out.hex")));
    Make("EEDATA.MCP", "kept");
    EXPECT_FALSE(console_.SaveHexFile(Path("EEDATA.MCP")));
    EXPECT_EQ(QFile(Path("EEDATA.MCP")).size(), 4);
    EXPECT_EQ(boot_.Settings().HexOutputPath, Path("out.hex"));
}

TEST_F(UpgradeOutcomeTest, ARunAppReportsItsFailureWhileThePointerStillWaits) {
    ASSERT_EQ(console_.ConnectBootloader(), Connect::Connected);
    std::vector<int> events;
    QObject::connect(&console_, &UpgradeConsole::PointerChanged,
                     [&](Qt::CursorShape shape) { events.push_back(shape); });
    QObject::connect(&console_, &UpgradeConsole::RunAppFailed, [&](RunApp outcome) {
        EXPECT_EQ(outcome, RunApp::RunModeFailed);
        events.push_back(-1);
    });
    DontAnswer(BootCommand::WriteEeprom);
    EXPECT_EQ(console_.RunApp(), RunApp::RunModeFailed);
    EXPECT_EQ(events, (std::vector<int>{Qt::WaitCursor, -1, Qt::ArrowCursor}));
    loader_.instead = {};
    events.clear();
    EXPECT_EQ(console_.RunApp(), RunApp::Started);
    EXPECT_EQ(events, (std::vector<int>{Qt::WaitCursor, Qt::ArrowCursor}));
}

TEST_F(UpgradeOutcomeTest, AnUpgradeSaysThatItIsDone) {
    Make("firmware.hex", goodHexFile);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Upgraded);
    EXPECT_EQ(word_, QStringLiteral("Run mode is set..."));
}

TEST_F(UpgradeOutcomeTest, AnUpgradeStopsBeforeItChangesTheSensor) {
    Make("firmware.hex", goodHexFile);
    upgrade_.StopWhen([] { return true; });
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Aborted);
    EXPECT_EQ(boot_.Erases(), 0);
    loader_.answers = false; // a sensor that runs gets no command
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Aborted);
    EXPECT_EQ(word_, QStringLiteral("Not connected..."));
    upgrade_.StopWhen([] { return false; });
    loader_.answers = true;
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Upgraded);
}

TEST_F(UpgradeOutcomeTest, AnUpgradeSaysThatItsFileIsBad) {
    EXPECT_EQ(Upgrade(), UpgradeOutcome::BadFirmware);
    Make("firmware.hex", "hello\r\n");
    EXPECT_EQ(Upgrade(), UpgradeOutcome::BadFirmware);
    loader_.answers = false; // before anything is sent to a running sensor
    EXPECT_EQ(Upgrade(), UpgradeOutcome::BadFirmware);
}

TEST_F(UpgradeOutcomeTest, AnUpgradeSaysWhichStepFailed) {
    struct Row {
        std::uint8_t command;
        UpgradeOutcome outcome;
    };
    const Row rows[] = {{BootCommand::EraseProgram, UpgradeOutcome::EraseFailed},
                        {BootCommand::WriteProgram, UpgradeOutcome::WriteFailed},
                        {BootCommand::ReadProgram, UpgradeOutcome::WriteFailed},
                        {BootCommand::WriteEeprom, UpgradeOutcome::RunModeFailed}};
    Make("firmware.hex", goodHexFile);
    for (const Row &row : rows) {
        DontAnswer(row.command);
        EXPECT_EQ(Upgrade(), row.outcome) << int{row.command};
    }
    SpoilWhatIsRead();
    EXPECT_EQ(Upgrade(), UpgradeOutcome::WriteFailed);
    for (const std::uint8_t command : {BootCommand::EraseProgram, BootCommand::WriteProgram}) {
        Make("firmware.hex", QByteArray(goodHexFile)
                                 .replace(":00000001FF", ":10081000000102030405060708090A"
                                                         "0B0C0D0E0F60\r\n:00000001FF"));
        AbortAt(command);
        EXPECT_EQ(Upgrade(), UpgradeOutcome::Aborted) << int{command};
    }
    loader_.instead = {};
    loader_.resetsToLose = 100;
    EXPECT_EQ(Upgrade(), UpgradeOutcome::StillInLoader);
}

TEST_F(UpgradeOutcomeTest, AnUpgradeWithoutALinkReportsThatBeforeItsWord) {
    loader_.opens = false;
    CutWaitShort(upgrade_);
    EXPECT_EQ(Upgrade(), UpgradeOutcome::NotPolled);
    EXPECT_EQ(wordAtEnd_, QStringLiteral("Placing in boot mode..."));
    EXPECT_EQ(word_, QStringLiteral("Failed to put in Boot mode"));
}

TEST_F(UpgradeOutcomeTest, ASecondUpgradeWithinTheFirstIsNone) {
    Make("firmware.hex", goodHexFile);
    int inner = 0;
    loader_.instead = [this, &inner](const QByteArray &packet, const QByteArray &answer) {
        if (packet.at(0) == BootCommand::WriteProgram) {
            EXPECT_EQ(upgrade_.Run(Path("firmware.hex")), UpgradeOutcome::AlreadyRunning);
            ++inner;
        }
        return answer;
    };
    EXPECT_EQ(Upgrade(), UpgradeOutcome::Upgraded);
    EXPECT_EQ(inner, 1);
}

} // namespace ztv
