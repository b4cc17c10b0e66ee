#include "link/ui/FormSearch.h"

#include "link/ui/ResultsList.h"
#include "shell/LinkNotices.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/Frames.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/Wait.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <set>
#include <sys/mount.h>

namespace ztv {

namespace {

QByteArray GoodReply(int address) {
    return WithCrc(QByteArray(1, static_cast<char>(address)) + Hex("03 02 00 00"));
}

const auto fromToRange = QStringLiteral("The From Address Range must be less than or equal to the To Range.");
const auto invalidRange = QStringLiteral("Please enter a numeric value from 1 to 247.");

// Mounts a second name of a device, if the machine permits it.
class OtherName {
public:
    OtherName(const QString &device, const QString &name)
        : name_(QFile::encodeName(name)),
          mounted_(mount(QFile::encodeName(device).constData(), name_.constData(), nullptr, MS_BIND,
                         nullptr) == 0) {}
    ~OtherName() {
        if (mounted_) {
            umount2(name_.constData(), MNT_DETACH);
        }
    }
    OtherName(const OtherName &) = delete;
    OtherName &operator=(const OtherName &) = delete;

    bool IsThere() const { return mounted_; }

private:
    QByteArray name_;
    bool mounted_;
};

} // namespace

class FormSearchTest : public testing::Test {
protected:
    FormSearchTest() { Open({.port = 1, .baud = 3, .parityStop = 1}); }
    ~FormSearchTest() override { form_.reset(); }

    void Open(SearchStart start) {
        form_ = std::make_unique<FormSearch>(session_, zentrova_, dialogs_, help_, start);
        form_->show();
        form_->activateWindow();
        EXPECT_TRUE(WaitUntil([this] { return form_->isActiveWindow(); }));
    }

    Form Ui() const { return Form(*form_); }
    QLineEdit &Box(int index) const {
        return Ui().Get<QLineEdit>(index == 0 ? "TextAddressRange(0)" : "TextAddressRange(1)");
    }
    bool Shown(const char *name) const { return Ui().Get<QWidget>(name).isVisible(); }
    ResultsList &Results() const { return Ui().Get<ResultsList>("ListViewResults"); }
    QCheckBox &Use() const { return Ui().Get<QCheckBox>("CheckUseSelectedCommSettings"); }

    void ChooseRange(const char *from, const char *to) {
        Ui().Get<QRadioButton>("OptionAddressRange(1)").click();
        Box(0).setText(QString::fromLatin1(from));
        Box(1).setText(QString::fromLatin1(to));
    }

    bool WaitForTheEnd() {
        return WaitUntil([this] { return !session_.PortIsOpen() && Ui().Enabled("CommandStart"); });
    }

    // Two devices, at 5 and 7.
    void FindTwo() {
        ChooseRange("5", "7");
        line_.Answer(GoodReply(5));
        line_.AnswerNothing();
        line_.Answer(GoodReply(7));
        Ui().Press("CommandStart");
        EXPECT_TRUE(WaitForTheEnd());
    }

    // Expects the controls as they are while no search runs.
    void ExpectIdle() {
        EXPECT_FALSE(session_.PortIsOpen());
        EXPECT_TRUE(Ui().Enabled("CommandStart"));
        EXPECT_FALSE(Ui().Enabled("CommandStop"));
        EXPECT_FALSE(Shown("LabelSearchStatus"));
        EXPECT_FALSE(Shown("SearchProgress"));
        EXPECT_FALSE(Shown("LabelTimeLeft"));
        EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
    }

    // Starts a search and stops in mid-probe: the next address gets no answer, which takes a while.
    void StartASearch() {
        Ui().Press("CommandStart");
        EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() == 2; }));
        EXPECT_EQ(form_->cursor().shape(), Qt::BusyCursor);
    }

    void ExpectNothingMore() {
        EXPECT_FALSE(session_.PortIsOpen());
        EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::SearchProbe));
        const std::size_t requests = line_.Requests().size();
        int answers = 0;
        QObject::connect(&session_, &LinkSession::DeviceAnswered, [&answers] { ++answers; });
        line_.Send(GoodReply(2));
        // Several timeouts long.
        EXPECT_FALSE(WaitUntil([&] { return answers > 0 || line_.Requests().size() > requests; }, 150));
    }

    ScriptedDialogs dialogs_;
    HelpOfForm help_;
    ScriptedLine line_;
    QString device_ = line_.Path();
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    LinkSession session_{zentrova_,
                         {.deviceOfPort = [this](std::int16_t) { return device_; },
                          .askDirection = [] { return ConnectChoice::Cancel; }}};
    LinkNotices notices_{session_, dialogs_};
    std::unique_ptr<FormSearch> form_;
};

// As it opens. ---------------------------------------------------------------------------------------

TEST_F(FormSearchTest, HasItsControlsWithCaptionsAndToolTips) {
    struct Row {
        const char *name, *caption, *toolTip;
    };
    const Row rows[] = {
        {"OptionAddressRange(0)", "&All (1-247)", ""},
        {"OptionAddressRange(1)", "&From", ""},
        {"TextAddressRange(0)", "1", "Start search address"},
        {"LabelTo", "To", ""},
        {"TextAddressRange(1)", "247", "Stop search address"},
        {"CheckVaryCommSettings", "&Vary Comm Settings",
         "Search routine iterates through all possible baud, parity, & stop bit selections"},
        {"CommandStart", "&Start", "Start Searching"},
        {"CommandStop", "S&top", "Stop Searching"},
        {"LabelSearchStatus", "Searching...", ""},
        {"LabelCommStatus", "Comm Status...", ""},
        {"LabelDevicesFound", "Devices Found: 0", ""},
        {"LabelResults", "Results:", ""},
        {"CheckUseSelectedCommSettings", "&Use Selected Comm Settings",
         "Changes software comm settings to the selected value in the Results table"},
        {"CommandClose", "&Close", "Close this window"},
        {"CommandHelp", "&Help", "Displays help file"},
    };
    std::set<QChar> mnemonics;
    for (const Row &row : rows) {
        const QString caption = Ui().Text(row.name);
        EXPECT_EQ(caption, QString::fromLatin1(row.caption));
        EXPECT_EQ(Ui().Get<QWidget>(row.name).toolTip(), QString::fromLatin1(row.toolTip));
        if (caption.contains(u'&')) {
            EXPECT_TRUE(mnemonics.insert(caption.at(caption.indexOf(u'&') + 1).toUpper()).second)
                << row.caption;
        }
    }
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("Search"));
    EXPECT_TRUE(form_->isModal());
    EXPECT_EQ(Ui().Get<QGroupBox>("FrameAddressRange").title(), QStringLiteral("Address Range"));
    EXPECT_EQ(Results().headerItem()->text(0), QStringLiteral("Address"));
    EXPECT_EQ(Results().headerItem()->text(1), QStringLiteral("Baud"));
    EXPECT_EQ(Results().headerItem()->text(2), QStringLiteral("ParityStopBits"));
}

TEST_F(FormSearchTest, TellsAnAssistiveClientWhatItsControlsAre) {
    for (const auto *widget : form_->findChildren<QWidget *>()) {
        const bool reachable = widget->focusPolicy() != Qt::NoFocus && !widget->objectName().isEmpty() &&
                               !widget->objectName().startsWith(QStringLiteral("qt_"));
        if (reachable) {
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
        }
    }
}

TEST_F(FormSearchTest, OpensIdleOnAllAddresses) {
    EXPECT_TRUE(Ui().Get<QRadioButton>("OptionAddressRange(0)").isChecked());
    EXPECT_FALSE(Box(0).isEnabled());
    EXPECT_FALSE(Box(1).isEnabled());
    EXPECT_FALSE(Use().isEnabled());
    EXPECT_FALSE(Use().isChecked());
    EXPECT_FALSE(Ui().Get<QCheckBox>("CheckVaryCommSettings").isChecked());
    EXPECT_FALSE(Shown("LabelCommStatus"));
    ExpectIdle();
    EXPECT_TRUE(Ui().Get<QPushButton>("CommandStart").hasFocus());
    EXPECT_TRUE(Ui().Get<QPushButton>("CommandStart").isDefault());
}

TEST_F(FormSearchTest, SetsTheLineToWhereItStarts) {
    Open({.port = 9, .baud = 0, .parityStop = 3});
    EXPECT_EQ(session_.Mbaxp1().PortNumber(), 9);
    EXPECT_EQ(session_.Mbaxp1().BaudCode(), 3);
    EXPECT_EQ(session_.Mbaxp1().ParityCode(), 1);
    EXPECT_EQ(session_.Mbaxp1().ResponseTimeout(), 120);
}

TEST_F(FormSearchTest, EnablesTheRangeByItsOption) {
    QTest::keyClick(form_.get(), Qt::Key_F, Qt::AltModifier);
    EXPECT_TRUE(WaitUntil([this] { return Box(0).isEnabled() && Box(1).isEnabled(); }));
    QTest::keyClick(form_.get(), Qt::Key_A, Qt::AltModifier);
    EXPECT_TRUE(WaitUntil([this] { return !Box(0).isEnabled() && !Box(1).isEnabled(); }));
}

TEST_F(FormSearchTest, OffersItsHelp) {
    Ui().Press("CommandHelp");
    EXPECT_TRUE(help_.WasAskedFor(FormSearch::HelpContextID, *form_));
    QTest::keyClick(form_.get(), Qt::Key_F1);
    EXPECT_TRUE(help_.WasAskedFor(FormSearch::HelpContextID, *form_));
}

TEST_F(FormSearchTest, KeepsTheResultsWhenEnterIsPressedOnOne) {
    FindTwo();
    Results().setFocus();
    QTest::keyClick(&Results(), Qt::Key_Down);
    EXPECT_TRUE(Use().isChecked());
    const std::size_t requests = line_.Requests().size();
    QTest::keyClick(&Results(), Qt::Key_Return);
    EXPECT_FALSE(WaitUntil([&] { return line_.Requests().size() > requests; }, 100));
    EXPECT_EQ(Results().topLevelItemCount(), 2);
}

TEST_F(FormSearchTest, ClosesWithThePickAtEnterOnItsMark) {
    FindTwo();
    Results().setCurrentItem(Results().topLevelItem(1));
    Use().setFocus();
    QTest::keyClick(&Use(), Qt::Key_Return);
    EXPECT_FALSE(form_->isVisible());
    EXPECT_TRUE(form_->Used().has_value());
}

// The range. -----------------------------------------------------------------------------------------

TEST_F(FormSearchTest, RefusesToLeaveABoxThatHoldsNoAddress) {
    ChooseRange("1", "247");
    for (const int index : {0, 1}) {
        for (const char *text : {"", "x", "0", "247.5", "248", "-1", "1,5"}) {
            Box(index).setFocus();
            Box(index).setText(QString::fromLatin1(text));
            dialogs_.ExpectNotice(invalidRange, BoxIcon::Exclamation, QStringLiteral("Invalid Range"));
            QTest::keyClick(&Box(index), Qt::Key_Tab);
            Settle();
            EXPECT_TRUE(dialogs_.AllCame());
            EXPECT_TRUE(Box(index).hasFocus());
            EXPECT_EQ(Box(index).selectedText(), QString::fromLatin1(text));
        }
        Box(index).setText(index == 0 ? QStringLiteral("1") : QStringLiteral("247"));
    }
}

TEST_F(FormSearchTest, RefusesARangeThatRunsBackwardsInTheBoxThatIsLeft) {
    ChooseRange("5", "7");
    for (const int index : {0, 1}) {
        Box(index).setFocus();
        Box(index).setText(index == 0 ? QStringLiteral("8") : QStringLiteral("4"));
        dialogs_.ExpectNotice(fromToRange);
        QTest::mouseClick(&Ui().Get<QPushButton>("CommandStart"), Qt::LeftButton);
        Settle();
        EXPECT_TRUE(dialogs_.AllCame());
        EXPECT_TRUE(Box(index).hasFocus());
        EXPECT_FALSE(session_.PortIsOpen());
        Box(index).setText(index == 0 ? QStringLiteral("7") : QStringLiteral("7"));
        QTest::keyClick(&Box(index), Qt::Key_Tab);
        EXPECT_FALSE(Box(index).hasFocus());
    }
}

TEST_F(FormSearchTest, HoldsTheFocusAgainstCloseButNotAgainstEscape) {
    ChooseRange("x", "7");
    Box(0).setFocus();
    dialogs_.ExpectNotice(invalidRange, BoxIcon::Exclamation, QStringLiteral("Invalid Range"));
    QTest::mouseClick(&Ui().Get<QPushButton>("CommandClose"), Qt::LeftButton);
    Settle();
    EXPECT_TRUE(form_->isVisible());
    QTest::keyClick(&Box(0), Qt::Key_Escape);
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormSearchTest, DoesNotStartOnABadRangeHoweverItIsPressed) {
    ChooseRange("5", "");
    Ui().Get<QPushButton>("CommandStart").setFocus();
    dialogs_.ExpectNotice(invalidRange, BoxIcon::Exclamation, QStringLiteral("Invalid Range"));
    Ui().Get<QPushButton>("CommandStart").click();
    EXPECT_FALSE(session_.PortIsOpen());
    EXPECT_TRUE(Box(1).hasFocus());
}

TEST_F(FormSearchTest, SelectsTheTextOfABoxThatGetsTheFocus) {
    ChooseRange("12", "34");
    QTest::mouseClick(&Box(0), Qt::LeftButton);
    EXPECT_EQ(Box(0).selectedText(), QStringLiteral("12"));
    QTest::keyClick(&Box(0), Qt::Key_Tab);
    EXPECT_EQ(Box(1).selectedText(), QStringLiteral("34"));
}

// The search. ----------------------------------------------------------------------------------------

TEST_F(FormSearchTest, ShowsWhatItDoes) {
    ChooseRange("5", "200");
    Ui().Get<QPushButton>("CommandStart").click();
    EXPECT_FALSE(Ui().Enabled("CommandStart"));
    EXPECT_TRUE(Ui().Enabled("CommandStop"));
    EXPECT_EQ(form_->cursor().shape(), Qt::BusyCursor);
    EXPECT_TRUE(Shown("LabelSearchStatus"));
    EXPECT_TRUE(Shown("LabelCommStatus"));
    EXPECT_EQ(Ui().Text("LabelSearchStatus"), QStringLiteral("Searching 5"));
    EXPECT_EQ(Ui().Text("LabelCommStatus"), QStringLiteral("19200,N2"));
    auto &progress = Ui().Get<QProgressBar>("SearchProgress");
    EXPECT_TRUE(WaitUntil([&] { return progress.maximum() == 196; }));
    EXPECT_EQ(Ui().Text("LabelTimeLeft"), QStringLiteral("7 s left")); // 196 times 34.6 ms
    EXPECT_TRUE(
        WaitUntil([this] { return Ui().Text("LabelSearchStatus") == QStringLiteral("Searching 7"); }));
    EXPECT_TRUE(WaitUntil([&] { return progress.value() >= 2; }));
    EXPECT_EQ(progress.maximum(), 196);
    Ui().Press("CommandStop");
    EXPECT_TRUE(WaitForTheEnd());
    ExpectIdle();
    EXPECT_TRUE(Shown("LabelCommStatus"));
    EXPECT_EQ(Ui().Text("LabelCommStatus"), QStringLiteral("19200,N2"));
}

TEST_F(FormSearchTest, ListsWhatItFinds) {
    FindTwo();
    EXPECT_EQ(Ui().Text("LabelDevicesFound"), QStringLiteral("Devices Found: 2"));
    ASSERT_EQ(Results().topLevelItemCount(), 2);
    const char *addresses[] = {"5", "7"};
    for (int row = 0; row < 2; ++row) {
        const QTreeWidgetItem &item = *Results().topLevelItem(row);
        EXPECT_EQ(item.text(0), QString::fromLatin1(addresses[row]));
        EXPECT_EQ(item.text(1), QStringLiteral("19200"));
        EXPECT_EQ(item.text(2), QStringLiteral("N2"));
        EXPECT_EQ(item.data(0, Qt::UserRole).toString(), QStringLiteral("Key%1").arg(row + 1));
        EXPECT_EQ(item.data(1, Qt::UserRole).toInt(), 3);
        EXPECT_EQ(item.data(2, Qt::UserRole).toInt(), 1);
    }
    ExpectIdle();
    EXPECT_FALSE(Use().isEnabled());
}

TEST_F(FormSearchTest, BeginsEachSearchWithAnEmptyList) {
    FindTwo();
    Results().topLevelItem(1)->setSelected(true);
    EXPECT_TRUE(Use().isChecked());
    Ui().Press("CommandStart");
    EXPECT_EQ(Results().topLevelItemCount(), 0);
    EXPECT_FALSE(Use().isEnabled());
    EXPECT_FALSE(Use().isChecked());
    EXPECT_EQ(Ui().Text("LabelDevicesFound"), QStringLiteral("Devices Found: 0"));
    EXPECT_TRUE(WaitForTheEnd());
    EXPECT_EQ(Results().accessibleDescription(), QStringLiteral("No device was found."));
}

TEST_F(FormSearchTest, ShowsTheSettingsAsTheyVary) {
    ChooseRange("5", "5");
    Ui().Get<QCheckBox>("CheckVaryCommSettings").setChecked(true);
    std::vector<std::string> shown;
    QObject::connect(&session_, &LinkSession::DeviceAnswered, form_.get(), [&] {
        shown.push_back(Ui().Text("LabelCommStatus").toStdString());
        if (shown.size() == 5) {
            Ui().Get<QPushButton>("CommandStop").click();
        }
    });
    Ui().Press("CommandStart");
    EXPECT_TRUE(WaitForTheEnd());
    // This handler runs after the form's own, which has gone on to the next setting.
    EXPECT_EQ(shown, (std::vector<std::string>{"38400,E1", "38400,N2", "38400,N1", "19200,O1", "19200,E1",
                                               "19200,E1"}));
    EXPECT_EQ(Ui().Text("LabelCommStatus"), QStringLiteral("19200,E1"));
}

TEST_F(FormSearchTest, GoesOnWithTheLastNumberWhileABoxHoldsNone) {
    ChooseRange("5", "7");
    Ui().Get<QPushButton>("CommandStart").click();
    Box(1).setFocus();
    Box(1).clear();
    Box(0).setText(QStringLiteral("-"));
    EXPECT_TRUE(WaitForTheEnd());
    EXPECT_EQ(line_.Requests().size(), 3U);
    Box(0).setText(QStringLiteral("5"));
    Box(1).setText(QStringLiteral("7"));
}

TEST_F(FormSearchTest, TakesAnEditedRangeAtOnce) {
    ChooseRange("5", "200");
    Ui().Get<QPushButton>("CommandStart").click();
    Box(1).setText(QStringLiteral("6"));
    EXPECT_TRUE(WaitForTheEnd());
    EXPECT_EQ(line_.Requests().size(), 2U);
}

TEST_F(FormSearchTest, SaysWhyThePortCannotBeOpened) {
    device_ = QStringLiteral("/nowhere");
    dialogs_.ExpectNotice(
        QStringLiteral("Error 47. The com port could not be opened.  The port does not exist "
                       "or is in use by another application."));
    Ui().Press("CommandStart");
    ExpectIdle();
    EXPECT_FALSE(Shown("LabelCommStatus"));
}

TEST_F(FormSearchTest, SaysWhereItLostItsAdapter) {
    ChooseRange("5", "9");
    Ui().Press("CommandStart");
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() == 3; }));
    device_ = QStringLiteral("/nowhere");
    line_.HangUp();
    EXPECT_TRUE(WaitForTheEnd());
    EXPECT_TRUE(Shown("LabelSearchStatus"));
    EXPECT_EQ(Ui().Text("LabelSearchStatus"), QStringLiteral("Adapter lost at 7"));
    EXPECT_EQ(Ui().Get<QWidget>("LabelSearchStatus").toolTip(), QStringLiteral("Error 15. Read Error"));
    EXPECT_EQ(Ui().Text("LabelCommStatus"), QStringLiteral("19200,N2"));
    EXPECT_EQ(Results().accessibleDescription(),
              QStringLiteral("The search broke off at address 7, 19200,N2."));
    EXPECT_FALSE(Ui().Enabled("CommandStop"));
    EXPECT_FALSE(Shown("SearchProgress"));
    EXPECT_FALSE(Shown("LabelTimeLeft"));
    EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
    EXPECT_TRUE(Ui().Get<QPushButton>("CommandStart").hasFocus());
}

TEST_F(FormSearchTest, KeepsWhatItFoundBeforeItLostItsAdapter) {
    ChooseRange("5", "9");
    line_.Answer(GoodReply(5));
    Ui().Press("CommandStart");
    EXPECT_TRUE(WaitUntil([this] { return Results().topLevelItemCount() == 1; }));
    device_ = QStringLiteral("/nowhere");
    line_.HangUp();
    EXPECT_TRUE(WaitForTheEnd());
    Results().setCurrentItem(Results().topLevelItem(0));
    EXPECT_TRUE(Use().isChecked());
}

TEST_F(FormSearchTest, SaysWhichSettingCouldNotBeSet) {
    ChooseRange("5", "5");
    Ui().Get<QCheckBox>("CheckVaryCommSettings").setChecked(true);
    Ui().Get<QPushButton>("CommandStart").click();
    device_ = QStringLiteral("/nowhere");
    EXPECT_TRUE(WaitForTheEnd());
    EXPECT_EQ(Ui().Text("LabelSearchStatus"), QStringLiteral("Adapter lost at 5"));
    EXPECT_EQ(Ui().Text("LabelCommStatus"), QStringLiteral("38400,E1"));
}

// Opens the line under a second name. Under it the program doesn't recognise a pseudo terminal, and the line
// refuses each parity.
TEST_F(FormSearchTest, SaysWhichSettingItsAdapterRefuses) {
    const QTemporaryDir folder;
    const QString adapter = folder.filePath(QStringLiteral("adapter"));
    WriteFile(adapter, {});
    const OtherName mounted(line_.Path(), adapter);
    if (!mounted.IsThere()) {
        GTEST_SKIP() << "this machine mounts nothing";
    }
    ChooseRange("5", "5");
    Ui().Get<QCheckBox>("CheckVaryCommSettings").setChecked(true);
    const auto expectRefused = [this](const char *setting) {
        EXPECT_TRUE(Shown("LabelSearchStatus"));
        EXPECT_EQ(Ui().Text("LabelSearchStatus"), QStringLiteral("Setting refused at 5"));
        EXPECT_EQ(Ui().Get<QWidget>("LabelSearchStatus").toolTip(),
                  QStringLiteral("Error 43. Set parity error"));
        EXPECT_TRUE(Shown("LabelCommStatus"));
        EXPECT_EQ(Ui().Text("LabelCommStatus"), QString::fromLatin1(setting));
        EXPECT_FALSE(Ui().Enabled("CommandStop"));
        EXPECT_FALSE(session_.PortIsOpen());
    };
    Ui().Get<QPushButton>("CommandStart").click();
    device_ = adapter;
    EXPECT_TRUE(WaitForTheEnd());
    expectRefused("38400,E1");
    dialogs_.ExpectNotice(QStringLiteral("Error 43. Set parity error"));
    Ui().Press("CommandStart");
    expectRefused("38400,O1");
}

TEST_F(FormSearchTest, SaysThatAProbeWasRefusedAndStandsStill) {
    ChooseRange("247", "247");
    Ui().Get<QPushButton>("CommandStart").click();
    Box(1).setText(QStringLiteral("300"));
    dialogs_.ExpectNotice(QStringLiteral("Read Error: 22"));
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(Ui().Enabled("CommandStop"));
    EXPECT_TRUE(Ui().Enabled("CommandClose"));
    EXPECT_TRUE(session_.PortIsOpen());
    Ui().Press("CommandStop");
    ExpectIdle();
    Box(1).setText(QStringLiteral("247"));
}

TEST_F(FormSearchTest, CanBeDoneByTheKeyboardAlone) {
    line_.Answer(GoodReply(1));
    line_.Answer(GoodReply(2));
    QTest::keyClick(form_->focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(session_.PortIsOpen());
    EXPECT_TRUE(WaitUntil([this] { return Results().topLevelItemCount() == 2; }));
    EXPECT_TRUE(Ui().Get<QPushButton>("CommandStop").hasFocus());
    QTest::keyClick(form_->focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(WaitForTheEnd());
    EXPECT_TRUE(Ui().Get<QPushButton>("CommandStart").hasFocus());
    QTest::keyClick(form_->focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(Results().hasFocus());
    EXPECT_FALSE(Use().isChecked()); // nothing is chosen yet
    QTest::keyClick(&Results(), Qt::Key_Down);
    EXPECT_TRUE(Use().isChecked());
    QTest::keyClick(&Results(), Qt::Key_Home);
    EXPECT_EQ(Results().selectedItems().value(0), Results().topLevelItem(0));
    QTest::keyClick(&Results(), Qt::Key_Tab);
    EXPECT_TRUE(Use().hasFocus());
    QTest::keyClick(form_->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(form_->focusWidget(), Qt::Key_Space);
    EXPECT_FALSE(form_->isVisible());
    ASSERT_TRUE(form_->Used().has_value());
    EXPECT_EQ(form_->Used()->address, QStringLiteral("1"));
}

TEST_F(FormSearchTest, ChoosesTheOnlyRowByAKeyThatCannotMoveFromIt) {
    ChooseRange("5", "5");
    line_.Answer(GoodReply(5));
    Ui().Press("CommandStart");
    EXPECT_TRUE(WaitForTheEnd());
    Results().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&Results(), Qt::Key_Down);
    EXPECT_TRUE(Use().isChecked());
}

// Its outcome. ---------------------------------------------------------------------------------------

TEST_F(FormSearchTest, HandsOutTheSelectedRow) {
    FindTwo();
    const QRect row = Results().visualItemRect(Results().topLevelItem(1));
    QTest::mouseClick(Results().viewport(), Qt::LeftButton, {}, row.center());
    EXPECT_TRUE(Use().isEnabled());
    EXPECT_TRUE(Use().isChecked());
    EXPECT_FALSE(form_->Used().has_value());
    Ui().Press("CommandClose");
    ASSERT_TRUE(form_->Used().has_value());
    EXPECT_EQ(form_->Used()->address, QStringLiteral("7"));
    EXPECT_EQ(form_->Used()->baud, 3);
    EXPECT_EQ(form_->Used()->parityStop, 1);
}

TEST_F(FormSearchTest, HandsOutNothingUnlessItIsWanted) {
    FindTwo();
    form_->close();
    EXPECT_FALSE(form_->Used().has_value());

    Open({.port = 1, .baud = 3, .parityStop = 1});
    FindTwo();
    Results().setCurrentItem(Results().topLevelItem(0));
    EXPECT_TRUE(Use().isChecked());
    Use().click();
    form_->close();
    EXPECT_FALSE(form_->Used().has_value());
}

TEST_F(FormSearchTest, ChecksItsBoxAgainAtAClickOnTheSelectedRow) {
    FindTwo();
    Results().setCurrentItem(Results().topLevelItem(0));
    Use().click();
    EXPECT_FALSE(Use().isChecked());
    QTest::mouseClick(Results().viewport(), Qt::LeftButton, {},
                      Results().visualItemRect(Results().topLevelItem(0)).center());
    EXPECT_TRUE(Use().isChecked());
}

TEST_F(FormSearchTest, WantsNothingAfterAClickOnAnEmptyList) {
    QTest::mouseClick(Results().viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    QTest::keyClick(&Results(), Qt::Key_Down);
    EXPECT_FALSE(Use().isEnabled());
    EXPECT_FALSE(Use().isChecked());
}

// Closing in mid-probe. ------------------------------------------------------------------------------

TEST_F(FormSearchTest, IsClosedInMidProbeByItsButton) {
    StartASearch();
    Ui().Press("CommandClose");
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
    ExpectNothingMore();
}

TEST_F(FormSearchTest, IsClosedInMidProbeByEscape) {
    StartASearch();
    QTest::keyClick(form_->focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
    ExpectNothingMore();
}

TEST_F(FormSearchTest, IsClosedInMidProbeByItsFrame) {
    StartASearch();
    form_->close();
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(form_->cursor().shape(), Qt::ArrowCursor);
    ExpectNothingMore();
}

TEST_F(FormSearchTest, IsDestroyedInMidProbe) {
    StartASearch();
    form_.reset();
    ExpectNothingMore();
}

TEST_F(FormSearchTest, EndsItsModalLoopWithAResultPickedInMidSearch) {
    form_->hide();
    line_.Answer(GoodReply(1));
    FormSearch form(session_, zentrova_, dialogs_, help_, {.port = 1, .baud = 3, .parityStop = 1});
    WhenDialogOpens([](QWidget &dialog) {
        const Form ui(dialog);
        ui.Press("CommandStart");
        auto &results = ui.Get<ResultsList>("ListViewResults");
        EXPECT_TRUE(WaitUntil([&] { return results.topLevelItemCount() == 1; }));
        results.setCurrentItem(results.topLevelItem(0));
        ui.Press("CommandClose");
    });
    form.exec();
    ASSERT_TRUE(form.Used().has_value());
    EXPECT_EQ(form.Used()->address, QStringLiteral("1"));
    ExpectNothingMore();
}

} // namespace ztv
