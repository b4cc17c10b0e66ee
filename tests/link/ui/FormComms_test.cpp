#include "link/ui/FormComms.h"

#include "link/SerialPorts.h"
#include "shell/LinkNotices.h"
#include "support/ApplicationTitle.h"
#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"
#include "widgets/WhyDisabled.h"

#include <QAbstractItemView>
#include <QGroupBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>
#include <gtest/gtest.h>

namespace ztv {

class FormCommsTest : public testing::Test {
protected:
    FormCommsTest() : previousConfiguration_(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("XDG_CONFIG_HOME", configuration_.path().toLocal8Bit());
        link_.CommPort(3);
        link_.BaudRate(2);
        link_.ParityStop(3);
        link_.ModbusAddress(33);
    }
    ~FormCommsTest() override { qputenv("XDG_CONFIG_HOME", previousConfiguration_); }

    // Opens the dialog, calls `work` with it and returns when it is closed.
    int Run(const std::function<void(const Form &)> &work) {
        FormComms form(link_, *zentrova_, dialogs_, settings_, help_);
        WhenDialogOpens([&work](QWidget &dialog) { work(Form(dialog)); });
        return form.exec();
    }

    void ExpectMaster(std::int16_t port, std::int16_t baudCode, std::int16_t parityCode,
                      std::int16_t stopBits, std::int16_t timeout) {
        EXPECT_EQ(link_.Mbaxp1().PortNumber(), port);
        EXPECT_EQ(link_.Mbaxp1().BaudCode(), baudCode);
        EXPECT_EQ(link_.Mbaxp1().ParityCode(), parityCode);
        EXPECT_EQ(link_.Mbaxp1().StopBitsCode(), stopBits);
        EXPECT_EQ(link_.Mbaxp1().ResponseTimeout(), timeout);
    }

    void Enter(const Form &ui, const char *box, const char *text) {
        ui.Get<QLineEdit>(box).setFocus();
        ui.Get<QLineEdit>(box).selectAll();
        QTest::keyClicks(&ui.Get<QLineEdit>(box), QString::fromLatin1(text));
    }

    QTemporaryDir configuration_;
    QByteArray previousConfiguration_;
    ScriptedDialogs dialogs_;
    HelpOfForm help_;
    SettingsStore settings_{ApplicationTitle()};
    std::unique_ptr<ClassZentrova> zentrova_ = std::make_unique<ClassZentrova>(ShippedPresetsFolder());
    ScriptedLine line_;
    LinkSession link_{*zentrova_,
                      {.deviceOfPort = [this](std::int16_t) { return line_.Path(); },
                       .askDirection = [] { return ConnectChoice::Read; }}};
    LinkNotices notices_{link_, dialogs_};
};

TEST_F(FormCommsTest, SaysWhenTheAdapterGivesBackWhatIsSent) {
    for (const bool givesBack : {true, false}) {
        SCOPED_TRACE(givesBack);
        line_.GiveBack(givesBack);
        link_.GoOnline(ConnectPrompt::Skip);
        link_.Mbaxp1().ResponseTimeout(100);
        const std::size_t before = line_.Requests().size();
        EXPECT_TRUE(WaitUntil([&] { return line_.Requests().size() > before; }));
        Run([&](const Form &ui) {
            EXPECT_TRUE(WaitUntil([&] { return ui.Get<QLabel>("LabelEcho").isVisible() == givesBack; }));
            ui.Get<QPushButton>("CommandCancel").click();
        });
        link_.GoOffline();
    }
}

TEST_F(FormCommsTest, HasItsControls) {
    FormComms form(link_, *zentrova_, dialogs_, settings_, help_);
    const Form ui(form);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Communications Setup"));
    const char *texts[][2] = {{"LabelPort", "Port:"},
                              {"LabelBaud", "Baud Rate:"},
                              {"LabelParityStop", "Parity/Stop Bits:"},
                              {"LabelAddress", "Modbus Address:"},
                              {"LabelTimeouts(0)", "Timeouts:"},
                              {"LabelCrcErrors(0)", "CRC Errors:"},
                              {"CommandReset", "&Reset"},
                              {"CommandSearch", "&Search..."},
                              {"CommandOK", "&OK"},
                              {"CommandCancel", "&Cancel"},
                              {"CommandHelp", "&Help"}};
    for (const auto &row : texts) {
        EXPECT_EQ(ui.Text(row[0]), QString::fromLatin1(row[1]));
    }
    EXPECT_EQ(ui.Get<QGroupBox>("FrameErrors").title(), QStringLiteral("Statistics"));
    const char *toolTips[][2] = {{"TextPort", "The serial communications port"},
                                 {"ComboBaudRate", "Baud rate"},
                                 {"ComboParityStopBits", "Parity & Stop Bits"},
                                 {"TextModbusAddress", "Modbus Address of ZTV500-100"},
                                 {"CommandReset", "Reset statistical counts"},
                                 {"CommandSearch", "Searches for Modbus devices"},
                                 {"CommandOK", "Accept current settings & close"},
                                 {"CommandCancel", "Discard any changes and close"},
                                 {"CommandHelp", "Displays help file"}};
    for (const auto &row : toolTips) {
        EXPECT_EQ(ui.Get<QWidget>(row[0]).toolTip(), QString::fromLatin1(row[1]));
        EXPECT_FALSE(ui.Get<QWidget>(row[0]).accessibleName().isEmpty()) << row[0];
    }
    EXPECT_EQ(ui.Get<QTimer>("Timer1").interval(), 1000);
}

TEST_F(FormCommsTest, SaysWhyItsFieldsAreLocked) {
    const QString online = QStringLiteral("Locked while online. Go offline to change them.");
    FormComms form(link_, *zentrova_, dialogs_, settings_, help_);
    const Form ui(form);
    form.show();
    const QSize size = form.size();
    EXPECT_EQ(ui.Text("LabelLocked"), QString());
    form.EnableDisableCommSettings(true);
    Settle();
    EXPECT_EQ(ui.Text("LabelLocked"), online);
    EXPECT_EQ(form.size(), size); // the text has its room already
    for (const char *name : {"TextPort", "ComboDevice", "ComboBaudRate", "ComboParityStopBits",
                             "TextModbusAddress", "CommandOK", "CommandSearch"}) {
        EXPECT_TRUE(WhyDisabled::TipOf(ui.Get<QWidget>(name)).endsWith(online)) << name;
    }
    form.EnableDisableCommSettings(false);
    EXPECT_EQ(ui.Text("LabelLocked"), QString());
    EXPECT_EQ(WhyDisabled::TipOf(ui.Get<QWidget>("CommandOK")),
              QStringLiteral("Accept current settings & close"));
    const EnvironmentVariable set("ZTVLINK_PORT_3", QStringLiteral("/dev/ttyUSB9"));
    form.EnableDisableCommSettings(false);
    const QString elsewhere = QStringLiteral("The device is set by ZTVLINK_PORT_3, outside of this program.");
    EXPECT_EQ(ui.Text("LabelLocked"), elsewhere);
    EXPECT_TRUE(WhyDisabled::TipOf(ui.Get<QWidget>("ComboDevice")).endsWith(elsewhere));
    ui.Get<QLineEdit>("TextPort").setText(QStringLiteral("x"));
    EXPECT_TRUE(WhyDisabled::TipOf(ui.Get<QWidget>("ComboDevice"))
                    .endsWith(QStringLiteral("Enter a port number first.")));
}

TEST_F(FormCommsTest, ShowsTheSettings) {
    FormComms form(link_, *zentrova_, dialogs_, settings_, help_);
    const Form ui(form);
    EXPECT_EQ(ui.Text("TextPort"), QStringLiteral("3"));
    EXPECT_EQ(ui.Text("TextModbusAddress"), QStringLiteral("33"));
    EXPECT_EQ(ui.Get<QComboBox>("ComboBaudRate").currentText(), QStringLiteral("9600"));
    EXPECT_EQ(ui.Get<QComboBox>("ComboParityStopBits").currentText(), QStringLiteral("O1"));
    QStringList baudRates;
    for (int index = 0; index < ui.Get<QComboBox>("ComboBaudRate").count(); ++index) {
        baudRates << ui.Get<QComboBox>("ComboBaudRate").itemText(index);
    }
    EXPECT_EQ(baudRates, (QStringList{"2400", "4800", "9600", "19200", "38400"}));
    EXPECT_EQ(ui.Get<QComboBox>("ComboParityStopBits").count(), 4);
}

TEST_F(FormCommsTest, FillsItsListsByTheRangesOfTheTable) {
    const ChangedPresets fewer("UPDATE Parameters SET Max = 2 WHERE rowid = 67");
    ClassZentrova zentrova(fewer.Folder());
    FormComms form(link_, zentrova, dialogs_, settings_, help_);
    EXPECT_EQ(Form(form).Get<QComboBox>("ComboBaudRate").count(), 3);
}

TEST_F(FormCommsTest, TakesTheSettingsOnOk) {
    EXPECT_EQ(Run([this](const Form &ui) {
                  Enter(ui, "TextPort", "12");
                  Enter(ui, "TextModbusAddress", "007");
                  ui.Get<QComboBox>("ComboBaudRate").setCurrentIndex(0);
                  ui.Get<QComboBox>("ComboParityStopBits").setCurrentIndex(2);
                  ui.Press("CommandOK");
              }),
              QDialog::Accepted);
    EXPECT_EQ(link_.CommPort(), 12);
    EXPECT_EQ(link_.ModbusAddress(), 7);
    EXPECT_EQ(link_.BaudRate(), 0);
    EXPECT_EQ(link_.ParityStop(), 2);
    ExpectMaster(12, 3, 2, 0, 1200);
}

TEST_F(FormCommsTest, TakesThemOnEnterToo) {
    EXPECT_EQ(Run([this](const Form &ui) {
                  Enter(ui, "TextModbusAddress", "8");
                  QTest::keyClick(&ui.Get<QLineEdit>("TextModbusAddress"), Qt::Key_Return);
              }),
              QDialog::Accepted);
    EXPECT_EQ(link_.ModbusAddress(), 8);
}

TEST_F(FormCommsTest, PutsTheMasterBackOnCancelEscapeAndClose) {
    const std::function<void(const Form &)> ways[] = {
        [](const Form &ui) { ui.Press("CommandCancel"); },
        [](const Form &ui) { QTest::keyClick(&ui.Get<QLineEdit>("TextPort"), Qt::Key_Escape); },
        [](const Form &ui) { ui.Get<QLineEdit>("TextPort").window()->close(); },
    };
    for (const auto &way : ways) {
        link_.SetMbaxp1CommProperties(99, 0, 0, 120); // as after a search
        EXPECT_EQ(Run([&](const Form &ui) {
                      Enter(ui, "TextPort", "12");
                      ui.Get<QComboBox>("ComboBaudRate").setCurrentIndex(0);
                      way(ui);
                  }),
                  QDialog::Rejected);
        EXPECT_EQ(link_.CommPort(), 3);
        EXPECT_EQ(link_.BaudRate(), 2);
        ExpectMaster(3, 5, 1, 0, 350);
    }
}

TEST_F(FormCommsTest, RefusesEntriesBeyondTheirRanges) {
    struct Row {
        const char *box;
        const char *text;
        const char *message;
    };
    const Row rows[] = {
        {"TextPort", "0", "Please enter a numeric value between\n1 and 255 for Port Number."},
        {"TextPort", "256", "Please enter a numeric value between\n1 and 255 for Port Number."},
        {"TextPort", "COM3", "Please enter a numeric value between\n1 and 255 for Port Number."},
        {"TextModbusAddress", "0", "Please enter a numeric value between\n1 and 247 for Modbus Address."},
        {"TextModbusAddress", "247.5", "Please enter a numeric value between\n1 and 247 for Modbus Address."},
        {"TextModbusAddress", "248", "Please enter a numeric value between\n1 and 247 for Modbus Address."},
    };
    Run([&](const Form &ui) {
        for (const Row &row : rows) {
            auto &box = ui.Get<QLineEdit>(row.box);
            Enter(ui, row.box, row.text);
            dialogs_.ExpectNotice(QString::fromLatin1(row.message));
            QTest::keyClick(&box, Qt::Key_Tab);
            EXPECT_TRUE(dialogs_.AllCame());
            EXPECT_TRUE(box.hasFocus());
            EXPECT_EQ(box.selectedText(), QString::fromLatin1(row.text));
            dialogs_.ExpectNotice(QString::fromLatin1(row.message));
            ui.Press("CommandOK");
            EXPECT_TRUE(dialogs_.AllCame());
            EXPECT_TRUE(box.window()->isVisible());
            Enter(ui, row.box, "5");
        }
        QTest::keyClick(ui.Get<QLineEdit>("TextPort").window(), Qt::Key_Escape);
    });
    EXPECT_EQ(link_.CommPort(), 3);
}

TEST_F(FormCommsTest, TakesTheLimitsThemselvesAndRoundsAFraction) {
    const char *rows[][3] = {
        {"255", "255", "247"}, {"1", "1", "1"}, {"1.5", "2", "246.6"}, {"2.5", "2", " 2e1 "}};
    const std::int16_t addresses[] = {247, 1, 247, 20};
    for (int k = 0; k < 4; ++k) {
        Run([&](const Form &ui) {
            Enter(ui, "TextPort", rows[k][0]);
            Enter(ui, "TextModbusAddress", rows[k][2]);
            ui.Press("CommandOK");
        });
        EXPECT_EQ(QString::number(link_.CommPort()), QString::fromLatin1(rows[k][1]));
        EXPECT_EQ(link_.ModbusAddress(), addresses[k]);
    }
}

// An assistive client presses a button without leaving the box that has the focus.
TEST_F(FormCommsTest, RefusesABadEntryHoweverOkIsPressed) {
    Run([this](const Form &ui) {
        ui.Get<QLineEdit>("TextModbusAddress").setText(QStringLiteral("x"));
        ui.Get<QLineEdit>("TextPort").setFocus();
        dialogs_.ExpectNotice(
            QStringLiteral("Please enter a numeric value between\n1 and 247 for Modbus Address."));
        ui.Get<QPushButton>("CommandOK").click();
        EXPECT_TRUE(ui.Get<QLineEdit>("TextModbusAddress").hasFocus());
        ui.Get<QLineEdit>("TextModbusAddress").window()->close();
    });
    EXPECT_EQ(link_.ModbusAddress(), 33);
}

TEST_F(FormCommsTest, SearchesOnNoPortThatIsNone) {
    Run([this](const Form &ui) {
        auto &port = ui.Get<QLineEdit>("TextPort");
        port.setText(QStringLiteral("256"));
        dialogs_.ExpectNotice(
            QStringLiteral("Please enter a numeric value between\n1 and 255 for Port Number."));
        ui.Get<QPushButton>("CommandSearch").click();
        EXPECT_TRUE(port.hasFocus());
        EXPECT_EQ(port.selectedText(), QStringLiteral("256"));
        port.window()->close();
    });
}

TEST_F(FormCommsTest, SelectsTheTextThatTheFocusComesTo) {
    Run([](const Form &ui) {
        ui.Get<QLineEdit>("TextModbusAddress").setFocus(Qt::TabFocusReason);
        EXPECT_EQ(ui.Get<QLineEdit>("TextModbusAddress").selectedText(), QStringLiteral("33"));
        ui.Get<QLineEdit>("TextPort").setFocus(Qt::TabFocusReason);
        EXPECT_EQ(ui.Get<QLineEdit>("TextPort").selectedText(), QStringLiteral("3"));
        ui.Press("CommandCancel");
    });
}

TEST_F(FormCommsTest, LocksTheSettingsOnline) {
    FormComms form(link_, *zentrova_, dialogs_, settings_, help_);
    const Form ui(form);
    for (const bool online : {false, true, false}) {
        form.EnableDisableCommSettings(online);
        for (const char *name : {"TextPort", "ComboDevice", "ComboBaudRate", "ComboParityStopBits",
                                 "TextModbusAddress", "CommandOK", "CommandSearch"}) {
            EXPECT_EQ(ui.Enabled(name), !online) << name;
        }
        for (const char *name : {"CommandCancel", "CommandReset"}) {
            EXPECT_TRUE(ui.Enabled(name)) << name;
        }
    }
}

TEST_F(FormCommsTest, DisturbsNoLinkThatIsOnline) {
    line_.AnswerAlways(QByteArray());
    ASSERT_TRUE(link_.Mbaxp1().OpenPort());
    Run([](const Form &ui) {
        EXPECT_FALSE(ui.Enabled("TextPort"));
        EXPECT_FALSE(ui.Enabled("CommandOK"));
        ui.Press("CommandCancel");
    });
    EXPECT_TRUE(link_.PortIsOpen());
    ExpectMaster(3, 5, 1, 0, 350);
}

TEST_F(FormCommsTest, ShowsAndResetsTheCounts) {
    link_.TimeoutCount(12);
    link_.CrcErrorCount(345);
    FormComms form(link_, *zentrova_, dialogs_, settings_, help_);
    form.show();
    const Form ui(form);
    EXPECT_EQ(ui.Text("LabelTimeouts(1)"), QStringLiteral("12"));
    EXPECT_EQ(ui.Text("LabelCrcErrors(1)"), QStringLiteral("345"));
    link_.TimeoutCount(32767);
    EXPECT_TRUE(WaitUntil([&ui] { return ui.Text("LabelTimeouts(1)") == QStringLiteral("32767"); }));
    ui.Press("CommandReset");
    EXPECT_EQ(link_.TimeoutCount(), 0);
    EXPECT_EQ(link_.CrcErrorCount(), 0);
    EXPECT_EQ(ui.Text("LabelTimeouts(1)"), QStringLiteral("0"));
    EXPECT_EQ(ui.Text("LabelCrcErrors(1)"), QStringLiteral("0"));
}

TEST_F(FormCommsTest, KeepsItsFieldsWhenTheSearchEndsWithoutAPick) {
    Run([](const Form &ui) {
        WhenDialogOpens([](QWidget &search) { search.close(); });
        ui.Press("CommandSearch");
        EXPECT_EQ(ui.Text("TextModbusAddress"), QStringLiteral("33"));
        EXPECT_EQ(ui.Get<QComboBox>("ComboBaudRate").currentIndex(), 2);
        ui.Press("CommandCancel");
    });
    ExpectMaster(3, 5, 1, 0, 350); // no longer with the search's timeout
}

TEST_F(FormCommsTest, LetsTheSearchStartFromWhatItShows) {
    Run([this](const Form &ui) {
        Enter(ui, "TextPort", "12");
        ui.Get<QComboBox>("ComboBaudRate").setCurrentIndex(0);
        ui.Get<QComboBox>("ComboParityStopBits").setCurrentIndex(1);
        WhenDialogOpens([this](QWidget &search) {
            ExpectMaster(12, 3, 0, 1, 120);
            search.close();
        });
        ui.Press("CommandSearch");
        ui.Press("CommandCancel");
    });
}

// The device of the number. -------------------------------------------------------------------------

TEST_F(FormCommsTest, ShowsTheDeviceBehindTheNumber) {
    SerialPorts::ChooseDevice(settings_, 4, QStringLiteral("/dev/null"));
    Run([this](const Form &ui) {
        const auto &device = ui.Get<DeviceBox>("ComboDevice");
        EXPECT_EQ(device.Device(), QStringLiteral("/dev/ttyS2"));
        Enter(ui, "TextPort", "4");
        EXPECT_EQ(device.Device(), QStringLiteral("/dev/null"));
        EXPECT_EQ(device.currentText(), QStringLiteral("/dev/null"));
        Enter(ui, "TextPort", "200");
        EXPECT_EQ(device.currentText(), QStringLiteral("/dev/ttyS199 (not connected)"));
        Enter(ui, "TextPort", "x");
        EXPECT_EQ(device.Device(), QString());
        EXPECT_FALSE(device.isEnabled());
        Enter(ui, "TextPort", "3");
        EXPECT_TRUE(device.isEnabled());
        ui.Press("CommandCancel");
    });
}

TEST_F(FormCommsTest, KeepsTheChosenDeviceOnOkAndTakesItBackOnCancel) {
    SerialPorts::ChooseDevice(settings_, 4, QStringLiteral("/dev/before"));
    for (const char *way : {"CommandCancel", "CommandOK"}) {
        Run([&](const Form &ui) {
            auto &device = ui.Get<DeviceBox>("ComboDevice");
            for (const char *port : {"3", "4"}) {
                Enter(ui, "TextPort", port);
                device.addItem(QStringLiteral("adapter"), QStringLiteral("/dev/adapter"));
                device.setFocus();
                QTest::keyClick(&device, Qt::Key_End);
                EXPECT_EQ(device.Device(), QStringLiteral("/dev/adapter"));
            }
            EXPECT_EQ(SerialPorts::DeviceOfPort(settings_, 4),
                      QStringLiteral("/dev/adapter")); // for a search
            ui.Press(way);
        });
        const bool kept = QString::fromLatin1(way) == QStringLiteral("CommandOK");
        EXPECT_EQ(SerialPorts::ChosenDevice(settings_, 3), kept ? QStringLiteral("/dev/adapter") : QString());
        EXPECT_EQ(SerialPorts::ChosenDevice(settings_, 4),
                  kept ? QStringLiteral("/dev/adapter") : QStringLiteral("/dev/before"));
    }
}

TEST_F(FormCommsTest, LooksForTheDevicesAgainWhenItsListOpens) {
    auto adapter = std::make_unique<QTemporaryFile>();
    ASSERT_TRUE(adapter->open());
    const QString path = adapter->fileName();
    SerialPorts::ChooseDevice(settings_, 3, path);
    Run([&](const Form &ui) {
        auto &device = ui.Get<DeviceBox>("ComboDevice");
        EXPECT_EQ(device.currentText(), path);
        adapter.reset(); // it is pulled out
        EXPECT_EQ(device.currentText(), path);
        QTest::mouseClick(&device, Qt::LeftButton);
        EXPECT_TRUE(WaitUntil([&] { return device.view()->isVisible(); }));
        EXPECT_EQ(device.currentText(), path + QStringLiteral(" (not connected)"));
        EXPECT_EQ(device.Device(), path);
        device.hidePopup();
        ui.Press("CommandCancel");
    });
}

TEST_F(FormCommsTest, OffersNoChoiceWhereTheEnvironmentHasMadeIt) {
    qputenv("ZTVLINK_PORT_3", "/dev/named");
    Run([](const Form &ui) {
        EXPECT_EQ(ui.Get<DeviceBox>("ComboDevice").Device(), QStringLiteral("/dev/named"));
        EXPECT_FALSE(ui.Enabled("ComboDevice"));
        ui.Press("CommandCancel");
    });
    qunsetenv("ZTVLINK_PORT_3");
}

// Even online, and with an invalid text in a box.
TEST_F(FormCommsTest, OffersItsHelp) {
    FormComms form(link_, *zentrova_, dialogs_, settings_, help_);
    form.show();
    form.activateWindow();
    EXPECT_TRUE(WaitUntil([&form] { return form.isActiveWindow(); }));
    form.EnableDisableCommSettings(true);
    Form(form).Press("CommandHelp");
    EXPECT_TRUE(help_.WasAskedFor(FormComms::HelpContextID, form));
    form.EnableDisableCommSettings(false);
    Enter(Form(form), "TextPort", "x");
    QTest::keyClick(&form, Qt::Key_F1);
    EXPECT_TRUE(help_.WasAskedFor(FormComms::HelpContextID, form));
}

} // namespace ztv
