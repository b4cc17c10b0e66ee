#include "model/ParamDefines.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/Printers.h"
#include "widgets/Colours.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <chrono>
#include <set>

namespace ztv {

TEST_F(SessionTest, ShowsALiveDistanceInBothAddressingModes) {
    for (const int addressing : {1, 0}) {
        SCOPED_TRACE(addressing);
        StartPolling(addressing);
        EXPECT_EQ(form_->AddressingMode(), addressing);
        EXPECT_EQ(Ui().Text("StatusText"), QStringLiteral("Communication Status:  Online"));
        std::set<std::string> distances;
        EXPECT_TRUE(WaitUntil([&] {
            distances.insert(Ui().Text("TextParam(6)").toStdString());
            return distances.size() >= 4;
        }));
        form_->GoOffline();
    }
}

TEST_F(SessionTest, ReadsEveryRegisterOfTheSensorInBothAddressingModes) {
    for (const int addressing : {1, 0}) {
        SCOPED_TRACE(addressing);
        StartSensor(addressing);
        sensor_->SetRegister(ParamDefines::NearDistance, 4321);
        sensor_->SetRegister(ParamDefines::TransmitDelayLow, 65000);
        Start();
        GoOnline();
        EXPECT_TRUE(WaitForPolls(1));
        const std::set<int> moving{31, 32, 35, 38, 45, 46, 47, 48, 60, 61, 79}; // measurements
        // In mode 0 the poll ends one row before the last.
        const int last = addressing == 1 ? 95 : 94;
        for (int n = 1; n <= last; ++n) {
            if (moving.count(n) == 0) {
                EXPECT_EQ(Value(static_cast<std::int16_t>(n)), sensor_->Register(n)) << n;
            }
        }
        EXPECT_EQ(Value(ParamDefines::TransmitDelayLow), 65000);
        form_->GoOffline();
    }
}

TEST_F(SessionTest, FollowsTheLinkWithItsControls) {
    StartPolling();
    EXPECT_TRUE(Ui().Get<QAction>("mnuOnline").isChecked());
    EXPECT_TRUE(Ui().Enabled("mnuReinit"));
    EXPECT_FALSE(Ui().Enabled("Toolbar1(Online)"));
    Ui().Choose("Toolbar1(Offline)");
    EXPECT_FALSE(Ui().Get<QAction>("mnuOnline").isChecked());
    EXPECT_TRUE(Ui().Enabled("Toolbar1(Online)"));
    EXPECT_EQ(Ui().Text("StatusText"), QStringLiteral("Communication Status: Offline"));
    WhenDialogOpens([](QWidget &dialog) { Form(dialog).Press("Read"); });
    Ui().Choose("mnuOnline");
    EXPECT_TRUE(WaitForPolls(1));
    Ui().Choose("mnuOnline");
    EXPECT_FALSE(form_->Link().PortIsOpen());
}

TEST_F(SessionTest, WritesItsTableToTheSensorOnAWriteConnect) {
    for (const int addressing : {1, 0}) {
        SCOPED_TRACE(addressing);
        StartSensor(addressing);
        Start();
        Write(ParamDefines::NearDistance, 2222);
        Write(ParamDefines::FarDistance, 33333);
        Write(ParamDefines::AddressingMode, addressing);
        dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
        GoOnline("Write");
        EXPECT_TRUE(WaitForPolls(2));
        EXPECT_EQ(sensor_->Register(ParamDefines::NearDistance), 2222);
        EXPECT_EQ(sensor_->Register(ParamDefines::FarDistance), 33333);
        EXPECT_EQ(Value(ParamDefines::NearDistance), 2222);
        EXPECT_EQ(form_->AddressingMode(), addressing);
        form_->GoOffline();
    }
}

TEST_F(SessionTest, SaysSoWhenTheSensorRefusesADownload) {
    StartSensor();
    Start();
    Write(ParamDefines::NearDistance, 50000); // beyond its limit
    dialogs_.ExpectNotice(QStringLiteral("Error downloading Parameters"));
    GoOnline("Write");
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(Value(ParamDefines::NearDistance), sensor_->Register(ParamDefines::NearDistance));
}

TEST_F(SessionTest, SendsEachWriteOnceAndInOrder) {
    StartPolling();
    sensor_->ClearRecords();
    Write(ParamDefines::NearDistance, 1500);
    Write(ParamDefines::NearDistance, 1500);
    Write(ParamDefines::FarDistance, 30000);
    Write(ParamDefines::MaxRange, 41000);
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), (Writes{{28, 1500}, {29, 30000}, {25, 41000}}));
    EXPECT_EQ(Value(ParamDefines::MaxRange), 41000);
    EXPECT_EQ(sensor_->Register(ParamDefines::MaxRange), 41000);
}

TEST_F(SessionTest, BringsBackTheSensorsValueAfterARefusedWrite) {
    StartPolling();
    const int before = sensor_->Register(ParamDefines::NearDistance);
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    Write(ParamDefines::NearDistance, 50000);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(Value(ParamDefines::NearDistance), before);
}

TEST_F(SessionTest, FollowsTheSensorToANewAddressBaudRateAndParity) {
    const std::pair<std::int16_t, std::int32_t> changes[] = {
        {ParamDefines::NetworkAddress, 17}, {ParamDefines::BaudRateCode, 3},
        {ParamDefines::ParityStopCode, 3},  {ParamDefines::ParityStopCode, 0},
        {ParamDefines::BaudRateCode, 0},    {ParamDefines::BaudRateCode, 4},
    };
    StartPolling();
    for (const auto &[tag, value] : changes) {
        SCOPED_TRACE(testing::Message() << tag << " := " << value);
        Write(tag, value);
        EXPECT_TRUE(
            WaitUntil([&, parameter = tag] { return !form_->Zentrova().ParamWritePending(parameter); }));
        EXPECT_TRUE(WaitForPolls(2));
        EXPECT_EQ(sensor_->Register(tag), value);
    }
    EXPECT_EQ(form_->ModbusAddress(), 17);
    EXPECT_EQ(form_->BaudRate(), 4);
    EXPECT_EQ(form_->ParityStop(), 0);
}

TEST_F(SessionTest, FollowsTheSensorToAnotherAddressingMode) {
    StartPolling();
    sensor_->SetRegister(ParamDefines::NearDistance, 4321);
    Write(ParamDefines::AddressingMode, 0);
    EXPECT_TRUE(WaitUntil([this] { return form_->AddressingMode() == 0; }));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Value(ParamDefines::NearDistance), 4321);
    Write(ParamDefines::NearDistance, 4322);
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(sensor_->Register(ParamDefines::NearDistance), 4322);
}

TEST_F(SessionTest, SavesInTheSensor) {
    StartPolling();
    sensor_->ClearRecords();
    dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
    Ui().Choose("Toolbar1(Save ZTV)");
    Ui().Choose("Toolbar1(Save ZTV)"); // between two polls: the table has 1 already
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(WaitUntil([this] { return Value(ParamDefines::SaveCommand) == 0; }));
    EXPECT_EQ(sensor_->Writes(), (Writes{{1, 1}}));
}

TEST_F(SessionTest, PollsOnBehindABox) {
    StartPolling();
    dialogs_.Expect(QStringLiteral("Parameters saved successfully!"), BoxIcon::Exclamation, BoxButtons::Ok,
                    BoxAnswer::Ok, [this] {
                        EXPECT_TRUE(WaitForPolls(2));
                        Write(ParamDefines::NearDistance,
                              1700); // a write while the box is open, without a deadlock
                        EXPECT_TRUE(WaitForPolls(1));
                    });
    Ui().Choose("Toolbar1(Save ZTV)");
    EXPECT_TRUE(
        WaitUntil([this] { return dialogs_.AllCame() && Value(ParamDefines::NearDistance) == 1700; }));
    EXPECT_EQ(sensor_->Register(ParamDefines::NearDistance), 1700);
}

TEST_F(SessionTest, ReinitialisesTheSensor) {
    StartPolling();
    Write(ParamDefines::NearDistance, 1500);
    EXPECT_TRUE(WaitForPolls(1));
    dialogs_.Expect(
        QStringLiteral("Are you sure? This will reset all parameters back to the factory default values."),
        BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::Yes);
    Ui().Choose("mnuReinit");
    EXPECT_TRUE(WaitUntil([this] { return Value(ParamDefines::NearDistance) == 1200; }));
    EXPECT_TRUE(WaitUntil([this] { return Value(ParamDefines::ReinitCommand) == 0; }));
}

TEST_F(SessionTest, GoesOfflineWhenTheSensorIsSentToItsBootLoader) {
    StartPolling();
    Write(ParamDefines::ReinitCommand, 99);
    EXPECT_TRUE(WaitUntil([this] { return !form_->Link().PortIsOpen(); }));
    EXPECT_EQ(Ui().Text("StatusText"), QStringLiteral("Communication Status: Offline"));
    EXPECT_TRUE(Ui().Enabled("Toolbar1(Online)"));
    EXPECT_TRUE(sensor_->InBootMode());
}

TEST_F(SessionTest, KeepsTheValuesAndCountsTheTimeoutsOfASilentSensor) {
    StartPolling();
    const QString distance = Ui().Text("TextParam(6)");
    sensor_->Execute(QStringLiteral("mute on"));
    EXPECT_TRUE(WaitForStatus("Timeout"));
    EXPECT_TRUE(WaitUntil([this] { return form_->TimeoutCount() >= 3; }));
    EXPECT_EQ(form_->CrcErrorCount(), 0);
    EXPECT_TRUE(form_->Link().PortIsOpen());
    EXPECT_TRUE(Ui().Get<QAction>("mnuOnline").isChecked());
    EXPECT_FALSE(distance.isEmpty());
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitForStatus(" Online"));
}

TEST_F(SessionTest, CountsCrcErrors) {
    StartPolling();
    sensor_->Execute(QStringLiteral("corrupt 1"));
    EXPECT_TRUE(WaitUntil([this] { return form_->CrcErrorCount() >= 2; }));
    sensor_->Execute(QStringLiteral("corrupt 0"));
    EXPECT_TRUE(WaitForStatus(" Online"));
}

TEST_F(SessionTest, CountsOnAfterTheCommunicationsDialogHasClosed) {
    StartPolling();
    sensor_->Execute(QStringLiteral("corrupt 1"));
    EXPECT_TRUE(WaitUntil([this] { return form_->CrcErrorCount() >= 2; }));
    WhenDialogOpens([this](QWidget &dialog) {
        const Form ui(dialog);
        ui.Press("CommandReset");
        EXPECT_EQ(form_->CrcErrorCount(), 0);
        EXPECT_TRUE(WaitUntil([&ui] { return ui.Text("LabelCrcErrors(1)").toInt() >= 1; }));
        ui.Press("CommandCancel");
    });
    Ui().Choose("mnuCommunications");
    const int atClose = form_->CrcErrorCount();
    EXPECT_TRUE(WaitUntil([&] { return form_->CrcErrorCount() >= atClose + 3; }));
    sensor_->Execute(QStringLiteral("corrupt 0"));
    EXPECT_TRUE(WaitForStatus(" Online"));
}

TEST_F(SessionTest, ShowsTheWordsOfAnException) {
    StartPolling();
    sensor_->Execute(QStringLiteral("exception 6"));
    EXPECT_TRUE(WaitForStatus("Negative Acknowledge"));
    sensor_->Execute(QStringLiteral("exception 0"));
    EXPECT_TRUE(WaitForStatus(" Online"));
    EXPECT_EQ(form_->TimeoutCount(), 0);
}

TEST_F(SessionTest, ProbesUntilTheSensorWakes) {
    StartSensor();
    sensor_->Execute(QStringLiteral("mute on"));
    Start();
    GoOnline();
    EXPECT_TRUE(WaitForStatus("Timeout"));
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(form_->TimeoutCount(), 0);
}

TEST_F(SessionTest, PollsAgainByItselfAfterAnUnplug) {
    StartPolling();
    sensor_->Execute(QStringLiteral("unplug"));
    EXPECT_TRUE(WaitForStatus("Read Error"));
    EXPECT_TRUE(form_->Link().PortIsOpen());
    int rounds = 0;
    QObject::connect(
        &form_->Link().Mbaxp1(), &Mbaxp::TransactionFailed, form_.get(),
        [&rounds](LinkTransaction, LinkStatus status) { rounds += status == LinkStatus::ReadError ? 1 : 0; });
    EXPECT_TRUE(WaitUntil([&rounds] { return rounds >= 3; }));
    sensor_->Execute(QStringLiteral("plug"));
    EXPECT_TRUE(WaitForStatus(" Online"));
    EXPECT_TRUE(WaitForPolls(1));
}

TEST_F(SessionTest, SaysSoWhenThePortIsNotThere) {
    qputenv("ZTVLINK_PORT_1", "/dev/there-is-no-such-port");
    Start();
    dialogs_.ExpectNotice(
        QStringLiteral("Error 47. The com port could not be opened.  The port does not exist or is "
                       "in use by another application."));
    GoOnline();
    EXPECT_FALSE(Ui().Get<QAction>("mnuOnline").isChecked());
    EXPECT_TRUE(Ui().Enabled("Toolbar1(Online)"));
}

TEST_F(SessionTest, KeepsTheLineSettingsThatItFollowedForTheNextRun) {
    StartPolling();
    Write(ParamDefines::NetworkAddress, 5);
    EXPECT_TRUE(WaitUntil([this] { return form_->ModbusAddress() == 5; }));
    dialogs_.Expect(
        QStringLiteral("The currently open file has been changed. Do you want to save the changes?"),
        BoxIcon::Question, BoxButtons::YesNoCancel, BoxAnswer::No);
    form_->close();
    Start();
    EXPECT_EQ(form_->ModbusAddress(), 5);
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
}

TEST_F(SessionTest, FindsASensorWhoseSettingsNobodyRemembersAndGoesOnline) {
    StartPolling();
    for (const auto &[tag, value] : Writes{{65, 9}, {66, 3}, {67, 3}}) {
        Write(static_cast<std::int16_t>(tag), value);
        EXPECT_TRUE(WaitForPolls(2));
    }
    form_->GoOffline();
    settings_.Clear();
    Start(); // at the settings of a fresh installation
    WhenDialogOpens([](QWidget &comms) {
        WhenDialogOpens([](QWidget &search) {
            const Form ui(search);
            ui.Press("OptionAddressRange(1)");
            ui.Get<QLineEdit>("TextAddressRange(0)").setText(QStringLiteral("8"));
            ui.Get<QLineEdit>("TextAddressRange(1)").setText(QStringLiteral("9"));
            ui.Get<QCheckBox>("CheckVaryCommSettings").setChecked(true);
            ui.Press("CommandStart");
            auto &results = ui.Get<QTreeWidget>("ListViewResults");
            EXPECT_TRUE(WaitUntil([&] { return results.topLevelItemCount() == 1; }));
            ui.Press("CommandStop");
            EXPECT_TRUE(WaitUntil([&] { return ui.Enabled("CommandStart"); }));
            results.setCurrentItem(results.topLevelItem(0));
            ui.Press("CommandClose");
        });
        const Form ui(comms);
        ui.Press("CommandSearch");
        EXPECT_EQ(ui.Text("TextPort"), QStringLiteral("1"));
        EXPECT_EQ(ui.Text("TextModbusAddress"), QStringLiteral("9"));
        EXPECT_EQ(ui.Get<QComboBox>("ComboBaudRate").currentText(), QStringLiteral("19200"));
        EXPECT_EQ(ui.Get<QComboBox>("ComboParityStopBits").currentText(), QStringLiteral("O1"));
        ui.Press("CommandOK");
    });
    Ui().Choose("mnuCommunications");
    EXPECT_EQ(form_->ModbusAddress(), 9);
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
}

TEST_F(SessionTest, WritesADraggedThresholdOnce) {
    StartPolling();
    sensor_->ClearRecords();
    auto &marker = Ui().Get<QWidget>("PicRelay(3)");
    QTest::mousePress(&marker, Qt::LeftButton, {}, QPoint(5, 40));
    for (const int place : {150, 180, 200}) {
        QTest::mouseMove(&marker, QPoint(place - marker.x(), 40));
        Settle();
    }
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(sensor_->Writes(), Writes());
    QTest::mouseRelease(&marker, Qt::LeftButton, {}, QPoint(5, 40));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), (Writes{{59, 13693}})); // 2997 twips: by 73 pixels from 4092.4
    EXPECT_EQ(Value(59), 13693);
}

TEST_F(SessionTest, ShowsTheChartOfTheSensorAfterARefusedThreshold) {
    StartPolling();
    auto &marker = Ui().Get<QWidget>("PicRelay(3)");
    const int before = marker.x();
    QTest::mousePress(&marker, Qt::LeftButton, {}, QPoint(5, 40));
    QTest::mouseMove(&marker, QPoint(-75, 40));
    EXPECT_EQ(marker.x(), before - 80);
    sensor_->Faults().exception = 4;
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    QTest::mouseRelease(&marker, Qt::LeftButton, {}, QPoint(5, 40));
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    sensor_->Faults().exception = 0;
    EXPECT_TRUE(WaitUntil([&] { return marker.x() == before; }));
    EXPECT_EQ(Value(59), 26400);
}

TEST_F(SessionTest, ShowsTheChartOfTheSensorThatSomebodyElseSets) {
    StartPolling();
    sensor_->ClearRecords();
    auto &marker = Ui().Get<QWidget>("PicRelay(0)");
    const int before = marker.x();
    sensor_->SetRegister(ParamDefines::Relay1OnThreshold, 30000);
    sensor_->SetRegister(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
    EXPECT_TRUE(WaitUntil([&] { return marker.x() > before && !Ui().Enabled("TextParam(3)"); }));
    sensor_->SetRegister(ParamDefines::ReinitCommand, ParamDefines::FactoryDefaults);
    EXPECT_TRUE(WaitUntil([&] { return marker.x() == before && Ui().Enabled("TextParam(3)"); }));
    EXPECT_EQ(sensor_->Writes(), Writes());
}

TEST_F(SessionTest, WritesTheNearDistanceBehindAFarDistanceInHyperbolicMode) {
    StartPolling();
    Write(ParamDefines::AnalogOutputMode, 2);
    form_->ConfigureBasicTab();
    EXPECT_TRUE(WaitForPolls(2));
    sensor_->ClearRecords();
    form_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    auto &box = Ui().Get<QLineEdit>("TextParam(4)");
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_2);
    QTest::keyClicks(&Ui().Get<QLineEdit>("Text1"), QStringLiteral("0.5\""));
    QTest::keyClick(&Ui().Get<QLineEdit>("Text1"), Qt::Key_Return);
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), (Writes{{29, 2050}, {28, 1000}}));
    EXPECT_EQ(Ui().Text("TextParam(3)"), QStringLiteral("10.00\""));
}

// The state of the values. ---------------------------------------------------------------------------

TEST_F(SessionTest, ShowsMeasuredValuesAsPresentOnlyWhileTheyAre) {
    StartSensor();
    sensor_->HoldTarget(9000);
    Start();
    const auto shown = [this] {
        const QPalette palette = Ui().Get<QLineEdit>("TextParam(6)").palette();
        return palette.color(QPalette::Disabled, QPalette::Text);
    };
    const QColor black = form_->palette().color(QPalette::Text);
    const QColor grey = Colours::LegibleDisabledText(form_->palette());
    const auto pulseRests = [this] {
        const QImage before = Ui().Get<QWidget>("FrameZentrova").grab().toImage();
        int ticks = 0;
        const auto connection =
            QObject::connect(&Ui().Get<QTimer>("Timer1"), &QTimer::timeout, [&ticks] { ++ticks; });
        EXPECT_TRUE(WaitUntil([&ticks] { return ticks >= 4; }));
        QObject::disconnect(connection);
        return Ui().Get<QWidget>("FrameZentrova").grab().toImage() == before;
    };
    EXPECT_EQ(shown(), grey);
    EXPECT_TRUE(Ui().Get<QWidget>("FrameTarget").isHidden()) << "no echo was ever heard";
    EXPECT_TRUE(pulseRests());

    GoOnline();
    EXPECT_TRUE(WaitUntil([&] { return form_->Link().State() == ValueState::Live; }));
    EXPECT_EQ(shown(), black);
    EXPECT_EQ(Ui().Text("TextParam(6)"), QStringLiteral("90.00\""));
    EXPECT_TRUE(WaitUntil([this] { return !Ui().Get<QWidget>("FrameTarget").isHidden(); }));
    EXPECT_FALSE(pulseRests());

    QElapsedTimer sincePulled;
    sincePulled.start();
    sensor_.reset(); // the cable
    EXPECT_TRUE(WaitUntil([&] { return shown() == grey; }));
    EXPECT_LT(sincePulled.elapsed(), 300);
    EXPECT_EQ(Ui().Text("TextParam(6)"), QStringLiteral("90.00\"")) << "the last values stand";
    EXPECT_FALSE(Ui().Get<QWidget>("FrameTarget").isHidden());
    EXPECT_TRUE(WaitUntil(pulseRests));

    StartSensor();
    sensor_->HoldTarget(9000);
    EXPECT_TRUE(WaitUntil([&] { return shown() == black; })) << "without a press";
    Ui().Choose("Toolbar1(Offline)");
    EXPECT_EQ(shown(), grey);
    EXPECT_GE(form_->Link().AgeOfValues(), std::chrono::milliseconds(0));
}

TEST_F(SessionTest, ShowsTheStateOnThePageThatComesIntoView) {
    StartPolling();
    sensor_->HoldTarget(9000);
    EXPECT_TRUE(WaitForPolls(2));
    QTabBar &bar = *Ui().Get<QTabWidget>("TabStrip1").tabBar();
    const auto goTo = [&bar](int index) {
        QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(index).center());
        Settle();
    };
    const auto darkest = [this] {
        const QImage picture = Ui().Get<QWidget>("LabelLargeLength").grab().toImage();
        int lightness = 255;
        for (int x = 0; x < picture.width(); ++x) {
            lightness = std::min(lightness, picture.pixelColor(x, picture.height() / 2).lightness());
        }
        return lightness;
    };
    goTo(3);
    EXPECT_LT(darkest(), 30);
    goTo(0);
    Ui().Choose("Toolbar1(Offline)");
    goTo(3);
    EXPECT_GT(darkest(), 90);
    goTo(0);
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
    goTo(3);
    EXPECT_LT(darkest(), 30);
}

TEST_F(SessionTest, ASilentSensorsValuesTurnStaleOnceAndLiveWithTheNextReply) {
    StartPolling();
    int changes = 0;
    QObject::connect(&form_->Link(), &LinkSession::ValueStateChanged, [&changes] { ++changes; });
    sensor_->Faults().mute = true;
    EXPECT_TRUE(WaitUntil([this] { return form_->Link().State() == ValueState::Stale; }));
    EXPECT_GE(form_->Link().AgeOfValues(), std::chrono::milliseconds(1000));
    EXPECT_LT(form_->Link().AgeOfValues(), std::chrono::milliseconds(1200));
    EXPECT_TRUE(WaitForStatus("Timeout"));
    sensor_->Faults().mute = false;
    EXPECT_TRUE(WaitUntil([this] { return form_->Link().State() == ValueState::Live; }));
    EXPECT_EQ(changes, 2);
}

} // namespace ztv
