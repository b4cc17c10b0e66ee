#include "link/StoredComm.h"
#include "model/ParamDefines.h"
#include "shell/StatusBarCells.h"
#include "shell/StoredSettings.h"
#include "tabs/TabTable.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/AllForms.h"
#include "tests/helpers/Printers.h"

#include <QAction>
#include <QElapsedTimer>
#include <QImage>
#include <QListWidget>
#include <QPushButton>
#include <QStatusBar>
#include <QToolButton>
#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ztv {

// The status bar on a real line.
class StatusBarTest : public SessionTest {
protected:
    StatusCellButton &Cell(const char *name) const { return Ui().Get<StatusCellButton>(name); }
    QString Text(const char *name) const {
        const StatusCellButton &cell = Cell(name);
        return cell.isVisible() ? cell.text() : QString();
    }
    QString Chip() const { return Text("CellState"); }
    bool WaitForText(const char *name, const char *text, int deadlineMs = 10'000) const {
        const bool came = WaitUntil([&] { return Text(name) == QString::fromUtf8(text); }, deadlineMs);
        EXPECT_EQ(Text(name), QString::fromUtf8(text));
        return came;
    }
    bool WaitForChip(const char *text) const { return WaitForText("CellState", text); }

    // The cells in view, from left to right.
    QStringList InView() const {
        std::vector<const StatusCellButton *> cells;
        for (const StatusCellButton *cell : form_->findChildren<StatusCellButton *>()) {
            if (cell->isVisible()) {
                cells.push_back(cell);
            }
        }
        std::ranges::sort(cells, {}, [](const StatusCellButton *cell) { return cell->x(); });
        QStringList texts;
        for (const StatusCellButton *cell : cells) {
            texts << cell->text();
        }
        return texts;
    }

    void Confirm(std::int16_t tag, std::int32_t value) {
        Write(tag, value);
        EXPECT_TRUE(WaitUntil([&] { return !form_->Zentrova().ParamWritePending(tag); }));
    }
    void Save() {
        dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
        Ui().Choose("Toolbar1(Save ZTV)");
        EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    }
    void GoOffline() {
        Ui().Choose("Toolbar1(Offline)");
        Settle();
    }
    std::size_t Unsaved() const { return form_->Link().Unsaved().Count(); }
    QString SaveToolTip() const { return Ui().Get<QAction>("Toolbar1(Save ZTV)").toolTip(); }

    // Opens the dialog of a press and returns its name.
    QString DialogOf(const char *cell) {
        QString name;
        WhenDialogOpens([&](QWidget &dialog) {
            name = dialog.objectName();
            dialog.close();
        });
        Ui().Press(cell);
        EXPECT_TRUE(WaitUntil([&] { return !name.isEmpty(); }));
        return name;
    }
};

// The state of the values. --------------------------------------------------------------------------

TEST_F(StatusBarTest, TheChipFollowsTheLink) {
    StartSensor();
    Start();
    EXPECT_EQ(Chip(), QStringLiteral("OFFLINE"));
    sensor_->Execute(QStringLiteral("mute on"));
    GoOnline();
    EXPECT_TRUE(WaitForChip("NOT READ"));
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitForChip("LIVE 0.2 s"));
    sensor_->Execute(QStringLiteral("mute on"));
    EXPECT_TRUE(WaitForChip("STALE 1 s"));
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitForChip("LIVE 0.2 s"));
    sensor_->Execute(QStringLiteral("unplug"));
    EXPECT_TRUE(WaitUntil([this] { return Chip().startsWith(QStringLiteral("STALE ")); }));
    sensor_->Execute(QStringLiteral("plug"));
    EXPECT_TRUE(WaitForChip("LIVE 0.2 s"));
    GoOffline();
    EXPECT_EQ(Chip(), QStringLiteral("OFFLINE"));
}

TEST_F(StatusBarTest, TheChipSaysThatValuesAreHeld) {
    StartPolling();
    sensor_->Execute(QStringLiteral("addressing 0"));
    EXPECT_TRUE(WaitForChip("HELD"));
    sensor_->Execute(QStringLiteral("addressing 1"));
    EXPECT_TRUE(WaitForChip("LIVE 0.2 s"));
}

TEST_F(StatusBarTest, TheTimeBetweenPollsIsThatOfTheLine) {
    StartPolling();
    QElapsedTimer clock;
    clock.start();
    std::vector<qint64> replies; // as the line has them
    QObject::connect(&form_->Link().Mbaxp1().Tap(), &LineTap::FrameSeen, form_.get(),
                     [&](const LineFrame &frame) {
                         if (frame.kind == LineFrame::Kind::Reply && frame.status == 0) {
                             replies.push_back(clock.elapsed());
                         }
                     });
    int compared = 0;
    const auto compare = [&] {
        if (replies.size() < 2 || form_->Link().State() != ValueState::Live) {
            return;
        }
        const double shown = Chip().section(u' ', 1, 1).toDouble();
        const double real = static_cast<double>(replies.back() - replies[replies.size() - 2]) / 1000;
        EXPECT_LE(std::abs(shown - real), 0.1) << Chip().toStdString();
        ++compared;
    };
    QObject::connect(&form_->Link(), &LinkSession::TableRefreshed, form_.get(), compare);
    for (const int silence : {0, 300, 600}) { // shorter than those that make values stale
        sensor_->Execute(QStringLiteral("mute on"));
        QElapsedTimer wait;
        wait.start();
        EXPECT_TRUE(WaitUntil([&] { return wait.hasExpired(silence); }));
        sensor_->Execute(QStringLiteral("mute off"));
        EXPECT_TRUE(WaitForPolls(3));
    }
    EXPECT_GE(compared, 8);
}

TEST_F(StatusBarTest, TheTimeBetweenPollsFollowsTheBaudRate) {
    sim::SensorOptions options;
    options.presets = ShippedPresetsFolder() + QStringLiteral("/Presets.fil");
    options.baud = 2;
    options.parity = 2;
    options.address = 17;
    sensor_.emplace(options);
    ASSERT_EQ(sensor_->Start(), QString());
    qputenv("ZTVLINK_PORT_1", sensor_->Path().toLocal8Bit());
    ASSERT_TRUE(WriteCommSettings(settings_, {.port = 1, .baud = 2, .parityStop = 2, .address = 17}));
    Start();
    GoOnline();
    EXPECT_TRUE(WaitForChip("LIVE 0.5 s"));
    form_->resize(1900, 800);
    Settle();
    EXPECT_EQ(Text("CellAddress"), QStringLiteral("Addr 17"));
    EXPECT_EQ(Text("CellLineSetting"), QStringLiteral("9600 E1"));
}

TEST_F(StatusBarTest, TheAgeOfStaleValuesIsRightToATenthOfASecond) {
    StartPolling();
    QElapsedTimer sinceReply;
    QObject::connect(&form_->Link().Mbaxp1().Tap(), &LineTap::FrameSeen, form_.get(),
                     [&](const LineFrame &frame) {
                         if (frame.kind == LineFrame::Kind::Reply && frame.status == 0) {
                             sinceReply.start();
                         }
                     });
    EXPECT_TRUE(WaitForPolls(1));
    sensor_->Execute(QStringLiteral("mute on"));
    for (int second = 1; second <= 4; ++second) {
        EXPECT_TRUE(WaitForChip(qPrintable(QStringLiteral("STALE %1 s").arg(second))));
        EXPECT_GE(sinceReply.elapsed(), 1000 * second - 5);
        EXPECT_LT(sinceReply.elapsed(), 1000 * second + 100);
    }
}

// The other facts. ----------------------------------------------------------------------------------

TEST_F(StatusBarTest, NamesTheSensorOnceItWasRead) {
    StartSensor();
    Start();
    form_->resize(1900, 800);
    Settle();
    EXPECT_EQ(Text("CellSensor"), QString());
    EXPECT_EQ(Text("CellEcho"), QString());
    GoOnline();
    EXPECT_TRUE(WaitForText("CellSensor", "#10427 FW 2.14"));
    sensor_->Execute(QStringLiteral("set 79 64"));
    EXPECT_TRUE(WaitForText("CellEcho", "Echo 64 %"));
    sensor_->Execute(QStringLiteral("set 38 0"));
    EXPECT_TRUE(WaitForText("CellEcho", "No echo"));
    GoOffline();
    EXPECT_EQ(Cell("CellSensor").Cell().tone, StatusCell::Tone::Dimmed);
    const QString file = configuration_.filePath(QStringLiteral("roll.ztv"));
    ASSERT_FALSE(ClassZentrova(ShippedPresetsFolder()).SaveFile(file));
    dialogs_.ExpectOpenFile(file);
    Ui().Choose("Toolbar1(Open File)");
    EXPECT_TRUE(WaitForText("CellSensor", ""));
    EXPECT_EQ(Text("CellFile"), QStringLiteral("roll.ztv"));
}

TEST_F(StatusBarTest, WarnsOfAnOutputThatTheSensorDoesNotMoveItself) {
    StartPolling();
    EXPECT_EQ(Text("CellOutputForced"), QString());
    sensor_->Execute(QStringLiteral("set 39 0"));
    EXPECT_TRUE(WaitForText("CellOutputForced", "output forced"));
    sensor_->Execute(QStringLiteral("set 39 2"));
    EXPECT_TRUE(WaitForText("CellOutputForced", ""));
    sensor_->Execute(QStringLiteral("set 39 0"));
    EXPECT_TRUE(WaitForText("CellOutputForced", "output forced"));
    GoOffline();
    Write(ParamDefines::AnalogOutputMode, ParamDefines::LinearMode);
    Settle();
    EXPECT_EQ(Text("CellOutputForced"), QStringLiteral("output forced")) << "in the sensor";
}

TEST_F(StatusBarTest, RatesTheLineByTheLastHundredExchanges) {
    StartPolling();
    EXPECT_EQ(Text("CellLineQuality"), QStringLiteral("Line 100 %"));
    sensor_->Execute(QStringLiteral("corrupt 1"));
    EXPECT_TRUE(WaitUntil([this] { return Cell("CellLineQuality").Cell().tone == StatusCell::Tone::Alarm; }));
    sensor_->Execute(QStringLiteral("corrupt 0"));
    const QString bad = Text("CellLineQuality");
    EXPECT_TRUE(WaitUntil([&] { return Text("CellLineQuality") > bad; })) << "it recovers";
    GoOffline();
    EXPECT_EQ(Text("CellLineQuality"), QString());
    GoOnline();
    EXPECT_TRUE(WaitForText("CellLineQuality", "Line 100 %"));
}

TEST_F(StatusBarTest, ASensorThatRejectsARequestHasAnsweredOverAGoodLine) {
    StartPolling();
    sensor_->Execute(QStringLiteral("exception 4"));
    EXPECT_TRUE(WaitForStatus("Acknowledge"));
    EXPECT_EQ(form_->Link().Quality().Percent(), 100);
    sensor_->Execute(QStringLiteral("exception 0"));
}

TEST_F(StatusBarTest, AnAdapterThatIsGoneIsNoExchange) {
    StartPolling();
    sensor_->Execute(QStringLiteral("unplug"));
    EXPECT_TRUE(WaitForStatus("Read Error"));
    const std::size_t exchanges = form_->Link().Quality().Count();
    int failures = 0;
    QObject::connect(&form_->Link().Mbaxp1(), &Mbaxp::TransactionFailed, form_.get(), [&] { ++failures; });
    EXPECT_TRUE(WaitUntil([&] { return failures >= 3; }));
    EXPECT_EQ(form_->Link().Quality().Count(), exchanges);
    EXPECT_EQ(form_->Link().Quality().Percent(), 100);
}

TEST_F(StatusBarTest, AWriteThatIsNotSentIsNoExchange) {
    StartPolling();
    sensor_->Execute(QStringLiteral("addressing 0"));
    EXPECT_TRUE(WaitForChip("HELD"));
    int ended = 0;
    const auto count = [&] { ++ended; };
    QObject::connect(&form_->Link().Mbaxp1(), &Mbaxp::TransactionDone, form_.get(), count);
    const std::size_t before = form_->Link().Quality().Count();
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    Write(ParamDefines::FarDistance, 30000);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(form_->Link().Quality().Count(), before + static_cast<std::size_t>(ended));
    EXPECT_EQ(form_->Link().Quality().Percent(), 100);
}

TEST_F(StatusBarTest, TheFileHasAMarkWhileThereAreChangesThatNoFileHas) {
    Start();
    form_->resize(1366, 700);
    Settle();
    EXPECT_EQ(Text("CellFile"), QStringLiteral("No file"));
    Write(ParamDefines::FarDistance, 30000);
    EXPECT_EQ(Text("CellFile"), QStringLiteral("No file *"));
    dialogs_.ExpectSaveFile(configuration_.filePath(QStringLiteral("machine 7.ztv")));
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Press("CellFile");
    EXPECT_TRUE(WaitForText("CellFile", "machine 7.ztv"));
    Write(ParamDefines::FarDistance, 31000);
    EXPECT_TRUE(WaitForText("CellFile", "machine 7.ztv *"));
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Choose("mnuFileSave(0)");
    EXPECT_TRUE(WaitForText("CellFile", "machine 7.ztv"));
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("machine 7.ztv - ") + ApplicationTitle());
}

TEST_F(StatusBarTest, AFilesNameIsNeverTakenForMarkup) {
    Start();
    form_->resize(1366, 700);
    const QString file = configuration_.filePath(QStringLiteral("<b>roll.ztv"));
    dialogs_.ExpectSaveFile(file);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Press("CellFile");
    EXPECT_TRUE(WaitForText("CellFile", "<b>roll.ztv"));
    EXPECT_TRUE(Cell("CellFile").toolTip().contains(QStringLiteral("&lt;b&gt;roll.ztv")));
}

// Changes that the sensor forgets. --------------------------------------------------------------------------

TEST_F(StatusBarTest, CountsConfirmedWritesUntilTheSave) {
    StartPolling();
    EXPECT_EQ(Text("CellNotSaved"), QString());
    EXPECT_EQ(SaveToolTip(), QStringLiteral("Save changes in the ZTV500-100"));
    Confirm(ParamDefines::FarDistance, 30000);
    EXPECT_TRUE(WaitForText("CellNotSaved", "1 not saved"));
    Confirm(ParamDefines::NearDistance, 1300);
    Confirm(ParamDefines::FarDistance, 31000);
    EXPECT_TRUE(WaitForText("CellNotSaved", "2 not saved"));
    EXPECT_EQ(SaveToolTip(),
              QStringLiteral("Save changes in the ZTV500-100\n2 changes not saved in the sensor"));
    EXPECT_EQ(Ui().Get<QToolButton>("Save ZTV").accessibleDescription(),
              QStringLiteral("2 changes not saved in the sensor"));
    Confirm(ParamDefines::NearDistance, 1200);
    EXPECT_TRUE(WaitForText("CellNotSaved", "1 not saved"));
    GoOffline();
    GoOnline();
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Ui().Get<QToolButton>("Save ZTV").accessibleDescription(),
              QStringLiteral("1 change not saved in the sensor"));
    EXPECT_EQ(Unsaved(), 1U);
    Save();
    EXPECT_EQ(Text("CellNotSaved"), QString());
    EXPECT_EQ(SaveToolTip(), QStringLiteral("Save changes in the ZTV500-100"));
    EXPECT_EQ(Ui().Get<QToolButton>("Save ZTV").accessibleDescription(), QString());
    sensor_->Execute(QStringLiteral("reset"));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Value(ParamDefines::FarDistance), 31000) << "the sensor has kept it";
}

TEST_F(StatusBarTest, CountsASignedRowThatIsWrittenBack) {
    StartPolling();
    constexpr std::int16_t distanceOffset = 26;
    Confirm(distanceOffset, -500);
    EXPECT_EQ(form_->Link().Unsaved().Rows(), (std::vector<UnsavedWrites::Row>{{distanceOffset, 0, -500}}));
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(Unsaved(), 1U);
    Confirm(distanceOffset, 0);
    EXPECT_EQ(Unsaved(), 0U);
}

TEST_F(StatusBarTest, ARejectedWriteDoesNotCount) {
    StartPolling();
    sensor_->Execute(QStringLiteral("exception 2"));
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    Write(ParamDefines::FarDistance, 30000);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    sensor_->Execute(QStringLiteral("exception 0"));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Unsaved(), 0U);
}

TEST_F(StatusBarTest, AWriteWhoseConfirmationWasLostCountsAsAPollShowsIt) {
    StartPolling();
    sensor_->Execute(QStringLiteral("drop 1"));
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    Write(ParamDefines::FarDistance, 30000);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(Unsaved(), 0U);
    sensor_->Execute(QStringLiteral("drop 0"));
    EXPECT_TRUE(WaitForText("CellNotSaved", "1 not saved"));
}

TEST_F(StatusBarTest, DropsWhatALossOfPowerTookAndWhatAnotherSensorNeverHad) {
    StartPolling();
    Confirm(ParamDefines::FarDistance, 30000);
    GoOffline();
    EXPECT_EQ(Text("CellNotSaved"), QStringLiteral("1 not saved")) << "the sensor still forgets it";
    GoOnline();
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Text("CellNotSaved"), QStringLiteral("1 not saved"));
    sensor_->Execute(QStringLiteral("reset"));
    EXPECT_TRUE(WaitForText("CellNotSaved", ""));
    Confirm(ParamDefines::FarDistance, 30000);
    GoOffline();
    sensor_->Execute(QStringLiteral("set 2 10428"));
    GoOnline();
    EXPECT_TRUE(WaitForText("CellNotSaved", ""));
}

TEST_F(StatusBarTest, ADownloadCountsTheRowsThatDiffer) {
    StartPolling();
    GoOffline();
    Write(ParamDefines::FarDistance, 30000);
    Write(ParamDefines::NearDistance, 1300);
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    GoOnline("Write");
    EXPECT_TRUE(WaitForText("CellNotSaved", "2 not saved"));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Unsaved(), 2U);
    Save();
    EXPECT_EQ(Unsaved(), 0U);
}

TEST_F(StatusBarTest, AFileThatIsLoadedIntoTheSensorCountsTheRowsThatDiffer) {
    ClassZentrova table(ShippedPresetsFolder());
    table.ParamValue(ParamDefines::FarDistance, 30000);
    const QString file = configuration_.filePath(QStringLiteral("roll.ztv"));
    ASSERT_FALSE(table.SaveFile(file));
    StartPolling();
    ExpectLoadingQuestion();
    dialogs_.ExpectOpenFile(file);
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    Ui().Choose("Toolbar1(Open File)");
    EXPECT_TRUE(WaitForText("CellNotSaved", "1 not saved"));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(form_->Link().Unsaved().Rows(),
              (std::vector<UnsavedWrites::Row>{{ParamDefines::FarDistance, 36000, 30000}}));
}

TEST_F(StatusBarTest, ADownloadToASensorThatWasNeverReadCountsAllSettings) {
    StartSensor();
    Start();
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    GoOnline("Write");
    EXPECT_TRUE(WaitForPolls(2));
    std::size_t settings = 0;
    for (std::int16_t tag = 1; tag < form_->Zentrova().ParamCount(); ++tag) {
        settings += !form_->Zentrova().ParamReadOnly(tag) && !ClassZentrova::IsCommand(tag) ? 1 : 0;
    }
    EXPECT_EQ(Unsaved(), settings);
}

TEST_F(StatusBarTest, AReturnToTheFactorysValuesLeavesNothingThatTheSensorForgets) {
    StartPolling();
    Confirm(ParamDefines::FarDistance, 30000);
    EXPECT_EQ(Unsaved(), 1U);
    Write(ParamDefines::ReinitCommand, ParamDefines::FactoryDefaults);
    EXPECT_TRUE(WaitForText("CellNotSaved", ""));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Value(ParamDefines::FarDistance), 36000);
    sensor_->Execute(QStringLiteral("reset"));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Value(ParamDefines::FarDistance), 36000);
    EXPECT_EQ(Unsaved(), 0U);
}

TEST_F(StatusBarTest, AddressingMode0HasARowThatNoPollReads) {
    StartPolling(0);
    const std::int16_t last = static_cast<std::int16_t>(form_->Zentrova().ParamCount() - 1);
    Confirm(last, 7);
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Unsaved(), 1U);
    Save();
    EXPECT_EQ(Unsaved(), 0U);
}

TEST_F(StatusBarTest, TheToolbarsSaveHasADotWhileItIsNeeded) {
    StartPolling();
    const QAction &save = Ui().Get<QAction>("Toolbar1(Save ZTV)");
    const auto amber = [&](double scale, QIcon::Mode mode) {
        const QImage picture = save.icon().pixmap(QSize(32, 32), scale, mode).toImage();
        EXPECT_EQ(picture.width(), std::lround(32 * scale));
        return picture.pixelColor(picture.width() * 25 / 32, picture.height() * 7 / 32) ==
               QColor(0xff, 0xa0, 0x00);
    };
    const QSize button = Ui().Get<QToolButton>("Save ZTV").size();
    EXPECT_FALSE(amber(1, QIcon::Normal));
    Confirm(ParamDefines::FarDistance, 30000);
    for (const double scale : {1.0, 1.5, 2.0}) {
        EXPECT_TRUE(amber(scale, QIcon::Normal)) << scale;
        EXPECT_TRUE(amber(scale, QIcon::Disabled)) << scale;
    }
    EXPECT_EQ(Ui().Get<QToolButton>("Save ZTV").size(), button);
    Save();
    EXPECT_FALSE(amber(1, QIcon::Normal));
}

// The list. -----------------------------------------------------------------------------------------

TEST_F(StatusBarTest, TheListNamesTheChangesAndEnterSavesThem) {
    StartPolling();
    Confirm(ParamDefines::FarDistance, 30000);
    Confirm(ParamDefines::ClockSelect, 1);
    Ui().Press("CellNotSaved");
    auto &list = Ui().Get<QWidget>("UnsavedList");
    EXPECT_TRUE(WaitUntil([&] { return list.isVisible(); }));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    const auto &rows = Ui().Get<QListWidget>("UnsavedRows");
    ASSERT_EQ(rows.count(), 2);
    EXPECT_EQ(rows.item(0)->text(), QStringLiteral("20 Clock Select  Internal -> External"));
    EXPECT_EQ(rows.item(1)->text(), QStringLiteral("29 Far Distance  360.00\" -> 300.00\""));
    EXPECT_EQ(Ui().Text("UnsavedTitle"), QStringLiteral("2 changes not saved in the sensor"));
    QTest::keyClick(&list, Qt::Key_Escape);
    EXPECT_FALSE(list.isVisible());
    Ui().Press("CellNotSaved");
    EXPECT_TRUE(WaitUntil([&] { return list.isVisible(); }));
    auto &save = Ui().Get<QPushButton>("UnsavedSave");
    EXPECT_TRUE(save.hasFocus());
    dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
    QTest::keyClick(&save, Qt::Key_Return);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_FALSE(list.isVisible());
    EXPECT_EQ(Unsaved(), 0U);
}

TEST_F(StatusBarTest, TheListFollowsTheSensorAndCanNotSaveOffline) {
    StartPolling();
    Confirm(ParamDefines::FarDistance, 30000);
    Ui().Press("CellNotSaved");
    auto &list = Ui().Get<QWidget>("UnsavedList");
    EXPECT_TRUE(WaitUntil([&] { return list.isVisible(); }));
    Confirm(ParamDefines::NearDistance, 1300);
    EXPECT_EQ(Ui().Get<QListWidget>("UnsavedRows").count(), 2);
    sensor_->Execute(QStringLiteral("reset"));
    EXPECT_TRUE(WaitUntil([&] { return !list.isVisible(); })) << "nothing is left to save";
    Confirm(ParamDefines::FarDistance, 30000);
    GoOffline();
    Ui().Press("CellNotSaved");
    EXPECT_TRUE(WaitUntil([&] { return list.isVisible(); }));
    EXPECT_FALSE(Ui().Enabled("UnsavedSave"));
    EXPECT_EQ(Ui().Get<QPushButton>("UnsavedSave").toolTip(), QStringLiteral("Go online first"));
    EXPECT_TRUE(Ui().Get<QListWidget>("UnsavedRows").hasFocus());
    QTest::keyClick(&Ui().Get<QListWidget>("UnsavedRows"), Qt::Key_Escape);
    EXPECT_FALSE(list.isVisible());
}

TEST_F(StatusBarTest, TheListGivesWayToABox) {
    StartPolling();
    Confirm(ParamDefines::FarDistance, 30000);
    Ui().Press("CellNotSaved");
    auto &list = Ui().Get<QWidget>("UnsavedList");
    EXPECT_TRUE(WaitUntil([&] { return list.isVisible(); }));
    QDialog box(form_.get());
    box.open();
    Settle();
    EXPECT_FALSE(list.isVisible());
}

TEST_F(StatusBarTest, ALongListStaysOnTheScreenAndScrolls) {
    StartSensor();
    Start();
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    GoOnline("Write");
    EXPECT_TRUE(WaitForPolls(1));
    Ui().Press("CellNotSaved");
    auto &list = Ui().Get<QWidget>("UnsavedList");
    EXPECT_TRUE(WaitUntil([&] { return list.isVisible(); }));
    EXPECT_TRUE(list.screen()->availableGeometry().contains(list.geometry()));
    EXPECT_EQ(Ui().Get<QListWidget>("UnsavedRows").item(0)->text(), QStringLiteral("17 Teach Mode  Off"));
    list.close();
}

// Clicks. -------------------------------------------------------------------------------------------

TEST_F(StatusBarTest, EachCellLeadsToItsPlace) {
    StartPolling();
    form_->resize(1900, 800);
    sensor_->Execute(QStringLiteral("set 39 0"));
    EXPECT_TRUE(WaitForText("CellOutputForced", "output forced"));
    for (const char *cell :
         {"CellState", "CellLineQuality", "CellAddress", "CellDevice", "CellLineSetting"}) {
        EXPECT_EQ(DialogOf(cell), QStringLiteral("FormComms")) << cell;
    }
    EXPECT_EQ(DialogOf("CellSensor"), QStringLiteral("FormAbout"));
    Ui().Press("CellEcho");
    EXPECT_TRUE(WaitUntil([this] { return form_->CurrentTab() == Tab::Distance; }));
    Ui().Press("CellOutputForced");
    EXPECT_TRUE(WaitUntil([this] { return form_->CurrentTab() == Tab::Basic; }));
    EXPECT_TRUE(form_->Link().PortIsOpen());
}

TEST_F(StatusBarTest, AForcedOutputLeadsToTheCheckoutTabWhereThereIsOne) {
    StartSensor();
    Start(QStringLiteral("/CHECKOUT"));
    form_->resize(1366, 700);
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
    sensor_->Execute(QStringLiteral("set 39 0"));
    EXPECT_TRUE(WaitForText("CellOutputForced", "output forced"));
    Ui().Press("CellOutputForced");
    EXPECT_TRUE(WaitUntil([this] { return form_->CurrentTab() == Tab::Checkout; }));
}

TEST_F(StatusBarTest, AClickFirstValidatesTheTextBeingTyped) {
    StartPolling();
    form_->resize(1366, 700);
    form_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    auto &box = Ui().Get<QLineEdit>("TextParam(4)");
    auto &typed = Ui().Get<QLineEdit>("Text1");
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Right);
    QTest::keyClicks(&typed, QStringLiteral("999"));
    dialogs_.ExpectTextWith(QStringLiteral("Please enter a value between"), BoxIcon::None, QString());
    QTest::mouseClick(&Cell("CellEcho"), Qt::LeftButton);
    Settle();
    EXPECT_TRUE(dialogs_.AllCame());
    EXPECT_EQ(form_->CurrentTab(), Tab::Basic);
    EXPECT_TRUE(typed.hasFocus());
    QTest::keyClicks(&typed, QStringLiteral("300"));
    QTest::mouseClick(&Cell("CellEcho"), Qt::LeftButton);
    EXPECT_TRUE(WaitUntil([this] { return form_->CurrentTab() == Tab::Distance; }));
    EXPECT_EQ(Value(ParamDefines::FarDistance), 30000);
}

TEST_F(StatusBarTest, CellsAreReachedByKeyAndPressedBySpace) {
    StartPolling();
    QWidget *last = nullptr;
    for (QWidget *next = form_->nextInFocusChain(); next != form_.get(); next = next->nextInFocusChain()) {
        if ((next->focusPolicy() & Qt::TabFocus) != 0 && next->isVisible() && next->isEnabled()) {
            last = next;
        }
    }
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->parentWidget()->objectName(), QStringLiteral("StatusCells")) << "after all pages";
    Cell("CellAddress").setFocus(Qt::TabFocusReason);
    QString name;
    WhenDialogOpens([&](QWidget &dialog) {
        name = dialog.objectName();
        dialog.close();
    });
    QTest::keyClick(&Cell("CellAddress"), Qt::Key_Space);
    EXPECT_TRUE(WaitUntil([&] { return !name.isEmpty(); }));
    EXPECT_EQ(name, QStringLiteral("FormComms"));
}

TEST_F(StatusBarTest, CellsTellAssistiveClientsTheirFactAndTheirAction) {
    StartPolling();
    EXPECT_EQ(Cell("CellAddress").accessibleName(), QStringLiteral("Network address 1"));
    EXPECT_EQ(Cell("CellAddress").accessibleDescription(), QStringLiteral("Opens Communications Setup"));
    EXPECT_EQ(Cell("CellAddress").toolTip(),
              QStringLiteral("Network address 1.\nOpens Communications Setup"));
}

// Room. ---------------------------------------------------------------------------------------------

TEST_F(StatusBarTest, AtTheLeastWidthTheWarningsAndTheAddressAreSeen) {
    StartPolling();
    Confirm(ParamDefines::FarDistance, 30000);
    sensor_->Execute(QStringLiteral("set 39 0"));
    EXPECT_TRUE(WaitForText("CellOutputForced", "output forced"));
    EXPECT_TRUE(WaitForChip("LIVE 0.2 s"));
    EXPECT_EQ(form_->width(), 680);
    const QStringList seen = InView();
    EXPECT_EQ(seen.mid(0, 5), (QStringList{QStringLiteral("LIVE 0.2 s"), QStringLiteral("1 not saved"),
                                           QStringLiteral("output forced"), QStringLiteral("Line 100 %"),
                                           QStringLiteral("Addr 1")}))
        << seen.join(QStringLiteral(" | ")).toStdString();
}

TEST_F(StatusBarTest, ShowsWhatFitsAndNeverClipsTheTextOfTheLink) {
    for (const double points : {9.0, 14.0}) {
        const OnDesktop here({"large", false, points / QApplication::font().pointSizeF()});
        StartPolling();
        Confirm(ParamDefines::FarDistance, 30000);
        qsizetype before = 0;
        for (const int width : {680, 900, 1366, 1920}) {
            form_->resize(width, 700);
            for (const char *text : {" Online", "Timeout", "Another sensor: go offline and online"}) {
                auto &status = Ui().Get<QLabel>("StatusText");
                status.setText(QStringLiteral("Communication Status: ") + QString::fromLatin1(text));
                Settle();
                EXPECT_GE(status.width(), status.fontMetrics().horizontalAdvance(status.text())) << width;
                EXPECT_LT(status.x(), 10);
                int right = status.geometry().right();
                for (const StatusCellButton *cell : form_->findChildren<StatusCellButton *>()) {
                    if (!cell->isVisible()) {
                        continue;
                    }
                    const QRect place(cell->mapTo(form_->statusBar(), QPoint(0, 0)), cell->size());
                    EXPECT_GT(place.left(), right) << "they don't overlap";
                    EXPECT_LE(place.right(), form_->statusBar()->width());
                    EXPECT_GE(cell->width(), cell->sizeHint().width());
                    EXPECT_GE(cell->height(), QFontMetrics(cell->font()).height());
                    right = place.right();
                }
            }
            const qsizetype count = InView().size();
            EXPECT_GE(count, before) << width;
            before = count;
        }
        EXPECT_EQ(before, points < 10 ? 9 : before);
        EXPECT_GE(before, 6);
        form_.reset();
        sensor_.reset();
    }
}

TEST_F(StatusBarTest, AShortWordOfTheLinkMovesNoCell) {
    StartPolling();
    const int left = Cell("CellState").mapTo(form_.get(), QPoint(0, 0)).x();
    for (const char *text : {"Offline", " Online", "Timeout", "CRC Error"}) {
        Ui().Get<QLabel>("StatusText")
            .setText(QStringLiteral("Communication Status: ") + QString::fromLatin1(text));
        Settle();
        EXPECT_EQ(Cell("CellState").mapTo(form_.get(), QPoint(0, 0)).x(), left) << text;
    }
}

TEST_F(StatusBarTest, TheBarIsAsHighAsBefore) {
    Start();
    QStatusBar plain(form_.get());
    plain.addWidget(new QLabel(QStringLiteral("Communication Status: Offline")), 1);
    EXPECT_LE(form_->statusBar()->sizeHint().height(), plain.sizeHint().height() + 2);
}

} // namespace ztv
