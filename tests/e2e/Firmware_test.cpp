#include "firmware/HexDigits.h"
#include "firmware/SerialBootLine.h"
#include "firmware/ui/FormUpgradeFirmware.h"
#include "model/ParamDefines.h"
#include "shell/LinkNotices.h"
#include "support/Fault.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"
#include "tools/SensorProcess.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace ztv {

namespace {

constexpr int programStart = 0x800;
constexpr int programBytes = 0xC000 - programStart;
constexpr auto success = "Firmware has been sucessfully upgraded!";

QByteArray ContentOf(const QString &fileName) {
    QFile file(fileName);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

// The application in a hex file as srec_cat reads it, filled with 0xFF where the file has no bytes.
QByteArray ApplicationIn(const QString &hexFile) {
    const QTemporaryDir folder;
    const QString binary = folder.filePath(QStringLiteral("application"));
    QProcess reader;
    reader.start(QStringLiteral("srec_cat"),
                 {hexFile, QStringLiteral("-intel"), QStringLiteral("-fill"), QStringLiteral("0xFF"),
                  QStringLiteral("0x800"), QStringLiteral("0xC000"), QStringLiteral("-offset"),
                  QStringLiteral("-0x800"), QStringLiteral("-o"), binary, QStringLiteral("-binary")});
    EXPECT_TRUE(reader.waitForFinished());
    EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().toStdString();
    QByteArray bytes = ContentOf(binary);
    EXPECT_EQ(bytes.size(), programBytes);
    return bytes;
}

// Hex records and image lines, each from its address and first byte.
QByteArray HexRecord(int address, std::uint8_t first) {
    QByteArray record = ":10" + HexDigits(address, 4).toLatin1() + "00";
    unsigned sum = 0x10 + (static_cast<unsigned>(address) >> 8) + (static_cast<unsigned>(address) & 0xFF);
    for (unsigned index = 0; index < 16; ++index) {
        const unsigned byte = (first + index * 3) & 0xFF;
        record += HexDigits(static_cast<std::int32_t>(byte), 2).toLatin1();
        sum += byte;
    }
    return record + HexDigits(static_cast<std::int32_t>((0x100 - sum) & 0xFF), 2).toLatin1() + "\r\n";
}

// Runs the program in a temporary folder with the console's files, and a sensor in another process.
class FirmwareTest : public MainFormTest {
protected:
    FirmwareTest() {
        EXPECT_TRUE(QFile::copy(presets_ + QStringLiteral("/Presets.fil"), Path("Presets.fil")));
        EXPECT_TRUE(QDir(home_.path()).mkdir(QStringLiteral("Firmware")));
        presets_ = home_.path();
    }
    ~FirmwareTest() override {
        form_.reset();
        qunsetenv("ZTVLINK_PORT_1");
    }

    QString Path(const char *name) const { return home_.filePath(QString::fromLatin1(name)); }
    QString FirmwareFile() const { return Path("Firmware/B70214.hex"); }

    void StartSensor(const QStringList &options = {}) {
        sensor_.emplace(options);
        qputenv("ZTVLINK_PORT_1", sensor_->Device().toLocal8Bit());
    }
    void MakeFirmware() const {
        QProcess maker;
        maker.start(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"),
                    {QStringLiteral("--make-firmware"), FirmwareFile()});
        EXPECT_TRUE(maker.waitForFinished());
        EXPECT_EQ(maker.exitCode(), 0);
    }
    void MakeSmallFirmware() const {
        QFile file(FirmwareFile());
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(HexRecord(0x800, 1) + ":00000001FF\r\n");
    }
    bool RunsItsApplication() {
        return WaitUntil([this] {
            return sensor_->Command(QStringLiteral("stats")).contains(QStringLiteral("boot off"));
        });
    }
    void GoOnlineToRead() {
        WhenDialogOpens([](QWidget &dialog) { Form(dialog).Press("Read"); });
        Ui().Choose("Toolbar1(Online)");
        EXPECT_TRUE(WaitUntil(
            [this] { return Ui().Text("StatusText") == QStringLiteral("Communication Status:  Online"); }));
    }
    QByteArray Flash() {
        const QString file = Path("flash");
        EXPECT_EQ(sensor_->Command(QStringLiteral("dump ") + file), QString());
        return ContentOf(file).mid(programStart);
    }

    // Opens the console from the menu, calls `work` with it, and closes it.
    void InConsole(std::function<void(FormUpgradeFirmware &, const Form &)> work) {
        bool done = false;
        WhenDialogOpens([&](QWidget &dialog) {
            auto &console = dynamic_cast<FormUpgradeFirmware &>(dialog);
            console_ = &console;
            console.Console().Boot().Settings().TimeoutMs = timeoutMs_;
            work(console, Form(console));
            console.close();
            done = true;
        });
        Ui().Choose("mnuOptionsUpgradeFirmware");
        EXPECT_TRUE(WaitUntil([&] { return done; }, 120000));
        EXPECT_EQ(form_->findChild<FormUpgradeFirmware *>(), nullptr);
        console_ = nullptr;
    }
    QString Status() const { return Form(*console_).Text("StatusBar1(1)"); }
    void ExpectQuestion(std::function<void()> whileOpen = {}) {
        dialogs_.Expect(QStringLiteral("This utility will upgrade the ZTV500-100 firmware.\n\nContinue?"),
                        BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::Yes, std::move(whileOpen));
    }
    void ExpectFailure(int step) {
        dialogs_.ExpectNotice(QStringLiteral("Error Connecting to ZTV500-100. (MSG#%1)").arg(step),
                              BoxIcon::Exclamation);
    }
    // Ends the upgrade's wait of ten seconds as soon as `when` returns true.
    void CutWaitShort(std::function<bool()> when) {
        auto *timer = console_->findChild<QTimer *>(QStringLiteral("TimerTimeout"));
        auto *watch = new QTimer(console_);
        QObject::connect(watch, &QTimer::timeout, timer, [timer, watch, when = std::move(when)] {
            if (timer->isActive() && when()) {
                EXPECT_EQ(timer->interval(), 10000);
                watch->stop();
                timer->setInterval(0);
            }
        });
        watch->start(0);
    }

    // Without blanks, which would split the sensor's commands.
    QTemporaryDir home_{QDir::tempPath() + QStringLiteral("/firmware-XXXXXX")};
    std::optional<SensorProcess> sensor_;
    FormUpgradeFirmware *console_ = nullptr;
    int timeoutMs_ = 200; // per answer; short, because most tests wait for one that never comes
};

} // namespace

TEST_F(FirmwareTest, OneButtonTakesARunningSensorToARunningSensor) {
    timeoutMs_ = 1000; // as shipped
    StartSensor();
    MakeFirmware();
    const QByteArray before = Flash();
    ASSERT_NE(before, ApplicationIn(FirmwareFile()));
    Start();
    InConsole([this](auto &, const Form &ui) {
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
        EXPECT_EQ(Status(), QStringLiteral("Run mode is set..."));
        EXPECT_EQ(ui.Text("StatusBar1(2)").left(1), QStringLiteral("V"));
    });
    EXPECT_EQ(Flash(), ApplicationIn(FirmwareFile()));
    EXPECT_EQ(ContentOf(Path("ERROR.MCP")), QByteArray());
    EXPECT_FALSE(form_->Link().PortIsOpen());

    // The sensor is polled again and reports the image's version.
    WhenDialogOpens([](QWidget &dialog) { Form(dialog).Press("Read"); });
    Ui().Choose("Toolbar1(Online)");
    EXPECT_TRUE(WaitUntil([this] { return form_->Zentrova().ParamValue(8) == 300; }));
    EXPECT_TRUE(WaitUntil(
        [this] { return Ui().Text("StatusText") == QStringLiteral("Communication Status:  Online"); }));
}

TEST_F(FirmwareTest, NamesTheVersionsBeforeAndAfterOnceBothAreRead) {
    StartSensor();
    MakeFirmware();
    Start();
    int reads = 0;
    QObject::connect(&form_->Link(), &LinkSession::FirstReadComplete, form_.get(), [&reads] { ++reads; });
    GoOnlineToRead();
    ASSERT_TRUE(WaitUntil([&reads] { return reads == 1; }));
    form_->Link().GoOffline();
    InConsole([this](auto &, const Form &ui) {
        EXPECT_EQ(ui.Text("LabelNotice"), QString());
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
    });
    GoOnlineToRead();
    ASSERT_TRUE(WaitUntil([&reads] { return reads == 2; }));
    form_->Link().GoOffline();
    InConsole([](auto &, const Form &ui) {
        EXPECT_EQ(ui.Text("LabelNotice"), QStringLiteral("The last upgrade: 2.14 -> 3.00"));
    });
}

TEST_F(FirmwareTest, OneButtonWorksBehindAnAdapterThatGivesBackWhatIsSent) {
    timeoutMs_ = 1000;
    StartSensor({QStringLiteral("--echo")});
    MakeFirmware();
    Start();
    InConsole([this](auto &, const Form &ui) {
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
        EXPECT_EQ(Status(), QStringLiteral("Run mode is set..."));
    });
    EXPECT_EQ(Flash(), ApplicationIn(FirmwareFile()));
    EXPECT_EQ(ContentOf(Path("ERROR.MCP")), QByteArray());
    EXPECT_TRUE(RunsItsApplication());
}

TEST_F(FirmwareTest, OneListenerSeesTheMasterAndTheBootLine) {
    StartSensor();
    MakeSmallFirmware();
    Start();
    std::vector<LineFrame> seen;
    QObject::connect(&form_->Link().Mbaxp1().Tap(), &LineTap::FrameSeen, form_.get(),
                     [&seen](const LineFrame &frame) { seen.push_back(frame); });
    InConsole([this](FormUpgradeFirmware &console, const Form &ui) {
        console.Console().Boot().Settings().ProgramEnd = 0x87F;
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
    });
    // The upgrade looks for a loader three times, then asks the running sensor, and ends on the boot line.
    using Kind = LineFrame::Kind;
    ASSERT_GT(seen.size(), 20u);
    for (std::size_t index = 0; index < 6; ++index) {
        EXPECT_EQ(seen[index].kind, index % 2 == 0 ? Kind::Request : Kind::Reply) << index;
        EXPECT_FALSE(seen[index].transaction) << index;
        EXPECT_EQ(seen[index].status, index % 2 == 0 ? 0 : BootResult::NoAnswer) << index;
    }
    const auto written = std::find_if(seen.begin(), seen.end(), [](const LineFrame &frame) {
        return frame.kind == Kind::Reply && frame.transaction == LinkTransaction::SingleWrite;
    });
    ASSERT_NE(written, seen.end());
    EXPECT_EQ(written->status, CodeOf(LinkStatus::NoError));
    EXPECT_TRUE(std::all_of(written + 1, seen.end(), [](auto &frame) { return !frame.transaction; }));
    const QByteArray reset = BootFrame::Encode(QByteArray(2, '\0'));
    EXPECT_EQ(std::count_if(written, seen.end(), [&](auto &frame) { return frame.bytes == reset; }), 1);
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end(),
                               [](auto &first, auto &second) { return first.time < second.time; }));
}

TEST_F(FirmwareTest, OneButtonWorksBehindSuchAnAdapterAtTheLinesPace) {
    for (const char *baud : {"38400", "2400"}) {
        StartSensor({QStringLiteral("--echo"), QStringLiteral("--pace"), QStringLiteral("--boot"),
                     QStringLiteral("--baud"), QString::fromLatin1(baud)});
        MakeSmallFirmware();
        Start();
        form_->Link().BaudRate(baud[0] == '3' ? 4 : 0);
        InConsole([this](FormUpgradeFirmware &console, const Form &ui) {
            console.Console().Boot().Settings().ProgramEnd = 0x87F;
            ExpectQuestion();
            dialogs_.ExpectNotice(QString::fromLatin1(success));
            ui.Press("CommandUpgradeFirmware");
        });
        EXPECT_EQ(Flash().left(0x80), ApplicationIn(FirmwareFile()).left(0x80));
        EXPECT_TRUE(RunsItsApplication());
    }
}

TEST_F(FirmwareTest, ASilentSensorBehindSuchAnAdapterIsNone) {
    StartSensor({QStringLiteral("--echo"), QStringLiteral("--boot")});
    sensor_->Command(QStringLiteral("mute on"));
    Start();
    InConsole([this](auto &, const Form &ui) {
        ui.Press("CommandConnect");
        EXPECT_EQ(Status(), QStringLiteral("Not connected..."));
        sensor_->Command(QStringLiteral("mute off"));
        ui.Press("CommandConnect");
        EXPECT_EQ(Status(), QStringLiteral("Device found..."));
        sensor_->Command(QStringLiteral("mute on"));
        ui.Press("CommandErase");
        EXPECT_EQ(Status(), QStringLiteral("Failed to write device..."));
    });
}

TEST_F(FirmwareTest, WithoutAGoodFirmwareFileARunningSensorGoesOnMeasuring) {
    for (const char *content : {"", ":1008000000000000000000000000000000000000E7\r\n:00000001FF\r\n"}) {
        StartSensor();
        if (*content != '\0') {
            QFile file(FirmwareFile());
            ASSERT_TRUE(file.open(QFile::WriteOnly));
            file.write(content);
        }
        const QByteArray before = Flash();
        Start();
        bool opened = false;
        QObject::connect(&form_->Link(), &LinkSession::OnlineChanged, form_.get(),
                         [&](bool online) { opened = opened || online; });
        InConsole([this, content](auto &, const Form &ui) {
            ExpectQuestion();
            ui.Press("CommandUpgradeFirmware");
            if (*content != '\0') {
                EXPECT_EQ(Status(), QStringLiteral("Invalid HEX file..."));
            } else {
                EXPECT_EQ(Status(), QStringLiteral("Firmware file not found"));
                EXPECT_TRUE(ui.template Get<QLabel>("StatusBar1(1)").toolTip().contains(FirmwareFile()));
            }
            EXPECT_TRUE(ui.Enabled("CommandUpgradeFirmware"));
            EXPECT_TRUE(ui.Enabled("CommandClose"));
        });
        EXPECT_FALSE(opened);
        EXPECT_TRUE(RunsItsApplication());
        EXPECT_TRUE(sensor_->Command(QStringLiteral("stats")).startsWith(QStringLiteral("requests 0 ")));
        EXPECT_EQ(sensor_->Command(QStringLiteral("mark")), QStringLiteral("mark 0"));
        EXPECT_EQ(Flash(), before);
        GoOnlineToRead();
        form_.reset();
    }
}

TEST_F(FirmwareTest, WithoutAFirmwareFileASensorInItsLoaderStaysThereAsItIs) {
    StartSensor({QStringLiteral("--boot")});
    const QByteArray before = Flash();
    Start();
    InConsole([this](auto &, const Form &ui) {
        ExpectQuestion();
        ui.Press("CommandUpgradeFirmware");
        EXPECT_EQ(Status(), QStringLiteral("Device found..."));
    });
    EXPECT_EQ(Flash(), before);
}

TEST_F(FirmwareTest, ASensorThatIsLeftInItsLoaderCanBeStartedWithoutThePanel) {
    StartSensor({QStringLiteral("--boot")});
    const QByteArray before = Flash();
    Start();
    InConsole([this](auto &, const Form &ui) {
        EXPECT_TRUE(ui.Text("LabelFirmwareFile").contains(FirmwareFile()));
        ExpectQuestion();
        ui.Press("CommandUpgradeFirmware");
        EXPECT_TRUE(
            ui.Text("LabelNotice").startsWith(QStringLiteral("The sensor waits in its boot loader.")));
        dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
        ui.Press("CommandStartSensor");
    });
    EXPECT_TRUE(RunsItsApplication());
    EXPECT_EQ(sensor_->Command(QStringLiteral("mark")), QStringLiteral("mark 0"));
    EXPECT_EQ(Flash(), before);
    GoOnlineToRead();
}

TEST_F(FirmwareTest, ASensorWhoseLoaderDidntAnswerCanBeStartedWithItsOldFirmware) {
    StartSensor();
    MakeSmallFirmware();
    const QByteArray before = Flash();
    for (int exchange = 1; exchange <= 3; ++exchange) {
        sensor_->Command(QStringLiteral("bootfault %1 deaf").arg(exchange));
    }
    Start();
    InConsole([this](auto &, const Form &ui) {
        ExpectQuestion();
        ExpectFailure(4);
        ui.Press("CommandUpgradeFirmware");
        EXPECT_EQ(
            ui.Text("LabelNotice"),
            QStringLiteral("The sensor should be in its boot loader, which didn't answer. Press Upgrade "
                           "Firmware again, or Start Sensor to leave it as it was."));
        dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
        ui.Press("CommandStartSensor");
    });
    EXPECT_TRUE(RunsItsApplication());
    EXPECT_EQ(Flash(), before);
    GoOnlineToRead();
}

TEST_F(FirmwareTest, UpgradesWithAChosenFileAndLeavesTheUsualPlaceAsItIs) {
    StartSensor();
    MakeSmallFirmware();
    ASSERT_TRUE(QFile::rename(FirmwareFile(), Path("chosen.hex")));
    Start();
    InConsole([this](auto &, const Form &ui) {
        dialogs_.ExpectOpenFile(Path("chosen.hex"));
        ui.Press("CommandChooseFile");
        EXPECT_TRUE(ui.Text("LabelFirmwareFile").contains(Path("chosen.hex")));
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
    });
    EXPECT_EQ(Flash(), ApplicationIn(Path("chosen.hex")));
    EXPECT_EQ(QDir(Path("Firmware")).entryList(QDir::Files), QStringList());
}

TEST_F(FirmwareTest, AnAdapterThatIsPulledLeavesTheBarAndSaysWhatToDo) {
    StartSensor({QStringLiteral("--boot")});
    MakeFirmware();
    Start();
    InConsole([this](auto &, const Form &ui) {
        EXPECT_EQ(ui.Text("LabelDevice"), QStringLiteral("COM1 is ") + sensor_->Device());
        sensor_->Command(QStringLiteral("bootfault 100 unplug"));
        ExpectQuestion();
        ui.Press("CommandUpgradeFirmware");
        const auto &bar = ui.template Get<QProgressBar>("ProgressTransfer");
        EXPECT_TRUE(bar.isVisible());
        EXPECT_EQ(bar.text(), QStringLiteral("Erasing stopped at 13%")); // 97 of 736 blocks
        EXPECT_EQ(ui.Text("LabelNotice"),
                  QStringLiteral("Stopped at 13 %. The boot loader is safe: press Upgrade Firmware again."));
        sensor_->Command(QStringLiteral("plug"));
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
        EXPECT_FALSE(bar.isVisible());
    });
    EXPECT_EQ(Flash(), ApplicationIn(FirmwareFile()));
}

// Going online with Write, without an answer, leaves the request for a download set.
TEST_F(FirmwareTest, NeverDownloadsTheTable) {
    StartSensor();
    MakeSmallFirmware();
    sensor_->Command(QStringLiteral("set 40 7"));
    sensor_->Command(QStringLiteral("mute on"));
    Start();
    WhenDialogOpens([](QWidget &dialog) { Form(dialog).Press("Write"); });
    Ui().Choose("Toolbar1(Online)");
    ASSERT_TRUE(WaitUntil([this] { return form_->Link().PortIsOpen(); }));
    form_->Link().GoOffline();
    sensor_->Command(QStringLiteral("mute off"));
    InConsole([this](auto &, const Form &ui) {
        QObject::connect(
            &form_->Link().Mbaxp1(), &Mbaxp::TransactionDone, console_,
            [](LinkTransaction transaction) { EXPECT_NE(transaction, LinkTransaction::Download); });
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
    });
    EXPECT_FALSE(form_->Zentrova().WriteAllPending());
}

// Only changes are sent. The command is the only write, unless the table had another value before.
TEST_F(FirmwareTest, SendsTheCommandOnceAndKeepsItNot) {
    for (const std::int32_t held : {0, 1, 99}) {
        StartSensor();
        MakeSmallFirmware();
        Start();
        form_->Zentrova().ParamUpdate(ParamDefines::ReinitCommand, held);
        std::vector<std::int16_t> writes;
        InConsole([this, &writes](auto &, const Form &ui) {
            Mbaxp &master = form_->Link().Mbaxp1();
            QObject::connect(&master, &Mbaxp::TransactionDone, console_, [&](LinkTransaction transaction) {
                if (transaction == LinkTransaction::SingleWrite) {
                    EXPECT_EQ(master.Tag(), QStringLiteral("3"));
                    writes.push_back(master.RegisterValue(LinkTransaction::SingleWrite, 0));
                }
            });
            ExpectQuestion();
            dialogs_.ExpectNotice(QString::fromLatin1(success));
            ui.Press("CommandUpgradeFirmware");
        });
        EXPECT_EQ(writes, held == 0 ? std::vector<std::int16_t>{99} : (std::vector<std::int16_t>{0, 99}))
            << held;
        EXPECT_EQ(form_->Zentrova().ParamValue(ParamDefines::ReinitCommand), 0);
        form_.reset();
    }
}

TEST_F(FirmwareTest, ASensorInItsBootLoaderNeedsNoModbus) {
    StartSensor({QStringLiteral("--boot")});
    MakeFirmware();
    Start();
    int opened = 0;
    QObject::connect(&form_->Link(), &LinkSession::OnlineChanged, form_.get(),
                     [&](bool online) { opened += online ? 1 : 0; });
    InConsole([this](auto &, const Form &ui) {
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
    });
    EXPECT_EQ(opened, 0);
    EXPECT_EQ(Flash(), ApplicationIn(FirmwareFile()));
}

TEST_F(FirmwareTest, ASecondClickFindsTheRestartedSensorByModbusAgain) {
    StartSensor();
    MakeSmallFirmware();
    sensor_->Command(QStringLiteral("mark 255"));
    sensor_->Command(QStringLiteral("reset"));
    Start();
    InConsole([this](FormUpgradeFirmware &console, const Form &ui) {
        for (int click = 0; click < 2; ++click) {
            ExpectQuestion();
            dialogs_.ExpectNotice(QString::fromLatin1(success));
            ui.Press("CommandUpgradeFirmware");
            EXPECT_GT(console.Console().Boot().Settings().PortHandle, 0);
        }
    });
    EXPECT_EQ(Flash(), ApplicationIn(FirmwareFile()));
}

TEST_F(FirmwareTest, TheTableMayHoldTheCommandAlready) {
    StartSensor();
    MakeSmallFirmware();
    Start();
    form_->Zentrova().ParamValue(ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader);
    InConsole([this](auto &, const Form &ui) {
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
    });
}

TEST_F(FirmwareTest, WithoutASensorTheUpgradeEndsAtItsFirstWait) {
    StartSensor();
    sensor_->Command(QStringLiteral("mute on"));
    MakeSmallFirmware();
    Start();
    InConsole([this](auto &, const Form &ui) {
        ExpectQuestion();
        ExpectFailure(1);
        CutWaitShort([this] { return form_->Link().PortIsOpen(); });
        ui.Press("CommandUpgradeFirmware");
        EXPECT_EQ(Status(), QStringLiteral("Failed to put in Boot mode"));
        EXPECT_TRUE(ui.Enabled("CommandUpgradeFirmware"));
    });
    EXPECT_FALSE(form_->Link().PortIsOpen());
}

TEST_F(FirmwareTest, AWriteThatTakesTooLongEndsItAtTheSecond) {
    StartSensor();
    MakeSmallFirmware();
    Start();
    InConsole([this](auto &, const Form &ui) {
        ExpectQuestion();
        // Lets the wait run out while the write is still under way.
        CutWaitShort([this] { return form_->Link().Mbaxp1().TransactionBusy(LinkTransaction::SingleWrite); });
        ExpectFailure(2);
        ui.Press("CommandUpgradeFirmware");
    });
    EXPECT_FALSE(form_->Link().PortIsOpen());
}

TEST_F(FirmwareTest, AWriteThatIsNotConfirmedEndsItAtTheThird) {
    StartSensor();
    MakeSmallFirmware();
    Start();
    InConsole([this](auto &, const Form &ui) {
        ExpectQuestion();
        const auto muted = QObject::connect(&form_->Link().Mbaxp1(), &Mbaxp::TransactionDone, form_.get(),
                                            [this](LinkTransaction transaction) {
                                                if (transaction == LinkTransaction::AddressingProbe) {
                                                    sensor_->Command(QStringLiteral("mute on"));
                                                }
                                            });
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        ExpectFailure(3);
        CutWaitShort([this] {
            return dialogs_.StillExpected() == 1 &&
                   !form_->Link().Mbaxp1().TransactionBusy(LinkTransaction::SingleWrite);
        });
        ui.Press("CommandUpgradeFirmware");
        QObject::disconnect(muted);
    });
}

TEST_F(FirmwareTest, ACommandThatIsReadOnlyIsNeverSentAndEndsItAtTheThird) {
    EXPECT_TRUE(QFile::setPermissions(Path("Presets.fil"), QFile::ReadOwner | QFile::WriteOwner));
    EXPECT_EQ(
        QProcess::execute(QStringLiteral("sqlite3"),
                          {Path("Presets.fil"), QStringLiteral("UPDATE Parameters SET ReadOnly = -1 WHERE "
                                                               "rowid = (SELECT rowid FROM Parameters "
                                                               "ORDER BY rowid LIMIT 1 OFFSET 3)")}),
        0);
    StartSensor();
    MakeSmallFirmware();
    Start();
    ASSERT_TRUE(form_->Zentrova().ParamReadOnly(ParamDefines::ReinitCommand));
    InConsole([this](auto &, const Form &ui) {
        bool isPolled = false;
        int writes = 0;
        QObject::connect(&form_->Link(), &LinkSession::FirstReadComplete, console_,
                         [&isPolled] { isPolled = true; });
        QObject::connect(&form_->Link().Mbaxp1(), &Mbaxp::TransactionDone, console_,
                         [&writes](LinkTransaction transaction) {
                             writes += transaction == LinkTransaction::SingleWrite ? 1 : 0;
                         });
        ExpectQuestion();
        ExpectFailure(3);
        CutWaitShort([&isPolled] { return isPolled; });
        ui.Press("CommandUpgradeFirmware");
        EXPECT_EQ(writes, 0);
        EXPECT_EQ(Status(), QStringLiteral("Failed to put in Boot mode"));
    });
    EXPECT_FALSE(form_->Link().PortIsOpen());
}

TEST_F(FirmwareTest, AConfirmationThatIsLostOrDamagedIsMendedByASecondClick) {
    for (const char *fault : {"drop", "corrupt"}) {
        StartSensor();
        MakeSmallFirmware();
        Start();
        InConsole([this, fault](auto &, const Form &ui) {
            const auto atWrite =
                QObject::connect(&form_->Link().Mbaxp1(), &Mbaxp::TransactionDone, form_.get(),
                                 [this, fault](LinkTransaction transaction) {
                                     if (transaction == LinkTransaction::AddressingProbe) {
                                         sensor_->Command(QString::fromLatin1(fault) + QStringLiteral(" 1"));
                                     }
                                 });
            ExpectQuestion();
            dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
            ExpectFailure(3);
            CutWaitShort([this] {
                return dialogs_.StillExpected() == 1 &&
                       !form_->Link().Mbaxp1().TransactionBusy(LinkTransaction::SingleWrite);
            });
            ui.Press("CommandUpgradeFirmware");
            QObject::disconnect(atWrite);
            sensor_->Command(QString::fromLatin1(fault) + QStringLiteral(" 0"));
            ExpectQuestion();
            dialogs_.ExpectNotice(QString::fromLatin1(success));
            ui.Press("CommandUpgradeFirmware");
        });
        EXPECT_EQ(Flash(), ApplicationIn(FirmwareFile()));
    }
}

TEST_F(FirmwareTest, RepliesThatAreLostWhileItGoesOnlineAreAskedForAgain) {
    StartSensor();
    MakeSmallFirmware();
    sensor_->Command(QStringLiteral("drop 1"));
    Start();
    InConsole([this](auto &, const Form &ui) {
        int lost = 0;
        QObject::connect(&form_->Link().Mbaxp1(), &Mbaxp::TransactionFailed, console_,
                         [this, &lost](LinkTransaction transaction) {
                             EXPECT_EQ(transaction, LinkTransaction::AddressingProbe);
                             if (++lost == 2) {
                                 sensor_->Command(QStringLiteral("drop 0"));
                             }
                         });
        ExpectQuestion();
        dialogs_.ExpectNotice(QString::fromLatin1(success));
        ui.Press("CommandUpgradeFirmware");
        EXPECT_EQ(lost, 2);
    });
}

TEST_F(FirmwareTest, ALoaderThatDoesntAnswerEndsItAtTheFourth) {
    StartSensor();
    MakeSmallFirmware();
    for (int exchange = 1; exchange <= 3; ++exchange) {
        sensor_->Command(QStringLiteral("bootfault %1 deaf").arg(exchange));
    }
    Start();
    InConsole([this](FormUpgradeFirmware &console, const Form &ui) {
        ExpectQuestion();
        ExpectFailure(4);
        ui.Press("CommandUpgradeFirmware");
        EXPECT_EQ(Status(), QStringLiteral("Failed to put in Boot mode"));
        EXPECT_EQ(console.Console().Boot().Settings().PortHandle, -1);
        // The sensor waits in its loader, and another click finds it there.
        EXPECT_EQ(console.Console().ConnectBootloader(), UpgradeConsole::ConnectOutcome::Connected);
    });
}

TEST_F(FirmwareTest, ReadsTheWholeDeviceAsItIs) {
    StartSensor({QStringLiteral("--boot")});
    Start();
    InConsole([this](auto &, const Form &ui) {
        ui.Press("CommandConnect");
        ui.Press("CommandRead");
        EXPECT_EQ(Status(), QStringLiteral("Finished operation..."));
        dialogs_.ExpectSaveFile(Path("read.hex"));
        ui.Press("CommandSaveHexFile");
    });
    const QTemporaryDir folder;
    const QString program = folder.filePath(QStringLiteral("program.hex"));
    EXPECT_EQ(QProcess::execute(QStringLiteral("srec_cat"),
                                {Path("read.hex"), QStringLiteral("-intel"), QStringLiteral("-crop"),
                                 QStringLiteral("0"), QStringLiteral("0x10000"), QStringLiteral("-o"),
                                 program, QStringLiteral("-intel")}),
              0);
    EXPECT_EQ(ApplicationIn(program), Flash());
}

TEST_F(FirmwareTest, RunAppStartsTheApplication) {
    StartSensor({QStringLiteral("--boot")});
    Start();
    InConsole([this](auto &, const Form &ui) {
        ui.Press("CommandConnect");
        dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::None, BoxButtons::YesNo, BoxAnswer::Yes);
        ui.Press("CommandRunApp");
        EXPECT_EQ(Status(), QStringLiteral("Not connected..."));
    });
    EXPECT_TRUE(RunsItsApplication());
    GoOnlineToRead();
}

namespace {

// Answers Yes to each question and records the texts.
class NotingDialogs : public UserDialogs {
public:
    BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &) override {
        if (style.buttons == BoxButtons::Ok) {
            told.append(text);
            return BoxAnswer::Ok;
        }
        return BoxAnswer::Yes;
    }
    std::optional<QString> OpenFileDialog(const FileQuestion &) override { return std::nullopt; }
    std::optional<QString> SaveFileDialog(const FileQuestion &) override { return std::nullopt; }

    QStringList told;
};

// A console on a sensor with little to erase and write, with a shorter timeout for answers.
class FaultyUpgradeTest : public testing::Test {
protected:
    static constexpr int timeoutMs = 120;
    static constexpr int exchanges = 2 + 3 + 2 * 3 + 2; // of an upgrade, see OpenConsole

    FaultyUpgradeTest() {
        EXPECT_TRUE(QDir(home_.path()).mkdir(QStringLiteral("Firmware")));
        hexFile_ = home_.filePath(QStringLiteral("Firmware/B70214.hex"));
        QFile file(hexFile_);
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(HexRecord(0x800, 0x04) + HexRecord(0x810, 0x0F) + HexRecord(0x8B0, 0x80) +
                   ":00000001FF\r\n");
        file.close();
        expected_ = ApplicationIn(hexFile_).left(0xC0);
    }

    void OpenConsole() {
        form_.reset();
        form_ = std::make_unique<FormUpgradeFirmware>(
            FormUpgradeFirmware::Dependencies{.bootComm = boot_,
                                              .link = link_,
                                              .zentrova = zentrova_,
                                              .dialogs = dialogs_,
                                              .help = help_,
                                              .programFolder = home_.path(),
                                              .showInEditor = [](auto &, auto &) { return true; }});
        BootSettings &settings = boot_.Settings();
        settings.ProgramEnd = 0x8BF; // three blocks
        settings.TimeoutMs = timeoutMs;
        form_->show();
    }
    void Upgrade() {
        dialogs_.told.clear();
        Form(*form_).Press("CommandUpgradeFirmware");
        EXPECT_TRUE(Form(*form_).Enabled("CommandUpgradeFirmware"));
        EXPECT_FALSE(link_.PortIsOpen());
    }
    bool SaysSuccess() const { return dialogs_.told.contains(QString::fromLatin1(success)); }
    QString Status() const { return Form(*form_).Text("StatusBar1(1)"); }
    QByteArray Flash() {
        const QString file = home_.filePath(QStringLiteral("flash"));
        sensor_.Command(QStringLiteral("dump ") + file);
        return ContentOf(file).mid(programStart, 0xC0);
    }
    bool RunsItsLoader() {
        return sensor_.Command(QStringLiteral("stats")).contains(QStringLiteral("boot on"));
    }
    void EnterLoader() {
        sensor_.Command(QStringLiteral("plug"));
        sensor_.Command(QStringLiteral("mark 255"));
        sensor_.Command(QStringLiteral("reset"));
        sensor_.Command(QStringLiteral("bootclear"));
    }

    // Runs an upgrade with that fault at that exchange, then clears the fault and clicks again.
    void TryFault(int exchange, const char *fault) {
        SCOPED_TRACE(std::string("exchange ") + std::to_string(exchange) + " " + fault);
        EnterLoader();
        ASSERT_TRUE(RunsItsLoader());
        OpenConsole();
        ASSERT_EQ(sensor_.Command(QStringLiteral("bootfault %1 %2").arg(exchange).arg(QLatin1String(fault))),
                  QString());
        Upgrade();
        if (SaysSuccess()) {
            EXPECT_EQ(Flash(), expected_);
            EXPECT_EQ(Status(), QStringLiteral("Run mode is set..."));
        } else {
            EXPECT_NE(Status(), QStringLiteral("Run mode is set..."));
        }
        if (SaysSuccess()) {
            EXPECT_FALSE(RunsItsLoader());
            return; // another try succeeded
        }
        sensor_.Command(QStringLiteral("plug"));
        Upgrade();
        EXPECT_TRUE(SaysSuccess()) << dialogs_.told.join(u'|').toStdString() << Status().toStdString();
        EXPECT_EQ(Flash(), expected_);
        EXPECT_FALSE(RunsItsLoader());
    }

    QTemporaryDir home_{QDir::tempPath() + QStringLiteral("/firmware-XXXXXX")};
    QString hexFile_;
    QByteArray expected_;
    SensorProcess sensor_;
    NotingDialogs dialogs_;
    HelpOfForm help_;
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    LinkSession link_{zentrova_,
                      {.deviceOfPort = [this](std::int16_t) { return sensor_.Device(); },
                       .askDirection = [] { return ConnectChoice::Read; }}};
    LinkNotices notices_{link_, dialogs_};
    BootComm boot_{SerialBootLine::Opener([this](std::int16_t) { return sensor_.Device(); })};
    std::unique_ptr<FormUpgradeFirmware> form_;
};

} // namespace

TEST_F(FaultyUpgradeTest, WithoutAFaultHasThatManyExchanges) {
    link_.SetMbaxp1CommProperties(1, 4, 1, 0);
    EnterLoader();
    OpenConsole();
    Upgrade();
    EXPECT_TRUE(SaysSuccess());
    EXPECT_EQ(Flash(), expected_);
    EXPECT_TRUE(
        sensor_.Command(QStringLiteral("stats")).contains(QStringLiteral("exchanges %1").arg(exchanges)))
        << sensor_.Command(QStringLiteral("stats")).toStdString();
}

TEST_F(FaultyUpgradeTest, SendsALostResetAgain) {
    link_.SetMbaxp1CommProperties(1, 4, 1, 0);
    EnterLoader();
    OpenConsole();
    sensor_.Command(QStringLiteral("bootfault %1 deaf").arg(exchanges));
    sensor_.Command(QStringLiteral("bootfault %1 deaf").arg(exchanges + 2));
    Upgrade();
    EXPECT_TRUE(SaysSuccess());
    EXPECT_FALSE(RunsItsLoader());
    EXPECT_EQ(Flash(), expected_);
}

TEST_F(FaultyUpgradeTest, ClaimsNoSuccessWhereEachResetIsLost) {
    link_.SetMbaxp1CommProperties(1, 4, 1, 0);
    EnterLoader();
    OpenConsole();
    for (int reset = 0; reset < 3; ++reset) { // each reset is followed by a version read
        sensor_.Command(QStringLiteral("bootfault %1 deaf").arg(exchanges + 2 * reset));
    }
    Upgrade();
    EXPECT_TRUE(dialogs_.told.isEmpty());
    EXPECT_EQ(Status(), QStringLiteral("Reset Processor Failed!"));
    EXPECT_TRUE(RunsItsLoader());
    Upgrade();
    EXPECT_TRUE(SaysSuccess());
    EXPECT_FALSE(RunsItsLoader());
}

// Runs without and with a local echo.
class FaultAtEachExchangeTest : public FaultyUpgradeTest,
                                public testing::WithParamInterface<std::tuple<std::string, std::string>> {};

TEST_P(FaultAtEachExchangeTest, EndsWellOrIsMendedByASecondClick) {
    const auto &[fault, line] = GetParam();
    link_.SetMbaxp1CommProperties(1, 4, 1, 0);
    sensor_.Command(QString::fromStdString(line));
    for (int exchange = 1; exchange <= exchanges; ++exchange) {
        TryFault(exchange, fault.c_str());
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FaultAtEachExchangeTest,
                         testing::Combine(testing::Values("drop", "deaf", "corrupt", "cut", "delay 60",
                                                          "delay 150", "unplug"),
                                          testing::Values("echo off")));
INSTANTIATE_TEST_SUITE_P(KindsWithEcho, FaultAtEachExchangeTest,
                         testing::Combine(testing::Values("drop", "deaf", "corrupt", "cut", "delay 150"),
                                          testing::Values("echo on")));

} // namespace ztv
