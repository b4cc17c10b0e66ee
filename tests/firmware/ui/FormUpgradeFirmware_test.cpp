#include "firmware/ui/FormUpgradeFirmware.h"

#include "firmware/FirmwareFile.h"
#include "shell/LinkNotices.h"
#include "support/Fault.h"
#include "tests/firmware/FakeLoader.h"
#include "tests/helpers/AsNobody.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"
#include "widgets/Colours.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <gtest/gtest.h>

namespace ztv {

namespace {

constexpr const char *deviceCommands[] = {"CommandRead", "CommandErase", "CommandWrite", "CommandRunApp"};

class FormUpgradeFirmwareTest : public testing::Test {
protected:
    void Open() { Open(boot_); }
    void Open(BootComm &boot) {
        form_.reset(); // only one console may exist at a time
        form_ = std::make_unique<FormUpgradeFirmware>(FormUpgradeFirmware::Dependencies{
            .bootComm = boot,
            .link = link_,
            .zentrova = zentrova_,
            .dialogs = dialogs_,
            .help = help_,
            .programFolder = folder_.path(),
            .showInEditor = [this](const QString &command, const QString &fileName) {
                EXPECT_EQ(command, QStringLiteral("notepad.exe"));
                shown_.append(fileName);
                return hasEditor_;
            }});
        form_->show();
    }
    void Connect() {
        Open();
        Press("CommandConnect");
        EXPECT_EQ(Panel(1), QStringLiteral("Device found..."));
    }

    Form Ui() const { return Form(*form_); }
    void Press(const char *name) const {
        Ui().Press(name);
        Settle();
    }
    // Presses a button while a command runs. The press is handled at the next yield.
    void PressMeanwhile(const char *name) const { Ui().Get<QPushButton>(name).click(); }
    QString Panel(int number) const {
        return Ui().Text(("StatusBar1(" + std::to_string(number) + ")").c_str());
    }
    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }
    QByteArray ContentOf(const char *name) const {
        QFile file(Path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }
    void Make(const char *name, const QByteArray &content) const {
        QFile file(Path(name));
        ASSERT_TRUE(QDir(folder_.path()).mkpath(QFileInfo(Path(name)).path()));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }
    void MakeFirmware() const {
        Make("Firmware/B70214.hex", ":10080000000102030405060708090A0B0C0D0E0F70\r\n:00000001FF\r\n");
    }
    void ExpectDeviceCommands(bool enabled) const {
        for (const char *name : deviceCommands) {
            EXPECT_EQ(Ui().Enabled(name), enabled) << name;
        }
    }
    void ExpectUpgradeQuestion(BoxAnswer answer, std::function<void()> whileOpen = {}) {
        dialogs_.Expect(QStringLiteral("This utility will upgrade the ZTV500-100 firmware.\n\nContinue?"),
                        BoxIcon::Question, BoxButtons::YesNo, answer, std::move(whileOpen));
    }
    bool IsColoured(const char *label, const Colours::Pair &colour) const {
        return Ui().Get<QLabel>(label).palette().color(QPalette::WindowText) ==
               Colours::Of(colour, form_->palette());
    }
    void ExpectPortBox() { dialogs_.ExpectTextWith(QStringLiteral("Error "), BoxIcon::Exclamation); }
    // Checks that the upgrade waits ten seconds, and shortens that wait.
    void HurryWait() {
        auto *timer = form_->findChild<QTimer *>(QStringLiteral("TimerTimeout"));
        ASSERT_NE(timer, nullptr);
        EXPECT_EQ(timer->interval(), 10000);
        EXPECT_TRUE(timer->isActive());
        EXPECT_LE(timer->remainingTime(), 10000);
        timer->start(0);
    }

    QTemporaryDir folder_;
    ScriptedDialogs dialogs_;
    HelpOfForm help_;
    QString device_ = QStringLiteral("/no/such/device");
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    LinkSession link_{zentrova_,
                      {.deviceOfPort = [this](std::int16_t) { return device_; },
                       .askDirection = [] { return ConnectChoice::Cancel; }}};
    LinkNotices notices_{link_, dialogs_};
    FakeLoader loader_;
    BootComm boot_{loader_.Opener()};
    QStringList shown_;
    bool hasEditor_ = true;
    std::unique_ptr<FormUpgradeFirmware> form_;
};

} // namespace

TEST_F(FormUpgradeFirmwareTest, HasItsControlsWithTheirTexts) {
    Open();
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("Upgrade Firmware"));
    EXPECT_EQ(Ui().Text("lblTitle"), QStringLiteral("Zentrova"));
    EXPECT_EQ(Ui().Text("lblCircleR"), QString(QChar(174)));
    struct Row {
        const char *name;
        const char *caption;
        const char *toolTip;
        bool enabled;
    };
    const Row rows[] = {
        {"CommandUpgradeFirmware", "Upgrade Firmware", "Upgrade ZTV500-100 Firmware", true},
        {"CommandClose", "Close", "Close window", true},
        {"CommandConnect", "Connect", "Establishes communication with the bootloader", true},
        {"CommandDisconnect", "Disconnect", "Closes communication with the bootloader", true},
        {"CommandRead", "Read Device", "Read device's program into memory (.MCP files)", false},
        {"CommandErase", "Erase Device", "Erases the device's Flash memory", false},
        {"CommandWrite", "Write Device", "Writes current memory (.MCP files) to the device", false},
        {"CommandRunApp", "Run App", "Disable bootloader and run application code", false},
        {"CommandOpenHexFile", "Open Hex File", "Reads and converts a hex file into memory (.MCP file)",
         true},
        {"CommandSaveHexFile", "Save Hex File", "Save the current memory (.MCP files) to a hex file", true},
        {"CommandEraseFiles", "Erase Files", "Erases all .MCP files", true},
        {"CommandViewDataFiles", "View Files", "View current memory (located in .MCP files)", true},
        {"CommandAbort", "Abort", "Aborts current operation", true},
    };
    for (const Row &row : rows) {
        const auto &button = Ui().Get<QPushButton>(row.name);
        EXPECT_EQ(button.text(), QString::fromLatin1(row.caption));
        EXPECT_EQ(button.toolTip(), QString::fromLatin1(row.toolTip));
        EXPECT_EQ(button.isEnabled(), row.enabled) << row.name;
        EXPECT_EQ(button.accessibleName(), button.text());
    }
}

TEST_F(FormUpgradeFirmwareTest, TakesTheRateOfTheLink) {
    for (const auto &[index, rate] : {std::pair(0, 2400), {1, 4800}, {2, 9600}, {3, 19200}, {4, 38400}}) {
        link_.BaudRate(static_cast<std::int16_t>(index));
        Open();
        EXPECT_EQ(boot_.Settings().BitRate, rate);
        EXPECT_EQ(Panel(5), QString::number(rate));
    }
}

TEST_F(FormUpgradeFirmwareTest, BeginsWithTheSettingsOfTheMoment) {
    link_.CommPort(12);
    link_.BaudRate(3);
    boot_.Settings().Retries = 99;
    boot_.Settings().PortHandle = -1;
    Open();
    EXPECT_EQ(Panel(1), QStringLiteral("Status"));
    EXPECT_EQ(Panel(2), QStringLiteral("Bootloader Firmware Version"));
    EXPECT_EQ(Panel(3), QStringLiteral("Processor"));
    EXPECT_EQ(Panel(4), QStringLiteral("COM12"));
    EXPECT_EQ(Panel(5), QStringLiteral("19200"));
    const BootSettings &settings = boot_.Settings();
    EXPECT_EQ(settings.BitRate, 19200);
    EXPECT_EQ(settings.PortName, QStringLiteral("COM12"));
    EXPECT_EQ(settings.Retries, 3);
    EXPECT_EQ(settings.PortHandle, -1); // kept
    EXPECT_EQ(settings.ProgramFile, Path("PROGMEM.MCP"));
    EXPECT_EQ(settings.EepromFile, Path("EEDATA.MCP"));
    EXPECT_EQ(settings.UserIdFile, Path("USERID.MCP"));
    EXPECT_EQ(settings.ConfigFile, Path("CONFIG.MCP"));
    EXPECT_EQ(settings.ErrorFile, Path("ERROR.MCP"));
}

TEST_F(FormUpgradeFirmwareTest, ShowsItsPanelForCtrlAndAPressOnTheTitle) {
    Open();
    auto &title = Ui().Get<QLabel>("lblTitle");
    auto &frame = Ui().Get<QGroupBox>("Frame1");
    const int closed = form_->height();
    EXPECT_FALSE(frame.isVisible());
    EXPECT_GE(closed, 2535 / 15);
    for (const Qt::KeyboardModifiers keys :
         {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ShiftModifier),
          Qt::ControlModifier | Qt::ShiftModifier, Qt::ControlModifier | Qt::AltModifier}) {
        QTest::mouseClick(&title, Qt::LeftButton, keys);
        EXPECT_FALSE(frame.isVisible());
    }
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        QTest::mouseClick(&title, button, Qt::ControlModifier);
        EXPECT_TRUE(frame.isVisible());
        EXPECT_GE(form_->height(), 6570 / 15);
        QTest::mouseClick(&title, button, Qt::ControlModifier);
        EXPECT_FALSE(frame.isVisible());
        EXPECT_EQ(form_->height(), closed);
    }
    QTest::mouseClick(Ui().Get<QWidget>("lblCircleR").parentWidget(), Qt::LeftButton, Qt::ControlModifier,
                      QPoint(1, 1));
    EXPECT_FALSE(frame.isVisible());
}

TEST_F(FormUpgradeFirmwareTest, ConnectsToABootLoader) {
    Open();
    Press("CommandConnect");
    EXPECT_EQ(Panel(1), QStringLiteral("Device found..."));
    EXPECT_EQ(Panel(2), QStringLiteral("V1.5"));
    EXPECT_EQ(Panel(3), QStringLiteral("PIC18F2525"));
    ExpectDeviceCommands(true);
    Press("CommandConnect");
    EXPECT_EQ(loader_.openedPorts.size(), 1u); // the port is reused
    Press("CommandDisconnect");
    EXPECT_EQ(Panel(1), QStringLiteral("Not connected..."));
    EXPECT_EQ(Panel(2), QStringLiteral(" "));
    EXPECT_EQ(Panel(3), QStringLiteral(" "));
    EXPECT_TRUE(loader_.closed);
    EXPECT_EQ(boot_.Settings().PortHandle, -1);
    ExpectDeviceCommands(false);
}

TEST_F(FormUpgradeFirmwareTest, LetsEventsRunBeforeItClosesThePort) {
    Connect();
    bool wasHeld = false;
    QMetaObject::invokeMethod(
        form_.get(), [&] { wasHeld = boot_.Settings().PortHandle > 0; }, Qt::QueuedConnection);
    form_->Console().DisconnectBootloader();
    EXPECT_TRUE(wasHeld);
    EXPECT_EQ(boot_.Settings().PortHandle, -1);
}

TEST_F(FormUpgradeFirmwareTest, TheBootLinkOutlivesItsWindow) {
    Connect();
    form_.reset();
    EXPECT_EQ(boot_.EraseRegion(0x800, 0x8FF), TransferResult::Finished);
}

TEST_F(FormUpgradeFirmwareTest, TellsWhyItDidntConnect) {
    Open();
    loader_.opens = false;
    Press("CommandConnect");
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to open port..."));
    loader_.opens = true;
    loader_.answers = false;
    Press("CommandConnect");
    EXPECT_EQ(Panel(1), QStringLiteral("Not connected..."));
    EXPECT_TRUE(loader_.closed);
    ExpectDeviceCommands(false);
    EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(FormUpgradeFirmwareTest, AFaultOfTheSearchIsShownAndLeavesTheFormUsable) {
    Open();
    loader_.instead = [](auto &, auto &) -> QByteArray { throw Fault::Overflow(QStringLiteral("a test")); };
    dialogs_.Expect(QStringLiteral("Core error:  ") + Fault::Overflow(QStringLiteral("a test")).Description(),
                    BoxIcon::None, BoxButtons::Ok, BoxAnswer::Ok, {}, QString());
    Press("CommandConnect");
    EXPECT_EQ(Panel(1),
              QStringLiteral("Core error:  ") + Fault::Overflow(QStringLiteral("a test")).Description());
    EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
    ExpectDeviceCommands(false);
    loader_.instead = {};
    Press("CommandConnect");
    EXPECT_EQ(Panel(1), QStringLiteral("Device found..."));
}

TEST_F(FormUpgradeFirmwareTest, ClosesThePortWithTheWindow) {
    Connect();
    Press("CommandClose");
    EXPECT_FALSE(form_->isVisible());
    EXPECT_TRUE(loader_.closed);
    EXPECT_EQ(boot_.Settings().PortHandle, -1);
}

TEST_F(FormUpgradeFirmwareTest, ReadsTheFourMemoriesInTheirOrder) {
    Connect();
    loader_.packets.clear();
    Press("CommandRead");
    EXPECT_EQ(Panel(1), QStringLiteral("Finished operation..."));
    ASSERT_EQ(loader_.packets.size(), 368u + 8u + 1u + 1u);
    EXPECT_EQ(loader_.packets.at(368), QByteArray::fromHex("04 80 00 00 00"));
    EXPECT_EQ(loader_.packets.at(376), QByteArray::fromHex("01 10 00 00 30"));
    EXPECT_EQ(loader_.packets.at(377), QByteArray::fromHex("01 10 00 00 20"));
    EXPECT_EQ(ContentOf("PROGMEM.MCP").count('\n'), 2944);
    EXPECT_EQ(ContentOf("EEDATA.MCP").count('\n'), 64);
    EXPECT_EQ(ContentOf("CONFIG.MCP").left(6), QByteArray("300000"));
    EXPECT_EQ(ContentOf("USERID.MCP").left(6), QByteArray("200000"));
}

TEST_F(FormUpgradeFirmwareTest, AFailureInOneRegionDoesntStopTheOthers) {
    Connect();
    loader_.instead = [](const QByteArray &packet, const QByteArray &answer) {
        return packet.at(0) == BootCommand::ReadEeprom ? QByteArray() : answer;
    };
    Press("CommandRead");
    EXPECT_EQ(Panel(1), QStringLiteral("Finished operation...")); // of the last
    EXPECT_EQ(ContentOf("EEDATA.MCP"), QByteArray());
    loader_.answers = false;
    loader_.instead = {};
    Press("CommandRead");
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to read device..."));
}

TEST_F(FormUpgradeFirmwareTest, AnAbortEndsTheWholeRead) {
    Connect();
    loader_.packets.clear();
    loader_.instead = [this](auto &, const QByteArray &answer) {
        if (loader_.packets.size() == 5) {
            PressMeanwhile("CommandAbort");
        }
        return answer;
    };
    Press("CommandRead");
    EXPECT_EQ(Panel(1), QStringLiteral("Operation aborted..."));
    EXPECT_EQ(loader_.packets.size(), 5u);
    EXPECT_EQ(ContentOf("PROGMEM.MCP").count('\n'), 40);
}

TEST_F(FormUpgradeFirmwareTest, ErasesTheApplication) {
    Connect();
    loader_.packets.clear();
    Press("CommandErase");
    EXPECT_EQ(Panel(1), QStringLiteral("Finished operation..."));
    EXPECT_EQ(loader_.packets.size(), 736u);
    loader_.answers = false;
    Press("CommandErase");
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to write device..."));
    loader_.answers = true;
    loader_.instead = [this](auto &, const QByteArray &answer) {
        PressMeanwhile("CommandAbort");
        return answer;
    };
    Press("CommandErase");
    EXPECT_EQ(Panel(1), QStringLiteral("Operation aborted..."));
}

TEST_F(FormUpgradeFirmwareTest, WritesTheProgramImage) {
    Connect();
    Make("PROGMEM.MCP", "000800 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\r\n");
    loader_.packets.clear();
    Press("CommandWrite");
    EXPECT_EQ(Panel(1), QStringLiteral("Finished operation..."));
    EXPECT_EQ(loader_.packets.size(), 2u);
    EXPECT_EQ(loader_.program.at(0x80F), 0x0F);
    EXPECT_TRUE(shown_.isEmpty());
    loader_.answers = false;
    Press("CommandWrite");
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to write device..."));
}

TEST_F(FormUpgradeFirmwareTest, ShowsTheLinesThatDiffer) {
    Connect();
    Make("PROGMEM.MCP", "000800 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\r\n");
    loader_.instead = [](const QByteArray &packet, QByteArray answer) {
        if (packet.at(0) == BootCommand::ReadProgram) {
            answer[5] = 'x';
        }
        return answer;
    };
    Press("CommandWrite");
    EXPECT_EQ(Panel(1), QStringLiteral("Verify error received..."));
    EXPECT_EQ(shown_, QStringList{Path("ERROR.MCP")});
    EXPECT_EQ(ContentOf("ERROR.MCP"), ContentOf("PROGMEM.MCP"));
}

TEST_F(FormUpgradeFirmwareTest, AMemoryImageThatIsntThereIsAFault) {
    Connect();
    EXPECT_THROW(form_->Console().WriteDevice(), Fault);
    EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(FormUpgradeFirmwareTest, ShowsTheProgressOfATransfer) {
    Connect();
    auto &progress = Ui().Get<QProgressBar>("ProgressTransfer");
    EXPECT_FALSE(progress.isVisible());
    QStringList words;
    std::vector<int> values;
    loader_.instead = [&](auto &, const QByteArray &answer) {
        EXPECT_TRUE(progress.isVisible());
        EXPECT_EQ(form_->cursor().shape(), Qt::BusyCursor);
        values.push_back(progress.value());
        words.append(Panel(1));
        return answer;
    };
    Press("CommandErase");
    EXPECT_FALSE(progress.isVisible());
    EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(values.front(), 0);
    EXPECT_GT(values.back(), 990);
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
    EXPECT_EQ(words.at(1), QStringLiteral("Erasing: 2112"));
}

TEST_F(FormUpgradeFirmwareTest, ASecondCommandRunsInsideTheFirst) {
    Connect();
    bool pressed = false;
    std::vector<char> order;
    loader_.instead = [&](const QByteArray &packet, const QByteArray &answer) {
        if (!std::exchange(pressed, true)) {
            PressMeanwhile("CommandErase");
        }
        order.push_back(packet.at(0));
        return answer;
    };
    Press("CommandRead");
    EXPECT_EQ(order.at(0), BootCommand::ReadProgram);
    EXPECT_EQ(order.at(1), BootCommand::EraseProgram);
    EXPECT_EQ(order.at(736), BootCommand::EraseProgram);
    EXPECT_EQ(order.at(737), BootCommand::ReadProgram);
    EXPECT_EQ(Panel(1), QStringLiteral("Finished operation..."));
}

TEST_F(FormUpgradeFirmwareTest, TellsTheTimeThatATransferWillStillTake) {
    Open();
    const auto &timeLeft = Ui().Get<QLabel>("LabelTimeLeft");
    UpgradeConsole &console = form_->Console();
    Q_EMIT console.TransferStarted(QStringLiteral("Writing"));
    EXPECT_TRUE(timeLeft.isVisible());
    EXPECT_EQ(timeLeft.text(), QString());
    EXPECT_TRUE(WaitUntil([&] {
        Q_EMIT console.TransferAdvanced(0.5);
        return !timeLeft.text().isEmpty();
    }));
    EXPECT_TRUE(timeLeft.text().endsWith(QStringLiteral(" s left"))) << timeLeft.text().toStdString();
    Q_EMIT console.TransferEnded();
    EXPECT_FALSE(timeLeft.isVisible());
    Q_EMIT console.TransferStarted(QStringLiteral("Writing"));
    EXPECT_EQ(timeLeft.text(), QString());
    Q_EMIT console.TransferEnded();
}

TEST_F(FormUpgradeFirmwareTest, AReadHasOneProgressForItsFourMemories) {
    Connect();
    auto &progress = Ui().Get<QProgressBar>("ProgressTransfer");
    std::vector<int> values;
    loader_.instead = [&](auto &, const QByteArray &answer) {
        values.push_back(progress.value());
        return answer;
    };
    Press("CommandRead");
    ASSERT_EQ(values.size(), 378u);
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
    EXPECT_EQ(values.at(368), 47104 * 1000 / 48160); // the EEPROM begins
    EXPECT_EQ(values.back(), 48144 * 1000 / 48160);
}

TEST_F(FormUpgradeFirmwareTest, ATransferShowsAgainWhenTheOneInsideItHasEnded) {
    Connect();
    auto &progress = Ui().Get<QProgressBar>("ProgressTransfer");
    int rounds = 0;
    loader_.instead = [&](const QByteArray &packet, const QByteArray &answer) {
        const bool reads = packet.at(0) != BootCommand::EraseProgram;
        EXPECT_TRUE(progress.isVisible());
        EXPECT_EQ(progress.format(), reads ? QStringLiteral("Reading %p%") : QStringLiteral("Erasing %p%"));
        if (++rounds == 100) {
            PressMeanwhile("CommandErase");
        } else if (rounds == 102) {
            EXPECT_EQ(progress.value(), 64 * 1000 / 47104);
        } else if (rounds == 838) {
            EXPECT_EQ(progress.value(), 101 * 128 * 1000 / 48160);
        }
        return answer;
    };
    Press("CommandRead");
    EXPECT_EQ(rounds, 378 + 736);
    EXPECT_FALSE(progress.isVisible());
}

TEST_F(FormUpgradeFirmwareTest, APressBehindAnOpenBoxIsNone) {
    Connect();
    loader_.packets.clear();
    const auto pressAll = [this] {
        QDialog box;
        box.setModal(true);
        box.show();
        for (const char *name : {"CommandUpgradeFirmware", "CommandRunApp", "CommandErase", "CommandClose"}) {
            PressMeanwhile(name);
        }
        Settle();
    };
    ExpectUpgradeQuestion(BoxAnswer::No, pressAll);
    Press("CommandUpgradeFirmware");
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::No,
                    pressAll);
    Press("CommandRunApp");
    EXPECT_TRUE(loader_.packets.empty());
    EXPECT_TRUE(form_->isVisible());
    Press("CommandErase");
    EXPECT_EQ(loader_.packets.size(), 736u);
}

TEST_F(FormUpgradeFirmwareTest, ADisconnectEndsATransfer) {
    Connect();
    loader_.packets.clear();
    loader_.instead = [this](auto &, const QByteArray &answer) {
        if (loader_.packets.size() == 3) {
            PressMeanwhile("CommandDisconnect");
        }
        return answer;
    };
    Press("CommandErase");
    EXPECT_EQ(loader_.packets.size(), 3u);
    EXPECT_TRUE(loader_.closed);
    EXPECT_EQ(Panel(1), QStringLiteral("Operation aborted..."));
    EXPECT_EQ(Panel(2), QStringLiteral(" "));
    ExpectDeviceCommands(false);
}

TEST_F(FormUpgradeFirmwareTest, APanelTellsInItsToolTipWhatItCantShowWhole) {
    Open();
    const auto &label = Ui().Get<QLabel>("StatusBar1(1)");
    const int room = label.contentsRect().width() - 2 * label.margin();
    QString text;
    do {
        text += u'i';
        form_->Console().SetStatus(text);
    } while (label.toolTip() != text && text.size() < 1000);
    EXPECT_GT(label.fontMetrics().horizontalAdvance(text), room);
    form_->resize(form_->width() + 200, form_->height());
    Settle();
    EXPECT_EQ(label.toolTip(), QStringLiteral("Status"));
    form_->resize(form_->width() - 200, form_->height());
    Settle();
    EXPECT_EQ(label.toolTip(), text);
    text.chop(1);
    EXPECT_LE(label.fontMetrics().horizontalAdvance(text), room);
}

TEST_F(FormUpgradeFirmwareTest, ClosingTheWindowEndsATransfer) {
    Connect();
    loader_.packets.clear();
    loader_.instead = [this](auto &, const QByteArray &answer) {
        if (loader_.packets.size() == 3) {
            PressMeanwhile("CommandClose");
        }
        return answer;
    };
    Press("CommandRead");
    EXPECT_EQ(loader_.packets.size(), 3u);
    EXPECT_FALSE(form_->isVisible());
    EXPECT_TRUE(loader_.closed);
}

TEST_F(FormUpgradeFirmwareTest, OpensAHexFileThatTheUserChooses) {
    Open();
    Make("some.hex", ":10080000000102030405060708090A0B0C0D0E0F70\r\n:00000001FF\r\n");
    dialogs_.ExpectOpenFile(Path("some.hex"), [](const FileQuestion &question) {
        EXPECT_EQ(question.title, QStringLiteral("Open HEX File"));
        ASSERT_EQ(question.filters.size(), 2u);
        EXPECT_EQ(question.filters[0].caption, QStringLiteral("INHEX32 Files (*.HEX)"));
        EXPECT_EQ(question.filters[1].caption, QStringLiteral("All Files (*.*)"));
    });
    Press("CommandOpenHexFile");
    EXPECT_EQ(Panel(1), QStringLiteral("HEX file imported..."));
    EXPECT_EQ(boot_.Settings().HexInputPath, Path("some.hex"));
    EXPECT_EQ(ContentOf("PROGMEM.MCP"),
              QByteArray("000800 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F \r\n"));
    dialogs_.ExpectOpenFile(std::nullopt);
    Press("CommandOpenHexFile");
    EXPECT_EQ(Panel(1), QStringLiteral("HEX file imported...")); // nothing happened
}

TEST_F(FormUpgradeFirmwareTest, RefusesWhatIsNoHexFile) {
    Open();
    Make("bad.hex", "hello\r\n");
    Make("PROGMEM.MCP", "kept");
    dialogs_.ExpectOpenFile(Path("bad.hex"));
    Press("CommandOpenHexFile");
    EXPECT_EQ(Panel(1), QStringLiteral("Invalid HEX file..."));
    EXPECT_EQ(ContentOf("PROGMEM.MCP"), QByteArray("kept"));
}

TEST_F(FormUpgradeFirmwareTest, APathThatIsntThereEndsWithoutAWord) {
    Open();
    EXPECT_EQ(form_->Console().OpenHexFile(Path("none.hex")), UpgradeConsole::HexFileOutcome::NotFound);
    EXPECT_EQ(Panel(1), QStringLiteral("Status"));
    EXPECT_EQ(boot_.Settings().HexInputPath, QString());
}

TEST_F(FormUpgradeFirmwareTest, SavesAHexFile) {
    Open();
    Press("CommandEraseFiles");
    dialogs_.ExpectSaveFile(Path("out.hex"), [](const FileQuestion &question) {
        EXPECT_EQ(question.title, QStringLiteral("Save HEX File"));
        EXPECT_EQ(question.filters[0].caption, QStringLiteral("INHEX32 Files (*.HEX)"));
    });
    Press("CommandSaveHexFile");
    EXPECT_EQ(Panel(1), QStringLiteral("HEX file exported..."));
    EXPECT_EQ(boot_.Settings().HexOutputPath, Path("out.hex"));
    EXPECT_EQ(ContentOf("out.hex"), QByteArray(":00000001FF\r\n"));
    dialogs_.ExpectSaveFile(std::nullopt);
    Press("CommandSaveHexFile");
    EXPECT_EQ(boot_.Settings().HexOutputPath, Path("out.hex"));
}

TEST_F(FormUpgradeFirmwareTest, SavesNoHexFileInPlaceOfAnImage) {
    Open();
    Press("CommandEraseFiles");
    ASSERT_TRUE(QFile::link(Path("EEDATA.MCP"), Path("other.hex")));
    for (const char *name : {"PROGMEM.MCP", "EEDATA.MCP", "USERID.MCP", "CONFIG.MCP", "other.hex"}) {
        Make("PROGMEM.MCP", "000800 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\r\n");
        const QByteArray before = ContentOf(name);
        dialogs_.ExpectSaveFile(Path(name));
        dialogs_.ExpectNotice(QStringLiteral("This is one of the program's own memory images. Choose another "
                                             "name for the hex file.\n") +
                              Path(name));
        Press("CommandSaveHexFile");
        EXPECT_EQ(ContentOf(name), before) << name;
        EXPECT_EQ(Panel(1), QStringLiteral("Status"));
        EXPECT_EQ(boot_.Settings().HexOutputPath, QString());
        EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
    }
    // Nor where the image doesn't exist yet.
    ASSERT_TRUE(QFile::remove(Path("CONFIG.MCP")));
    dialogs_.ExpectSaveFile(Path("CONFIG.MCP"));
    dialogs_.ExpectTextWith(QStringLiteral("This is one of the program's own memory images."),
                            BoxIcon::Exclamation);
    Press("CommandSaveHexFile");
    EXPECT_FALSE(QFile::exists(Path("CONFIG.MCP")));
}

TEST_F(FormUpgradeFirmwareTest, ErasesTheImagesButNotTheListOfErrors) {
    Open();
    for (const char *name : {"PROGMEM.MCP", "EEDATA.MCP", "USERID.MCP", "CONFIG.MCP", "ERROR.MCP"}) {
        Make(name, "x");
    }
    Press("CommandEraseFiles");
    for (const char *name : {"PROGMEM.MCP", "EEDATA.MCP", "USERID.MCP", "CONFIG.MCP"}) {
        EXPECT_EQ(ContentOf(name), QByteArray()) << name;
    }
    EXPECT_EQ(ContentOf("ERROR.MCP"), QByteArray("x"));
    EXPECT_EQ(Panel(1), QStringLiteral("Status"));
}

TEST_F(FormUpgradeFirmwareTest, ShowsTheFourImagesInTheirOrder) {
    Open();
    Press("CommandViewDataFiles");
    EXPECT_EQ(shown_,
              (QStringList{Path("PROGMEM.MCP"), Path("EEDATA.MCP"), Path("CONFIG.MCP"), Path("USERID.MCP")}));
}

TEST_F(FormUpgradeFirmwareTest, SaysOnceThatThereIsNoEditor) {
    Open();
    hasEditor_ = false;
    dialogs_.ExpectTextWith(QStringLiteral("No text editor could be started."), BoxIcon::Exclamation);
    Press("CommandViewDataFiles");
    EXPECT_EQ(shown_.size(), 1);
}

TEST_F(FormUpgradeFirmwareTest, RunsTheApplicationAfterAQuestion) {
    Connect();
    loader_.packets.clear();
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::No);
    Press("CommandRunApp");
    EXPECT_TRUE(loader_.packets.empty());
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
    Press("CommandRunApp");
    EXPECT_EQ(loader_.packets, (std::vector<QByteArray>{QByteArray::fromHex("05 01 FF 7F 00 00"),
                                                        QByteArray::fromHex("00 00")}));
    EXPECT_EQ(Panel(1), QStringLiteral("Not connected..."));
    EXPECT_TRUE(loader_.closed);
}

TEST_F(FormUpgradeFirmwareTest, TellsThatTheApplicationCantBeRun) {
    Connect();
    loader_.answers = false;
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Failed to place processor in run mode!"), BoxIcon::Exclamation,
                          QStringLiteral("Error"));
    Press("CommandRunApp");
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to put in Run mode..."));
    ExpectDeviceCommands(true);
    EXPECT_FALSE(loader_.closed);
}

// Records in order what a command does to the panels and the pointer.
TEST_F(FormUpgradeFirmwareTest, CommandsShowTheirWordsAndThePointerInOrder) {
    Open();
    QStringList log;
    QObject::connect(&form_->Console(), &UpgradeConsole::PanelChanged, form_.get(),
                     [&](UpgradeConsole::Panel panel, const QString &text) {
                         log.append(QStringLiteral("%1 %2").arg(static_cast<int>(panel)).arg(text));
                     });
    QObject::connect(&form_->Console(), &UpgradeConsole::PointerChanged, form_.get(),
                     [&](Qt::CursorShape shape) {
                         log.append(shape == Qt::ArrowCursor  ? QStringLiteral("default")
                                    : shape == Qt::BusyCursor ? QStringLiteral("busy")
                                                              : QStringLiteral("hourglass"));
                     });
    QObject::connect(&form_->Console(), &UpgradeConsole::RedrawWanted, form_.get(),
                     [&] { log.append(QStringLiteral("redraw")); });
    const auto expect = [&](const char *name, const QStringList &expected) {
        log.clear();
        Press(name);
        EXPECT_EQ(log.join(u'|').toStdString(), expected.join(u'|').toStdString()) << name;
    };
    expect("CommandConnect", {"busy", "1 Searching for device...", "redraw", "2 V1.5", "default",
                              "3 PIC18F2525", "1 Device found..."});
    Press("CommandDisconnect");
    loader_.answers = false;
    expect("CommandConnect", {"busy", "1 Searching for device...", "redraw", "2 ", "default",
                              "1 Not connected...", "2  ", "3  "});
    loader_.answers = true;
    Press("CommandConnect");
    Make("some.hex", ":00000001FF");
    dialogs_.ExpectOpenFile(Path("some.hex"));
    expect("CommandOpenHexFile",
           {"1 Importing HEX file...", "busy", "redraw", "1 HEX file imported...", "default"});
    dialogs_.ExpectSaveFile(Path("out.hex"));
    expect("CommandSaveHexFile",
           {"1 Exporting HEX file...", "busy", "redraw", "1 HEX file exported...", "default"});
    expect("CommandWrite", {"busy", "1 Finished operation...", "default"});
    Make("PROGMEM.MCP", "000800 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\r\n");
    expect("CommandWrite", {"busy", "1 Writing: 2048", "1 Finished operation...", "default"});
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
    expect("CommandRunApp",
           {"hourglass", "1 Run mode is set...", "1 Not connected...", "2  ", "3  ", "default"});
}

TEST_F(FormUpgradeFirmwareTest, NoEndsTheUpgradeWithNothingChanged) {
    Open();
    ExpectUpgradeQuestion(BoxAnswer::No);
    Press("CommandUpgradeFirmware");
    EXPECT_TRUE(loader_.openedPorts.empty());
    EXPECT_EQ(Panel(1), QStringLiteral("Status"));
    EXPECT_TRUE(Ui().Enabled("CommandUpgradeFirmware"));
}

TEST_F(FormUpgradeFirmwareTest, UpgradesASensorThatIsInItsBootLoader) {
    Open();
    MakeFirmware();
    int offlines = 0;
    QObject::connect(&link_, &LinkSession::OnlineChanged, form_.get(), [&](bool online) {
        EXPECT_FALSE(online);
        ++offlines;
    });
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    QStringList words;
    loader_.instead = [&](auto &, const QByteArray &answer) {
        EXPECT_FALSE(Ui().Enabled("CommandUpgradeFirmware"));
        EXPECT_FALSE(Ui().Enabled("CommandClose"));
        EXPECT_TRUE(Ui().Enabled("CommandAbort"));
        words.append(Panel(1));
        return answer;
    };
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
    Press("CommandUpgradeFirmware");
    ASSERT_EQ(loader_.packets.size(), 1u + 1u + 736u + 2u + 1u + 1u + 1u);
    EXPECT_EQ(loader_.packets.at(0), QByteArray::fromHex("00 02"));
    EXPECT_EQ(loader_.packets.at(1), QByteArray::fromHex("04 01 FE 03 00"));
    EXPECT_EQ(loader_.packets.at(2), QByteArray::fromHex("03 01 00 08 00"));
    EXPECT_EQ(loader_.packets.at(740), QByteArray::fromHex("05 01 FF 7F 00 00"));
    EXPECT_EQ(loader_.packets.at(741), QByteArray::fromHex("00 00"));
    EXPECT_EQ(loader_.packets.at(742), QByteArray::fromHex("00 02")); // which the sensor no longer answers
    EXPECT_EQ(words.at(1), QStringLiteral("Device found..."));
    EXPECT_EQ(words.at(2), QStringLiteral("HEX file imported..."));
    EXPECT_EQ(words.at(738), QStringLiteral("Finished operation..."));
    EXPECT_EQ(Panel(1), QStringLiteral("Run mode is set..."));
    EXPECT_EQ(loader_.program.at(0x80F), 0x0F);
    EXPECT_EQ(offlines, 1); // although the link was never opened
    EXPECT_TRUE(Ui().Enabled("CommandUpgradeFirmware"));
    EXPECT_TRUE(Ui().Enabled("CommandClose"));
    EXPECT_FALSE(loader_.closed); // the port stays held
    ExpectDeviceCommands(true);
}

TEST_F(FormUpgradeFirmwareTest, SendsALostResetAgain) {
    MakeFirmware();
    for (const int lost : {1, 2}) {
        Open();
        loader_.restarted = false;
        loader_.resetsToLose = lost;
        loader_.packets.clear();
        ExpectUpgradeQuestion(BoxAnswer::Yes);
        dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
        Press("CommandUpgradeFirmware");
        EXPECT_EQ(std::count(loader_.packets.begin(), loader_.packets.end(), QByteArray(2, '\0')), lost + 1);
        EXPECT_EQ(loader_.packets.back(), QByteArray::fromHex("00 02"));
        EXPECT_EQ(Panel(1), QStringLiteral("Run mode is set..."));
    }
}

TEST_F(FormUpgradeFirmwareTest, ClaimsNoSuccessWhereEachResetIsLost) {
    Open();
    MakeFirmware();
    loader_.resetsToLose = 100;
    int offlines = 0;
    QObject::connect(&link_, &LinkSession::OnlineChanged, form_.get(), [&](bool) { ++offlines; });
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(Panel(1), QStringLiteral("Reset Processor Failed!"));
    const std::vector<QByteArray> resetAndQuestion{QByteArray::fromHex("00 00"),
                                                   QByteArray::fromHex("00 02")};
    ASSERT_EQ(loader_.packets.size(), 741u + 6u);
    for (std::size_t index = 741; index < loader_.packets.size(); ++index) {
        EXPECT_EQ(loader_.packets[index], resetAndQuestion[(index - 741) % 2]) << index;
    }
    EXPECT_EQ(offlines, 1);
    EXPECT_TRUE(Ui().Enabled("CommandUpgradeFirmware"));
    EXPECT_TRUE(Ui().Enabled("CommandClose"));
    EXPECT_FALSE(loader_.closed);
    ExpectDeviceCommands(true);
}

TEST_F(FormUpgradeFirmwareTest, ClaimsNoSuccessWhereTheDeviceGoesAwayBeforeTheReset) {
    Open();
    MakeFirmware();
    loader_.instead = [this](const QByteArray &, const QByteArray &answer) {
        loader_.gone = loader_.packets.size() == 741; // with the run mode's answer
        loader_.opens = !loader_.gone;
        return answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(loader_.packets.size(), 741u) << "no reset went out";
    EXPECT_EQ(Panel(1), QStringLiteral("Reset Processor Failed!"));
}

TEST_F(FormUpgradeFirmwareTest, SendsTheResetAgainWhereTheDeviceComesBack) {
    Open();
    MakeFirmware();
    loader_.instead = [this](const QByteArray &, const QByteArray &answer) {
        loader_.gone = loader_.packets.size() == 741;
        return answer;
    };
    const auto comeBack = [this] { loader_.gone = false; };
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, form_.get(), comeBack);
    timer.start(100);
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
    Press("CommandUpgradeFirmware");
    EXPECT_TRUE(loader_.restarted);
}

TEST_F(FormUpgradeFirmwareTest, AFalseAnswerAfterTheResetComesFromALoaderToo) {
    Open();
    MakeFirmware();
    loader_.resetsToLose = 100;
    loader_.instead = [this](const QByteArray &packet, const QByteArray &answer) {
        return loader_.packets.size() > 741 && !answer.isEmpty() ? packet.first(1) : answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(Panel(1), QStringLiteral("Reset Processor Failed!"));
}

TEST_F(FormUpgradeFirmwareTest, LetsEventsRunWhileItWaitsForTheRestart) {
    Open();
    MakeFirmware();
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, form_.get(), [&] { ++ticks; });
    QElapsedTimer waited;
    loader_.instead = [&](const QByteArray &packet, const QByteArray &answer) {
        if (packet == QByteArray::fromHex("00 00")) {
            timer.start(10);
            waited.start();
        } else if (waited.isValid()) {
            EXPECT_GE(waited.elapsed(), 299);
            EXPECT_GT(ticks, 5);
        }
        return answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
    Press("CommandUpgradeFirmware");
    EXPECT_TRUE(waited.isValid());
}

namespace {

// Transfers nothing and reports no error, which the real library never does.
class IdleWriter : public BootLibrary {
public:
    using BootLibrary::BootLibrary;
    std::int32_t WritePIC(std::int32_t, const TransferRecord &, std::span<const std::uint8_t>) override {
        return 0;
    }
};

} // namespace

TEST_F(FormUpgradeFirmwareTest, ARunModeThatWroteNothingIsAFailure) {
    BootComm idle(std::make_unique<IdleWriter>(loader_.Opener()));
    Open(idle);
    Press("CommandConnect");
    EXPECT_FALSE(form_->Console().RunModeCommand());
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to put in Run mode..."));
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Failed to place processor in run mode!"), BoxIcon::Exclamation,
                          QStringLiteral("Error"));
    loader_.packets.clear();
    Press("CommandRunApp");
    EXPECT_TRUE(loader_.packets.empty()); // no reset
    form_.reset();
}

TEST_F(FormUpgradeFirmwareTest, AFailureToReadTheEepromDoesntStopTheUpgrade) {
    Open();
    MakeFirmware();
    loader_.instead = [](const QByteArray &packet, const QByteArray &answer) {
        return packet.at(0) == BootCommand::ReadEeprom ? QByteArray() : answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
    Press("CommandUpgradeFirmware");
}

// The rest of the image was written and verified, but it isn't the whole firmware.
TEST_F(FormUpgradeFirmwareTest, AnUpgradeWhoseImageIsErasedMeanwhileFails) {
    Open();
    Make("Firmware/B70214.hex", ":10080000000102030405060708090A0B0C0D0E0F70\r\n"
                                ":10081000000102030405060708090A0B0C0D0E0F60\r\n:00000001FF\r\n");
    loader_.instead = [this](const QByteArray &packet, const QByteArray &answer) {
        if (packet.at(0) == BootCommand::WriteProgram) {
            PressMeanwhile("CommandEraseFiles");
        }
        return answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to write device..."));
    EXPECT_EQ(loader_.packets.back().at(0), BootCommand::ReadProgram);
}

// Otherwise the write would find nothing to do, and the upgrade would start the erased sensor.
TEST_F(FormUpgradeFirmwareTest, AnUpgradeWhoseImageIsReplacedDuringTheEraseFails) {
    MakeFirmware();
    for (const char *command : {"CommandEraseFiles", "CommandRead"}) {
        Open();
        loader_.packets.clear();
        bool pressed = false;
        loader_.instead = [this, command, &pressed](const QByteArray &packet, const QByteArray &answer) {
            if (packet.at(0) == BootCommand::EraseProgram && !std::exchange(pressed, true)) {
                PressMeanwhile(command);
            }
            return answer;
        };
        ExpectUpgradeQuestion(BoxAnswer::Yes);
        Press("CommandUpgradeFirmware");
        EXPECT_EQ(Panel(1), QStringLiteral("Failed to write device...")) << command;
        EXPECT_EQ(loader_.packets.back().at(0), BootCommand::EraseProgram) << command;
    }
}

// Each line was verified as it was written, but some are erased now.
TEST_F(FormUpgradeFirmwareTest, AnUpgradeThatIsErasedWhileItIsWrittenFails) {
    Open();
    Make("Firmware/B70214.hex", ":10080000000102030405060708090A0B0C0D0E0F70\r\n"
                                ":10081000000102030405060708090A0B0C0D0E0F60\r\n:00000001FF\r\n");
    bool pressed = false;
    loader_.instead = [this, &pressed](const QByteArray &packet, const QByteArray &answer) {
        if (packet.at(0) == BootCommand::WriteProgram && !std::exchange(pressed, true)) {
            PressMeanwhile("CommandErase");
        }
        return answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(loader_.program.count(0x800), 0u);
    EXPECT_EQ(loader_.program.count(0x810), 1u);
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to write device..."));
    EXPECT_EQ(loader_.packets.back().at(0), BootCommand::ReadProgram); // no command to start the application
}

TEST_F(FormUpgradeFirmwareTest, WithoutAFirmwareFileNothingIsErased) {
    Open();
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(Panel(1), QStringLiteral("Device found..."));
    EXPECT_EQ(loader_.packets.size(), 2u);
    EXPECT_TRUE(Ui().Enabled("CommandUpgradeFirmware"));
}

TEST_F(FormUpgradeFirmwareTest, WithAnInvalidFirmwareFileNothingIsErased) {
    Open();
    Make("Firmware/B70214.hex", ":10080000000102030405060708090A0B0C0D0E0F71\r\n:00000001FF\r\n");
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(Panel(1), QStringLiteral("Invalid HEX file..."));
    EXPECT_EQ(loader_.packets.size(), 2u);
}

// The sensor goes on measuring. Without a file, nothing could bring it back from its loader.
TEST_F(FormUpgradeFirmwareTest, WithoutAFirmwareFileARunningSensorIsLeftAlone) {
    Open();
    loader_.answers = false;
    int offlines = 0;
    QObject::connect(&link_, &LinkSession::OnlineChanged, form_.get(), [&](bool online) {
        EXPECT_FALSE(online);
        ++offlines;
    });
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    const auto &panel = Ui().Get<QLabel>("StatusBar1(1)");
    EXPECT_EQ(Panel(1), QStringLiteral("Firmware file not found"));
    EXPECT_TRUE(panel.toolTip().contains(Path("Firmware/B70214.hex"))) << panel.toolTip().toStdString();
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>(3, QByteArray::fromHex("00 02")));
    EXPECT_EQ(offlines, 1);
    EXPECT_TRUE(loader_.closed);
    EXPECT_TRUE(Ui().Enabled("CommandUpgradeFirmware"));
    EXPECT_TRUE(Ui().Enabled("CommandClose"));
    EXPECT_EQ(form_->focusWidget(), &Ui().Get<QPushButton>("CommandUpgradeFirmware"));
    form_->Console().SetStatus(QStringLiteral("x"));
    EXPECT_EQ(panel.toolTip(), QStringLiteral("Status")); // the path went with its word
}

// The port is in use at first, so the upgrade tries the link; then it becomes free.
TEST_F(FormUpgradeFirmwareTest, WithoutAFirmwareFileNothingGoesOutOfAPortThatComesFree) {
    ScriptedLine line;
    device_ = line.Path();
    Open();
    loader_.opens = false;
    std::vector<bool> online;
    QObject::connect(&link_, &LinkSession::OnlineChanged, form_.get(),
                     [&](bool isOnline) { online.push_back(isOnline); });
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(Panel(1), QStringLiteral("Firmware file not found"));
    EXPECT_EQ(online, (std::vector<bool>{true, false}));
    EXPECT_FALSE(link_.PortIsOpen());
    EXPECT_TRUE(line.Requests().empty());
}

TEST_F(FormUpgradeFirmwareTest, WithAnInvalidFirmwareFileARunningSensorIsLeftAlone) {
    for (const char *content : {":10080000000102030405060708090A0B0C0D0E0F71\r\n:00000001FF\r\n",
                                ":10080000000102030405060708090A0B0C0D0E0F70\r\n", "hello\r\n", ""}) {
        Open();
        loader_.answers = false;
        Make("Firmware/B70214.hex", content);
        Make("PROGMEM.MCP", "kept");
        ExpectUpgradeQuestion(BoxAnswer::Yes);
        Press("CommandUpgradeFirmware");
        EXPECT_EQ(Panel(1), QStringLiteral("Invalid HEX file...")) << content;
        EXPECT_EQ(ContentOf("PROGMEM.MCP"), QByteArray("kept"));
    }
}

TEST_F(FormUpgradeFirmwareTest, AFirmwareFileThatCantBeReadIsAnInvalidOne) {
    MakeFirmware();
    Open();
    ASSERT_TRUE(QFile::setPermissions(folder_.path(), QFile::Permissions(0x7755)));
    ASSERT_TRUE(QFile::setPermissions(Path("Firmware/B70214.hex"), QFile::Permissions()));
    {
        const AsNobody nobody;
        EXPECT_EQ(form_->Console().CheckHexFile(Path("Firmware/B70214.hex")),
                  UpgradeConsole::HexFileOutcome::Invalid);
    }
    EXPECT_EQ(Panel(1), QStringLiteral("Invalid HEX file..."));
}

TEST_F(FormUpgradeFirmwareTest, AStepThatFailsEndsTheUpgradeWithItsWord) {
    struct Row {
        std::uint8_t command;
        const char *word;
    };
    const Row rows[] = {{BootCommand::EraseProgram, "Failed to write device..."},
                        {BootCommand::WriteProgram, "Failed to write device..."},
                        {BootCommand::ReadProgram, "Failed to write device..."},
                        {BootCommand::WriteEeprom, "Failed to put in Run mode..."}};
    MakeFirmware();
    for (const Row &row : rows) {
        Open();
        loader_.instead = [&row](const QByteArray &packet, const QByteArray &answer) {
            return packet.at(0) == row.command ? QByteArray() : answer;
        };
        loader_.packets.clear();
        ExpectUpgradeQuestion(BoxAnswer::Yes);
        Press("CommandUpgradeFirmware");
        EXPECT_EQ(Panel(1), QString::fromLatin1(row.word));
        EXPECT_EQ(loader_.packets.back().at(0), row.command); // no further packet
        EXPECT_TRUE(Ui().Enabled("CommandClose"));
    }
}

TEST_F(FormUpgradeFirmwareTest, AMismatchOnTheLastLineEndsTheUpgrade) {
    MakeFirmware();
    Open();
    loader_.instead = [](const QByteArray &packet, QByteArray answer) {
        if (packet.at(0) == BootCommand::ReadProgram) {
            answer[5] = 'x';
        }
        return answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(Panel(1), QStringLiteral("Verify error received..."));
    EXPECT_EQ(shown_, QStringList{Path("ERROR.MCP")});
    EXPECT_EQ(loader_.packets.back().at(0), BootCommand::ReadProgram);
    EXPECT_TRUE(Ui().Enabled("CommandUpgradeFirmware"));
    EXPECT_FALSE(loader_.closed);
}

TEST_F(FormUpgradeFirmwareTest, LeavesTheKeyboardWhereItWasBeforeTheUpgrade) {
    Open();
    form_->activateWindow();
    Settle();
    ASSERT_TRUE(form_->isActiveWindow());
    EXPECT_EQ(form_->focusWidget(), &Ui().Get<QPushButton>("CommandUpgradeFirmware"));
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(form_->focusWidget(), &Ui().Get<QPushButton>("CommandUpgradeFirmware"));
}

// The port is still open, but the restarted sensor no longer answers there.
TEST_F(FormUpgradeFirmwareTest, ASecondUpgradeGoesTheWayOverTheLinkAgain) {
    MakeFirmware();
    Open();
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
    Press("CommandUpgradeFirmware");
    EXPECT_GT(boot_.Settings().PortHandle, 0);
    loader_.answers = false;
    loader_.packets.clear();
    bool offline = false;
    QObject::connect(&link_, &LinkSession::OnlineChanged, form_.get(),
                     [&](bool online) { offline = !online; });
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    ExpectPortBox();
    QTimer hurry;
    QObject::connect(&hurry, &QTimer::timeout, form_.get(), [&] {
        if (Panel(1) == QStringLiteral("Placing in boot mode...")) {
            EXPECT_TRUE(loader_.closed);
            EXPECT_EQ(boot_.Settings().PortHandle, -1);
            hurry.stop();
            HurryWait();
        }
    });
    hurry.start(0);
    dialogs_.ExpectNotice(QStringLiteral("Error Connecting to ZTV500-100. (MSG#1)"));
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(loader_.openedPorts.size(), 1u); // the first search can't open it
    EXPECT_EQ(loader_.packets, std::vector<QByteArray>(3, QByteArray::fromHex("00 02")));
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to put in Boot mode"));
    EXPECT_TRUE(offline);
    ExpectDeviceCommands(false);
}

TEST_F(FormUpgradeFirmwareTest, AnAbortEndsTheUpgrade) {
    MakeFirmware();
    for (const std::uint8_t command : {BootCommand::EraseProgram, BootCommand::WriteProgram}) {
        Make("Firmware/B70214.hex", ":10080000000102030405060708090A0B0C0D0E0F70\r\n"
                                    ":10081000000102030405060708090A0B0C0D0E0F60\r\n:00000001FF\r\n");
        Open();
        loader_.packets.clear();
        loader_.instead = [this, command](const QByteArray &packet, const QByteArray &answer) {
            if (packet.at(0) == command) {
                PressMeanwhile("CommandAbort");
            }
            return answer;
        };
        ExpectUpgradeQuestion(BoxAnswer::Yes);
        Press("CommandUpgradeFirmware");
        EXPECT_EQ(Panel(1), QStringLiteral("Operation aborted..."));
        EXPECT_TRUE(Ui().Enabled("CommandUpgradeFirmware"));
    }
}

TEST_F(FormUpgradeFirmwareTest, StaysOpenWhileTheUpgradeRuns) {
    Open();
    MakeFirmware();
    loader_.instead = [this](auto &, const QByteArray &answer) {
        form_->close();
        QTest::keyClick(form_.get(), Qt::Key_Escape);
        EXPECT_TRUE(form_->isVisible());
        return answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
    Press("CommandUpgradeFirmware");
    form_->close();
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormUpgradeFirmwareTest, ASecondPressDuringTheUpgradeIsNone) {
    Open();
    MakeFirmware();
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
    PressMeanwhile("CommandUpgradeFirmware");
    PressMeanwhile("CommandUpgradeFirmware"); // as a double click does, before the first press is handled
    Settle();
    EXPECT_TRUE(dialogs_.AllCame());
}

TEST_F(FormUpgradeFirmwareTest, WithoutALinkTheFirstWaitFails) {
    Open();
    loader_.opens = false;
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    ExpectPortBox();
    bool waited = false;
    QTimer::singleShot(0, form_.get(), [&] {
        QTimer::singleShot(0, form_.get(), [&] {
            waited = true;
            EXPECT_EQ(Panel(1), QStringLiteral("Placing in boot mode..."));
            HurryWait();
        });
    });
    dialogs_.ExpectNotice(QStringLiteral("Error Connecting to ZTV500-100. (MSG#1)"));
    Press("CommandUpgradeFirmware");
    EXPECT_TRUE(waited);
    EXPECT_EQ(Panel(1), QStringLiteral("Failed to put in Boot mode"));
    EXPECT_TRUE(Ui().Enabled("CommandUpgradeFirmware"));
}

TEST_F(FormUpgradeFirmwareTest, SaysWhichFileAnUpgradeUses) {
    MakeFirmware();
    Open();
    EXPECT_EQ(Ui().Text("LabelFirmwareFile"),
              FirmwareFile(QDir::toNativeSeparators(Path("Firmware/B70214.hex"))).Description());
    EXPECT_TRUE(Ui().Text("LabelFirmwareFile").contains(QStringLiteral(", 58 bytes, ")));
    EXPECT_EQ(Ui().Text("LabelNotice"), QString());
    EXPECT_FALSE(IsColoured("LabelFirmwareFile", Colours::Amber));
}

TEST_F(FormUpgradeFirmwareTest, SaysInAmberThatThereIsNoFileAndWhatWouldHappen) {
    Open();
    EXPECT_EQ(Ui().Text("LabelFirmwareFile"),
              QStringLiteral("No firmware file there: ") + Path("Firmware/B70214.hex"));
    EXPECT_EQ(Ui().Text("LabelNotice"),
              QStringLiteral("An upgrade would stop before it changes anything: a running sensor goes on "
                             "measuring, one in its boot loader stays there."));
    for (const char *name : {"LabelFirmwareFile", "LabelNotice"}) {
        EXPECT_TRUE(IsColoured(name, Colours::Amber)) << name;
    }
    EXPECT_TRUE(Ui().Enabled("CommandUpgradeFirmware"));
}

TEST_F(FormUpgradeFirmwareTest, SeesAFileThatComesChangesAndGoesWhileTheWindowIsOpen) {
    Open();
    const auto isShown = [this](const char *part) {
        return WaitUntil([&] { return Ui().Text("LabelFirmwareFile").contains(QString::fromLatin1(part)); });
    };
    MakeFirmware();
    EXPECT_TRUE(isShown(", 58 bytes, "));
    EXPECT_EQ(Ui().Text("LabelNotice"), QString());
    Make("Firmware/B70214.hex", "hello");
    EXPECT_TRUE(isShown("Damaged firmware file, or none: "));
    EXPECT_FALSE(Ui().Text("LabelNotice").isEmpty());
    ASSERT_TRUE(QFile::remove(Path("Firmware/B70214.hex")));
    EXPECT_TRUE(isShown("No firmware file there: "));
}

TEST_F(FormUpgradeFirmwareTest, UsesAChosenFileForThisUpgradeOnlyAndCopiesNothing) {
    MakeFirmware();
    Make("other.hex", ":1009000000000000000000000000000000000000E7\r\n:00000001FF\r\n");
    Open();
    const QString usual = Ui().Text("LabelFirmwareFile");
    dialogs_.ExpectOpenFile(Path("other.hex"), [this](const FileQuestion &question) {
        EXPECT_EQ(question.title, QStringLiteral("Choose Firmware File"));
        EXPECT_EQ(question.suggestion, Path("Firmware/B70214.hex"));
    });
    Press("CommandChooseFile");
    EXPECT_TRUE(Ui().Text("LabelFirmwareFile").contains(Path("other.hex")));
    EXPECT_TRUE(loader_.openedPorts.empty());
    const QStringList files = QDir(folder_.path()).entryList(QDir::Files);
    EXPECT_EQ(files, QStringList{QStringLiteral("other.hex")});

    // A failed upgrade is tried again with the same file.
    loader_.instead = [](const QByteArray &packet, const QByteArray &answer) {
        return packet.at(0) == BootCommand::WriteProgram ? QByteArray() : answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_TRUE(Ui().Text("LabelFirmwareFile").contains(Path("other.hex")));
    loader_.instead = {};
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(loader_.program.count(0x900), 1u);
    EXPECT_EQ(loader_.program.count(0x800), 0u);
    EXPECT_EQ(Ui().Text("LabelFirmwareFile"), usual);
}

TEST_F(FormUpgradeFirmwareTest, AChoiceThatIsCancelledChangesNothing) {
    Open();
    const QString usual = Ui().Text("LabelFirmwareFile");
    dialogs_.ExpectOpenFile(std::nullopt);
    Press("CommandChooseFile");
    EXPECT_EQ(Ui().Text("LabelFirmwareFile"), usual);
}

TEST_F(FormUpgradeFirmwareTest, NoOtherFileCanBeChosenDuringTheUpgrade) {
    MakeFirmware();
    Open();
    loader_.instead = [this](auto &, const QByteArray &answer) {
        EXPECT_FALSE(Ui().Enabled("CommandChooseFile"));
        return answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"), BoxIcon::Exclamation,
                          ApplicationTitle(), [this] {
                              // No warning of a power cut remains behind the box.
                              EXPECT_EQ(Ui().Text("LabelNotice"),
                                        QStringLiteral("The sensor was restarted with the new firmware."));
                          });
    Press("CommandUpgradeFirmware");
    EXPECT_TRUE(Ui().Enabled("CommandChooseFile"));
}

TEST_F(FormUpgradeFirmwareTest, AFailedBarStaysInWordsAndColourUntilTheNextTransfer) {
    MakeFirmware();
    Open();
    const auto &progress = Ui().Get<QProgressBar>("ProgressTransfer");
    loader_.instead = [count = 0](const QByteArray &packet, const QByteArray &answer) mutable {
        count += packet.at(0) == BootCommand::EraseProgram ? 1 : 0;
        return packet.at(0) == BootCommand::EraseProgram && count > 155 ? QByteArray() : answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_TRUE(progress.isVisible());
    EXPECT_EQ(progress.text(), QStringLiteral("Erasing stopped at 21%"));
    EXPECT_EQ(progress.palette().color(QPalette::Highlight), Colours::Of(Colours::Red, form_->palette()));
    EXPECT_FALSE(Ui().Get<QLabel>("LabelTimeLeft").isVisible());
    EXPECT_EQ(Ui().Text("LabelNotice"),
              QStringLiteral("Stopped at 21 %. The boot loader is safe: press Upgrade Firmware again."));
    EXPECT_TRUE(IsColoured("LabelNotice", Colours::Red));
    EXPECT_FALSE(Ui().Get<QWidget>("CommandStartSensor").isVisible()) << "there is nothing to start";
    loader_.instead = [&](const QByteArray &packet, const QByteArray &answer) {
        if (packet.at(0) == BootCommand::EraseProgram) {
            EXPECT_TRUE(progress.format().startsWith(QStringLiteral("Erasing %p%")));
            EXPECT_EQ(progress.palette().color(QPalette::Highlight),
                      form_->palette().color(QPalette::Highlight));
        }
        return answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    dialogs_.ExpectNotice(QStringLiteral("Firmware has been sucessfully upgraded!"));
    Press("CommandUpgradeFirmware");
    EXPECT_FALSE(progress.isVisible());
    EXPECT_TRUE(IsColoured("LabelNotice", Colours::Green));
}

TEST_F(FormUpgradeFirmwareTest, StartsASensorThatWaitsInItsLoaderAsRunAppDoes) {
    Open();
    const auto &start = Ui().Get<QPushButton>("CommandStartSensor");
    EXPECT_FALSE(start.isVisible());
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_TRUE(start.isVisible());
    loader_.packets.clear();
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::No);
    Press("CommandStartSensor");
    EXPECT_TRUE(loader_.packets.empty());
    EXPECT_TRUE(start.isVisible());
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
    Press("CommandStartSensor");
    EXPECT_EQ(loader_.packets, (std::vector<QByteArray>{QByteArray::fromHex("05 01 FF 7F 00 00"),
                                                        QByteArray::fromHex("00 00")}));
    EXPECT_EQ(Panel(1), QStringLiteral("Not connected..."));
    EXPECT_FALSE(start.isVisible());
    EXPECT_EQ(Ui().Text("LabelNotice"),
              QStringLiteral("The sensor was restarted. Go online to see whether it measures."));
}

TEST_F(FormUpgradeFirmwareTest, ConnectsBeforeItStartsASensorWhereThePortIsClosed) {
    Open();
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    Press("CommandDisconnect");
    loader_.answers = false;
    Press("CommandStartSensor");
    EXPECT_TRUE(Ui().Text("LabelNotice").startsWith(QStringLiteral("No boot loader answered.")));
    loader_.answers = true;
    loader_.packets.clear();
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
    Press("CommandStartSensor");
    EXPECT_EQ(loader_.packets.size(), 3u);
    EXPECT_TRUE(loader_.restarted);
}

TEST_F(FormUpgradeFirmwareTest, NamesTheDeviceBesideThePort) {
    for (const auto &[device, text] : {std::pair("/dev/ttyUSB0", "COM1 is /dev/ttyUSB0"),
                                       {"/dev/serial/by-id/usb-X", "COM1 is /dev/serial/by-id/usb-X"},
                                       {"COM1", ""},
                                       {"\\\\.\\COM1", ""}}) {
        device_ = QString::fromLatin1(device);
        Open();
        EXPECT_EQ(Ui().Text("LabelDevice"), QString::fromLatin1(text));
        EXPECT_EQ(Panel(4), QStringLiteral("COM1"));
    }
}

TEST_F(FormUpgradeFirmwareTest, ALongPathIsShortenedAndTheToolTipHasItWhole) {
    Make(("Firmware/" + std::string(200, 'x') + ".hex").c_str(), "");
    Open();
    dialogs_.ExpectOpenFile(Path(("Firmware/" + std::string(200, 'x') + ".hex").c_str()));
    const int width = form_->width();
    Press("CommandChooseFile");
    const auto &label = Ui().Get<QLabel>("LabelFirmwareFile");
    EXPECT_TRUE(label.text().endsWith(QStringLiteral("xxx.hex")));
    EXPECT_EQ(label.toolTip(), label.text());
    EXPECT_EQ(form_->width(), width);
}

// The notices lie between the two buttons and the panel.
TEST_F(FormUpgradeFirmwareTest, TheKeyboardVisitsTheButtonsInTheirOrder) {
    Open();
    form_->activateWindow();
    ASSERT_TRUE(WaitUntil([this] { return form_->isActiveWindow(); }));
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    for (const char *name :
         {"CommandClose", "CommandChooseFile", "CommandStartSensor", "CommandUpgradeFirmware"}) {
        QTest::keyClick(form_->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(form_->focusWidget(), &Ui().Get<QWidget>(name)) << name;
    }
}

TEST_F(FormUpgradeFirmwareTest, TheFocusLeavesAStartButtonThatGoes) {
    Open();
    form_->activateWindow();
    ASSERT_TRUE(WaitUntil([this] { return form_->isActiveWindow(); }));
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    Ui().Get<QPushButton>("CommandStartSensor").setFocus();
    dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
    Press("CommandStartSensor");
    EXPECT_EQ(form_->focusWidget(), &Ui().Get<QPushButton>("CommandUpgradeFirmware"));
}

TEST_F(FormUpgradeFirmwareTest, NothingMovesWithTheNotices) {
    Open();
    const auto places = [this] {
        std::vector<QRect> all;
        for (const char *name : {"lblTitle", "CommandUpgradeFirmware", "CommandClose", "CommandChooseFile",
                                 "LabelFirmwareFile", "StatusBar1"}) {
            const auto &control = Ui().Get<QWidget>(name);
            all.emplace_back(control.mapTo(form_.get(), QPoint()), control.size());
        }
        return all;
    };
    MakeFirmware();
    Open();
    const std::vector<QRect> before = places();
    const int height = form_->height();
    loader_.instead = [&](auto &packet, const QByteArray &answer) {
        if (packet.at(0) == BootCommand::WriteProgram) {
            EXPECT_EQ(places(), before);
            return QByteArray();
        }
        return answer;
    };
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_EQ(places(), before);
    loader_.instead = {};
    loader_.resetsToLose = 100; // the longest notice
    ExpectUpgradeQuestion(BoxAnswer::Yes);
    Press("CommandUpgradeFirmware");
    EXPECT_TRUE(Ui().Get<QWidget>("CommandStartSensor").isVisible());
    EXPECT_EQ(places(), before);
    EXPECT_EQ(form_->height(), height);
    const auto &notice = Ui().Get<QLabel>("LabelNotice");
    EXPECT_LE(notice.heightForWidth(notice.width()), notice.height()) << "all of it is visible";
}

TEST_F(FormUpgradeFirmwareTest, OffersItsHelp) {
    Open();
    form_->activateWindow();
    ASSERT_TRUE(WaitUntil([this] { return form_->isActiveWindow(); })); // before, no shortcut works
    QTest::keyClick(form_.get(), Qt::Key_F1);
    EXPECT_TRUE(help_.WasAskedFor(FormUpgradeFirmware::HelpContextID, *form_));
}

} // namespace ztv
