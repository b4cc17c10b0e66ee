#include "shell/FormMain.h"

#include "link/StoredComm.h"
#include "model/ParamDefines.h"
#include "shell/Caption.h"
#include "shell/StoredSettings.h"
#include "shell/TabFrames.h"
#include "support/Fault.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QRadioButton>
#include <QScreen>
#include <QStyle>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

namespace ztv {

namespace {

QString StoredText(const SettingsStore &store, const char *section, const char *key) {
    return store.Read(QString::fromLatin1(section), QString::fromLatin1(key), QStringLiteral("nothing"));
}

} // namespace

class FormMainTest : public MainFormTest {
protected:
    QTabWidget &Strip() const { return Ui().Get<QTabWidget>("TabStrip1"); }

    void ClickTab(int index) {
        QTest::mouseClick(Strip().tabBar(), Qt::LeftButton, {}, Strip().tabBar()->tabRect(index).center());
    }

    QDockWidget *AddDock(Qt::DockWidgetArea side) {
        auto *dock = new QDockWidget(QStringLiteral("Dock"), form_.get());
        dock->setWidget(new QWidget);
        dock->widget()->setFixedSize(150, 120);
        form_->addDockWidget(side, dock);
        return dock;
    }

    // The number of the one page that shows.
    int VisiblePage() const {
        int visible = 0;
        for (int number = 1; number <= 5; ++number) {
            const QString name = QStringLiteral("TabFrame(%1)").arg(number);
            if (form_->findChild<QWidget *>(name)->isVisible()) {
                EXPECT_EQ(visible, 0);
                visible = number;
            }
        }
        return visible;
    }
};

// Start. --------------------------------------------------------------------------------------------

TEST_F(FormMainTest, StartsOfflineOnTheBasicTab) {
    Start();
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("ZTV Link"));
    EXPECT_EQ(Ui().Text("StatusText"), QStringLiteral("Communication Status: Offline"));
    EXPECT_EQ(form_->CurrentTab(), 1);
    EXPECT_EQ(VisiblePage(), 1);
    EXPECT_FALSE(form_->Link().PortIsOpen());
    EXPECT_EQ(Ui().Text("TextParam(3)"), QStringLiteral("12.00\""));
}

TEST_F(FormMainTest, StartsWithTheLineOfAFreshInstallation) {
    Start();
    EXPECT_EQ(form_->CommPort(), 1);
    EXPECT_EQ(form_->BaudRate(), 4);
    EXPECT_EQ(form_->ParityStop(), 1);
    EXPECT_EQ(form_->ModbusAddress(), 1);
    EXPECT_EQ(form_->Link().Mbaxp1().BaudCode(), 8);
    EXPECT_EQ(form_->Link().Mbaxp1().StopBitsCode(), 1);
    EXPECT_EQ(form_->Link().Mbaxp1().ResponseTimeout(), 100);
}

TEST_F(FormMainTest, StartsWithTheStoredLine) {
    WriteCommSettings(settings_, {.port = 9, .baud = 0, .parityStop = 2, .address = 33});
    Start();
    EXPECT_EQ(form_->CommPort(), 9);
    EXPECT_EQ(form_->Link().Mbaxp1().PortNumber(), 9);
    EXPECT_EQ(form_->Link().Mbaxp1().BaudCode(), 3);
    EXPECT_EQ(form_->Link().Mbaxp1().ParityCode(), 2);
    EXPECT_EQ(form_->ModbusAddress(), 33);
}

TEST_F(FormMainTest, HasTheCheckoutTabOnlyWhenAskedFor) {
    Start();
    EXPECT_EQ(Strip().count(), 4);
    Start(QStringLiteral("/Checkout"));
    EXPECT_EQ(Strip().count(), 5);
    const char *captions[] = {"&Basic", "&Advanced", "&Wizard", "&Distance", "&Checkout"};
    for (int index = 0; index < 5; ++index) {
        EXPECT_EQ(Strip().tabText(index), QString::fromLatin1(captions[index]));
    }
}

TEST_F(FormMainTest, AsksBeforeItClearsTheSettings) {
    const QString question = QStringLiteral("Clear all ZTV Link Registry Settings?");
    WriteCommSettings(settings_, {.port = 9, .baud = 0, .parityStop = 2, .address = 33});
    ctrl_ = true;
    dialogs_.Expect(question, BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::No);
    Start();
    EXPECT_EQ(form_->CommPort(), 9);
    EXPECT_EQ(form_->CtrlKey(), -1);
    ctrl_ = false;
    dialogs_.Expect(question, BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::Yes);
    Start(QStringLiteral("/clearreg"));
    EXPECT_EQ(form_->CommPort(), 1);
    EXPECT_EQ(form_->CtrlKey(), 0);
    EXPECT_EQ(StoredText(settings_, "Options", "CommPort"), QStringLiteral("nothing"));
}

TEST_F(FormMainTest, ShowsTheCommandLineBeforeItAsksAboutTheSettings) {
    dialogs_.ExpectNotice(QStringLiteral("Command Line Options Selected: \n\n/cmdline\n/clearreg\n"),
                          BoxIcon::Information);
    dialogs_.Expect(QStringLiteral("Clear all ZTV Link Registry Settings?"), BoxIcon::Question,
                    BoxButtons::YesNo, BoxAnswer::No);
    Start(QStringLiteral("/cmdline /clearreg"));
}

TEST_F(FormMainTest, CannotStartWithoutItsPresets) {
    const QTemporaryDir empty;
    presets_ = empty.path();
    EXPECT_THROW(Start(), Fault);
}

// Menus and toolbar. --------------------------------------------------------------------------------

TEST_F(FormMainTest, HasItsMenus) {
    Start();
    const char *menus[][2] = {
        {"mnuFile", "&File"}, {"mnuOptions", "&Options"}, {"mnuTools", "&Tools"}, {"mnuHelp", "&Help"}};
    for (const auto &row : menus) {
        EXPECT_EQ(Ui().Get<QMenu>(row[0]).title(), QString::fromLatin1(row[1]));
    }
    const char *entries[][2] = {{"mnuFileOpen", "&Open..."},
                                {"mnuFileSave(0)", "&Save"},
                                {"mnuFileSave(1)", "Save &As..."},
                                {"mnuFileExit", "E&xit"},
                                {"mnuCommunications", "&Communications..."},
                                {"mnuOptionsUpgradeFirmware", "&Upgrade Firmware..."},
                                {"mnuOnline", "&Online"},
                                {"mnuReinit", "&Re-initialize"},
                                {"mnuTransmitDelayCalc", "Transmit Delay &Calculator"},
                                {"mnuZtvHelp", "ZTV Link Help"},
                                {"mnuHelpAbout", "&About..."}};
    for (const auto &row : entries) {
        EXPECT_EQ(Ui().Get<QAction>(row[0]).text(), QString::fromLatin1(row[1]));
    }
    EXPECT_TRUE(Ui().Get<QAction>("mnuFileSep").isSeparator());
    EXPECT_EQ(Ui().Get<QAction>("mnuZtvHelp").shortcut(), QKeySequence(Qt::Key_F1));
    EXPECT_TRUE(Ui().Get<QAction>("mnuOnline").isCheckable());
}

TEST_F(FormMainTest, HasItsToolbar) {
    Start();
    const char *rows[][2] = {{"Online", "Open communications with ZTV500-100"},
                             {"Offline", "Close communications with ZTV500-100"},
                             {"Open File", "Open a file"},
                             {"Save File", "Save current settings to a file"},
                             {"Save ZTV", "Save changes in the ZTV500-100"},
                             {"Help", "Display Help File"},
                             {"Exit", "Exit program"}};
    for (const auto &row : rows) {
        auto &button = Ui().Get<QToolButton>(row[0]);
        EXPECT_EQ(button.text(), QString::fromLatin1(row[0]));
        EXPECT_EQ(button.toolTip(), QString::fromLatin1(row[1]));
        EXPECT_EQ(button.accessibleName(), QString::fromLatin1(row[0]));
        EXPECT_FALSE(button.icon().isNull());
    }
}

TEST_F(FormMainTest, EnablesByTheStateOfTheLink) {
    Start();
    for (const bool online : {false, true, false}) {
        Q_EMIT form_->Link().OnlineChanged(online);
        SCOPED_TRACE(online);
        EXPECT_EQ(Ui().Get<QAction>("mnuOnline").isChecked(), online);
        EXPECT_EQ(Ui().Enabled("mnuReinit"), online);
        EXPECT_EQ(Ui().Enabled("Toolbar1(Online)"), !online);
        EXPECT_EQ(Ui().Enabled("Toolbar1(Offline)"), online);
        EXPECT_EQ(Ui().Enabled("Toolbar1(Save ZTV)"), online);
        EXPECT_EQ(Ui().Enabled("mnuOptionsUpgradeFirmware"), !online);
        EXPECT_TRUE(Ui().Enabled("mnuCommunications"));
        EXPECT_TRUE(Ui().Enabled("mnuOnline"));
        EXPECT_TRUE(Ui().Enabled("mnuFileExit"));
        EXPECT_TRUE(Ui().Enabled("Toolbar1(Exit)"));
    }
}

TEST_F(FormMainTest, LeavesTheOnlineMarkWhenTheConnectIsCancelled) {
    Start();
    WhenDialogOpens([](QWidget &dialog) { Form(dialog).Press("Cancel"); });
    Ui().Choose("mnuOnline");
    EXPECT_FALSE(Ui().Get<QAction>("mnuOnline").isChecked());
}

TEST_F(FormMainTest, LeavesTheOnlineMarkWhereADialogComesFirst) {
    Start();
    WhenDialogOpens([](QWidget &dialog) { Form(dialog).Press("Cancel"); });
    Ui().Get<QAction>("Toolbar1(Online)").trigger();
    Ui().Get<QAction>("mnuOnline").trigger();
    EXPECT_FALSE(WaitUntil([] { return false; }, 200));
    EXPECT_FALSE(form_->Link().PortIsOpen());
    EXPECT_FALSE(Ui().Get<QAction>("mnuOnline").isChecked());
}

TEST_F(FormMainTest, ComesBackNotFarLargerThanTheScreens) {
    settings_.Write(QStringLiteral("Startup"), QStringLiteral("Height"), QStringLiteral("900000"));
    settings_.Write(QStringLiteral("Startup"), QStringLiteral("Width"), QStringLiteral("900000"));
    Start();
    EXPECT_TRUE(WaitUntil([this] { return form_->isVisible(); }));
    const QSize screen = 2 * form_->screen()->virtualSize();
    EXPECT_LE(form_->width(), std::max(screen.width(), form_->minimumWidth()));
    EXPECT_LE(form_->height(), std::max(screen.height(), form_->minimumHeight()));
}

TEST_F(FormMainTest, AsksOnceForTwoQuickClicks) {
    Start();
    int asked = 0;
    WhenDialogOpens([&asked](QWidget &dialog) {
        ++asked;
        Form(dialog).Press("Cancel");
    });
    Ui().Get<QAction>("Toolbar1(Online)").trigger();
    Ui().Get<QAction>("Toolbar1(Online)").trigger();
    EXPECT_TRUE(WaitUntil([&asked] { return asked == 1 && QApplication::activeModalWidget() == nullptr; }));
    EXPECT_FALSE(form_->Link().PortIsOpen());
}

TEST_F(FormMainTest, AsksBeforeItReinitialises) {
    Start();
    const QString question =
        QStringLiteral("Are you sure? This will reset all parameters back to the factory default values.");
    Q_EMIT form_->Link().OnlineChanged(true);
    dialogs_.Expect(question, BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::No);
    Ui().Choose("mnuReinit");
    EXPECT_EQ(form_->Zentrova().ParamValue(3), 0);
    dialogs_.Expect(question, BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::Yes);
    Ui().Choose("mnuReinit");
    EXPECT_EQ(form_->Zentrova().ParamValue(3), 1);
}

TEST_F(FormMainTest, ClosesByMenuAndToolbar) {
    for (const char *name : {"mnuFileExit", "Toolbar1(Exit)"}) {
        Start();
        Ui().Choose(name);
        EXPECT_FALSE(form_->isVisible()) << name;
    }
}

// Files. --------------------------------------------------------------------------------------------

TEST_F(FormMainTest, SavesAndOpensByMenuAndToolbar) {
    Start();
    const QString file = configuration_.filePath(QStringLiteral("left.ztv"));
    form_->Zentrova().ParamValue(28, 4321);
    dialogs_.ExpectSaveFile(file);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Choose("Toolbar1(Save File)");
    EXPECT_EQ(form_->CurrentFileName(), file);
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("left.ztv - ZTV Link"));
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());

    Start();
    EXPECT_EQ(Ui().Text("TextParam(3)"), QStringLiteral("12.00\""));
    dialogs_.ExpectOpenFile(file);
    Ui().Choose("Toolbar1(Open File)");
    EXPECT_EQ(Ui().Text("TextParam(3)"), QStringLiteral("43.21\""));
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("left.ztv - ZTV Link"));

    const QString copy = configuration_.filePath(QStringLiteral("right.ztv"));
    dialogs_.ExpectSaveFile(copy);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Choose("mnuFileSave(1)");
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("right.ztv - ZTV Link"));
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Choose("mnuFileSave(0)");
    dialogs_.ExpectOpenFile(std::nullopt);
    Ui().Choose("mnuFileOpen");
    EXPECT_EQ(form_->CurrentFileName(), copy);
}

TEST_F(FormMainTest, ShowsTheLastComponentOfThePath) {
    Start();
    const char *rows[][2] = {{"a/b c.d.ztv", "b c.d.ztv - ZTV Link"},
                             {"a/x[*].ztv", "x[*][*].ztv - ZTV Link"},
                             {"a/roll\\left.ztv", "roll\\left.ztv - ZTV Link"}};
    QDir(configuration_.path()).mkdir(QStringLiteral("a"));
    for (const auto &row : rows) {
        dialogs_.ExpectSaveFile(configuration_.filePath(QString::fromLatin1(row[0])));
        dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
        Ui().Choose("mnuFileSave(1)");
        EXPECT_EQ(form_->windowTitle(), QString::fromLatin1(row[1]));
    }
}

// For example, when a file could only be loaded in part and none was open.
TEST_F(FormMainTest, KeepsItsCaptionWhileNoFileIsOpen) {
    Start();
    UpdateCaption(*form_, QStringLiteral("/a/old.ztv"));
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("old.ztv - ZTV Link"));
    UpdateCaption(*form_, form_->CurrentFileName());
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("old.ztv - ZTV Link"));
}

TEST_F(FormMainTest, KeepsItsCaptionWhenAFileCannotBeOpened) {
    Start();
    dialogs_.ExpectOpenFile(configuration_.filePath(QStringLiteral("nothing.ztv")));
    dialogs_.ExpectTextWith(QStringLiteral("there is no such file"), BoxIcon::None, QString());
    dialogs_.ExpectNotice(QStringLiteral("Error opening file!"));
    Ui().Choose("mnuFileOpen");
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("ZTV Link"));
    EXPECT_EQ(form_->CurrentFileName(), QString());
}

TEST_F(FormMainTest, OpensTheFileOfTheCommandLineUnderNoName) {
    const QString file = configuration_.filePath(QStringLiteral("left over.ztv"));
    ClassZentrova zentrova(ShippedPresetsFolder());
    zentrova.ParamValue(28, 4321);
    zentrova.SaveFile(file);
    Start(QStringLiteral("\"%1\"").arg(file));
    EXPECT_EQ(Ui().Text("TextParam(3)"), QStringLiteral("43.21\""));
    EXPECT_EQ(form_->CurrentFileName(), QString());
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("ZTV Link"));
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
}

TEST_F(FormMainTest, StartsQuietlyWithAFileThatCannotBeOpened) {
    Start(QStringLiteral("/nowhere/nothing.ztv"));
    EXPECT_EQ(Ui().Text("TextParam(3)"), QStringLiteral("12.00\""));
}

TEST_F(FormMainTest, RegistersItsFileTypeOnceInEachStart) {
    Start();
    EXPECT_EQ(registrations_, 1);
    Start();
    EXPECT_EQ(registrations_, 2);
}

TEST_F(FormMainTest, OpensTheMakersPagesInTheBrowser) {
    settings_.Write(QStringLiteral("Maker"), QStringLiteral("WebAddress"),
                    QStringLiteral("https://maker.example/a?b"));
    Start();
    EXPECT_EQ(Ui().Get<QAction>("mnuHalvernWeb").text(), QStringLiteral("maker.example/a?b"));
    Ui().Choose("mnuHalvernWeb");
    EXPECT_EQ(opened_, QUrl(QStringLiteral("https://maker.example/a?b")));
    const char *rows[][2] = {{"www.maker.example", "www.maker.example"},
                             {"http://maker.example/?a&b", "maker.example/?a&&b"}};
    for (const auto &row : rows) {
        settings_.Write(QStringLiteral("Maker"), QStringLiteral("WebAddress"), QString::fromLatin1(row[0]));
        Start();
        EXPECT_EQ(Ui().Get<QAction>("mnuHalvernWeb").text(), QString::fromLatin1(row[1]));
    }
    browser_ = false;
    dialogs_.ExpectTextWith(QStringLiteral("http://maker.example/?a&b"), BoxIcon::Exclamation);
    Ui().Choose("mnuHalvernWeb");
}

TEST_F(FormMainTest, EditsTheCommunicationSettings) {
    Start();
    WhenDialogOpens([](QWidget &dialog) {
        Form(dialog).Get<QLineEdit>("TextModbusAddress").setText(QStringLiteral("17"));
        Form(dialog).Press("CommandOK");
    });
    Ui().Choose("mnuCommunications");
    EXPECT_EQ(form_->ModbusAddress(), 17);
}

// Tabs. ---------------------------------------------------------------------------------------------

TEST_F(FormMainTest, ShowsThePageOfTheTabThatIsClicked) {
    Start(QStringLiteral("/checkout"));
    for (const int index : {3, 1, 2, 4, 0}) {
        ClickTab(index);
        EXPECT_EQ(form_->CurrentTab(), index + 1);
        EXPECT_EQ(VisiblePage(), index + 1);
    }
}

TEST_F(FormMainTest, TellsWhatTheWizardNeeds) {
    Start();
    EXPECT_EQ(
        Ui().Text("lblWizDesc"),
        QStringLiteral("A Wizard has been provided to assist users in setting up the Zentrova. Click the "
                       "'Start Wizard' button below to begin. You must be online to run the wizard."));
    EXPECT_EQ(Ui().Text("cmdStartWizard"), QStringLiteral("Start Wizard"));
}

TEST_F(FormMainTest, RefreshesThePageThatComesIntoView) {
    Start();
    form_->Zentrova().ParamUpdate(32, 12345);
    ClickTab(3);
    EXPECT_EQ(Ui().Text("LabelLargeLength"), QStringLiteral("123.45\""));
    form_->Zentrova().ParamUpdate(32, 106);
    EXPECT_EQ(Ui().Text("TextParam(6)"), QStringLiteral("0.00\"")); // not in view
    ClickTab(0);
    EXPECT_EQ(Ui().Text("TextParam(6)"), QStringLiteral("1.06\""));
}

TEST_F(FormMainTest, RefreshesNothingOnTheWizardTab) {
    Start();
    ClickTab(3);
    ClickTab(2);
    const QStringList names = {"TextParam(6)", "LabelMode", "LabelLargeLength", "LabelDist",
                               "TextCheckoutVoltageOut"};
    const auto texts = [&] {
        QStringList shown;
        for (const QString &name : names) {
            shown << Ui().Text(qPrintable(name));
        }
        shown << QString::number(Ui().Get<QProgressBar>("ProgressBar1").value());
        shown << Ui().Get<QTreeView>("ListView1").model()->index(31, 2).data().toString();
        return shown;
    };
    const QStringList before = texts();
    auto &page = Ui().Get<QWidget>("TabFrame(3)");
    Settle();
    const QImage picture = page.grab().toImage();
    for (const auto &[tag, value] : {std::pair{32, 5000}, {46, 250}, {39, 2}}) {
        form_->Zentrova().ParamUpdate(static_cast<std::int16_t>(tag), value);
    }
    for (int refresh = 0; refresh < 3; ++refresh) {
        Q_EMIT form_->Link().TableRefreshed();
        Settle();
    }
    EXPECT_EQ(texts(), before);
    EXPECT_TRUE(page.grab().toImage() == picture);
    EXPECT_FALSE(Ui().Get<QTimer>("Timer1").isActive());
    ClickTab(3);
    EXPECT_EQ(Ui().Text("LabelLargeLength"), QStringLiteral("50.00\""));
}

TEST_F(FormMainTest, DoesNothingOnTheTabThatShowsAlready) {
    Start();
    form_->Zentrova().ParamUpdate(32, 106);
    ClickTab(0);
    EXPECT_EQ(Ui().Text("TextParam(6)"), QStringLiteral("0.00\""));
}

TEST_F(FormMainTest, KeepsTheHelpContextOnTheCheckoutTab) {
    Start(QStringLiteral("/checkout"));
    EXPECT_EQ(form_->HelpContext(), 1020);
    const int contexts[] = {1020, 1030, 1040, 1050};
    for (const int index : {1, 2, 3, 0}) {
        ClickTab(index);
        EXPECT_EQ(form_->HelpContext(), contexts[index]);
    }
    ClickTab(2);
    ClickTab(4);
    EXPECT_EQ(form_->HelpContext(), 1040);
}

TEST_F(FormMainTest, ReachesEachTabByItsMnemonic) {
    Start(QStringLiteral("/checkout"));
    form_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    const std::pair<Qt::Key, int> keys[] = {
        {Qt::Key_A, 2}, {Qt::Key_W, 3}, {Qt::Key_D, 4}, {Qt::Key_C, 5}, {Qt::Key_B, 1}};
    for (const auto &[key, tab] : keys) {
        QTest::keyClick(form_.get(), key, Qt::AltModifier);
        EXPECT_EQ(form_->CurrentTab(), tab);
    }
}

TEST_F(FormMainTest, LeavesTheMnemonicOfTheCheckoutTabsOptionToIt) {
    Start(QStringLiteral("/checkout"));
    form_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    ClickTab(4);
    for (int round = 0; round < 2; ++round) {
        Ui().Get<QRadioButton>("OptionAnalogOut(4)").click();
        QTest::keyClick(form_.get(), Qt::Key_D, Qt::AltModifier);
        // A mnemonic presses the option for a moment, as a mouse does.
        EXPECT_TRUE(WaitUntil([&] { return Ui().Get<QRadioButton>("OptionAnalogOut(5)").isChecked(); }));
        EXPECT_EQ(form_->CurrentTab(), 5);
        EXPECT_TRUE(
            WaitUntil([&] { return form_->Zentrova().ParamValue(ParamDefines::AnalogOutputMode) == 1; }));
    }
    ClickTab(0);
    EXPECT_EQ(Strip().tabText(3), QStringLiteral("&Distance"));
    QTest::keyClick(form_.get(), Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ(form_->CurrentTab(), 4);
}

TEST_F(FormMainTest, KeepsTheOtherMnemonicsOnTheCheckoutTab) {
    Start(QStringLiteral("/checkout"));
    form_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    for (const auto &[key, tab] : {std::pair{Qt::Key_A, 2}, {Qt::Key_W, 3}, {Qt::Key_B, 1}}) {
        ClickTab(4);
        QTest::keyClick(form_.get(), key, Qt::AltModifier);
        EXPECT_EQ(form_->CurrentTab(), tab);
    }
}

TEST_F(FormMainTest, ChecksAnEntryThatIsLeftByWayOfTheMenuBar) {
    Start();
    form_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    auto &text1 = Ui().Get<QLineEdit>("Text1");
    auto &other = Ui().Get<QLineEdit>("TextParam(5)");
    for (const bool valid : {true, false}) {
        auto &box = Ui().Get<QLineEdit>("TextParam(2)");
        box.setFocus();
        QTest::keyClick(&box, valid ? Qt::Key_7 : Qt::Key_5);
        QTest::keyClick(&text1, Qt::Key_Alt);
        EXPECT_TRUE(form_->menuBar()->hasFocus());
        if (valid) {
            QDialog elsewhere;
            elsewhere.show();
            elsewhere.activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
            form_->activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
        }
        EXPECT_TRUE(text1.isVisible());
        if (!valid) {
            dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 6.00\" and 420.00\""),
                                  BoxIcon::None, QString());
        }
        QTest::mouseClick(form_->windowHandle(), Qt::LeftButton, {},
                          other.mapTo(form_.get(), other.rect().center()));
        Settle();
        EXPECT_EQ(text1.isVisible(), !valid);
        EXPECT_EQ(form_->focusWidget(), valid ? &other : &text1);
        EXPECT_EQ(form_->Zentrova().ParamValue(24), 700);
        if (valid) {
            EXPECT_EQ(other.selectedText(), other.text());
        } else {
            EXPECT_EQ(text1.selectedText(), QStringLiteral("5"));
        }
    }
    QTest::keyClick(&text1, Qt::Key_Alt); // there and back
    QTest::keyClick(form_->menuBar(), Qt::Key_Escape);
    EXPECT_TRUE(text1.hasFocus());
    EXPECT_EQ(text1.text(), QStringLiteral("5"));
    EXPECT_TRUE(text1.isVisible());
}

TEST_F(FormMainTest, KeepsAnEntryBehindAMenuThatIsOpenedByItsMnemonic) {
    Start();
    form_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    auto &box = Ui().Get<QLineEdit>("TextParam(2)");
    auto &text1 = Ui().Get<QLineEdit>("Text1");
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_5); // too small, but the focus stays in the box
    QTest::keyClick(&text1, Qt::Key_F, Qt::AltModifier);
    Settle();
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    EXPECT_TRUE(text1.isVisible());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    Settle();
    if (form_->menuBar()->hasFocus()) {
        QTest::keyClick(form_->menuBar(), Qt::Key_Escape);
    }
    EXPECT_TRUE(text1.hasFocus());
    EXPECT_EQ(text1.text(), QStringLiteral("5"));
    EXPECT_TRUE(text1.isVisible());
}

TEST_F(FormMainTest, AnimatesTheBasicTabAlone) {
    Start(QStringLiteral("/checkout"));
    const auto *timer = form_->findChild<QTimer *>(QStringLiteral("Timer1"), Qt::FindDirectChildrenOnly);
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(timer->interval(), 50);
    EXPECT_TRUE(timer->isActive());
    for (const int index : {1, 2, 3, 4}) {
        ClickTab(index);
        EXPECT_FALSE(timer->isActive());
    }
    ClickTab(0);
    EXPECT_TRUE(timer->isActive());
}

TEST_F(FormMainTest, SetsTheBasicTabToTheModeOfTheTable) {
    Start();
    EXPECT_TRUE(Ui().Get<QWidget>("TextParam(1)").isVisible());
    form_->Zentrova().ParamUpdate(ParamDefines::AnalogOutputMode, 2);
    EXPECT_TRUE(Ui().Get<QWidget>("TextParam(1)").isVisible());
    Q_EMIT form_->Link().FirstReadComplete();
    EXPECT_FALSE(Ui().Get<QWidget>("TextParam(1)").isVisible());
    form_->Zentrova().ParamUpdate(ParamDefines::AnalogOutputMode, 0);
    ClickTab(3); // for each tab
    ClickTab(0);
    EXPECT_TRUE(Ui().Get<QWidget>("FrameManOutput").isVisible());
}

TEST_F(FormMainTest, SetsTheBasicTabToTheModeWhoseWriteStillWaits) {
    Start(QStringLiteral("/Checkout"));
    ClickTab(4);
    Settle();
    FakeLink link;
    form_->Zentrova().ConnectTo(&link);
    link.holds = true;
    Ui().Get<QRadioButton>("OptionAnalogOut(1)").setChecked(true);
    Ui().Get<QRadioButton>("OptionAnalogOut(5)").setChecked(true);
    ClickTab(0);
    EXPECT_EQ(form_->CurrentTab(), 1);
    EXPECT_EQ(form_->Zentrova().ParamValue(ParamDefines::AnalogOutputMode), 1);
    EXPECT_TRUE(Ui().Get<QWidget>("TextParam(0)").isVisible());
    link.EndWrites(form_->Zentrova());
    EXPECT_EQ(link.writes.back(), std::make_pair(39, 1));
    form_->Zentrova().ConnectTo(&form_->Link());
}

TEST_F(FormMainTest, TheCheckoutTabPutsAFileOfHyperbolicModeBackOnItsFirstEntryAlone) {
    const QString file = configuration_.filePath(QStringLiteral("roll.ztv"));
    {
        ClassZentrova other(presets_);
        other.ParamUpdate(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
        ASSERT_FALSE(other.SaveFile(file));
    }
    const auto mode = [this] { return form_->Zentrova().ParamValue(ParamDefines::AnalogOutputMode); };
    Start(QStringLiteral("/checkout \"%1\"").arg(file));
    EXPECT_EQ(mode(), ParamDefines::HyperbolicMode);
    ClickTab(4);
    EXPECT_EQ(mode(), ParamDefines::LinearMode);
    EXPECT_TRUE(form_->Zentrova().FileChangesNeedSaving());
    EXPECT_TRUE(Ui().Get<QRadioButton>("OptionAnalogOut(5)").isChecked());

    dialogs_.Expect(QStringLiteral("Save changes in file ?"), BoxIcon::Question, BoxButtons::YesNoCancel,
                    BoxAnswer::No);
    dialogs_.ExpectOpenFile(file); // while the tab shows
    Ui().Choose("mnuFileOpen");
    EXPECT_EQ(mode(), ParamDefines::HyperbolicMode);
    ClickTab(0);
    EXPECT_FALSE(Ui().Enabled("TextParam(3)"));
    ClickTab(4);
    EXPECT_EQ(mode(), ParamDefines::HyperbolicMode); // the option was selected already
    Ui().Get<QRadioButton>("OptionAnalogOut(0)").click();
    ClickTab(0);
    ClickTab(4);
    EXPECT_EQ(mode(), ParamDefines::LinearMode);
}

TEST_F(FormMainTest, WritesTheNearDistanceOfARollWhenAFileBringsHyperbolicMode) {
    const QString file = configuration_.filePath(QStringLiteral("roll.ztv"));
    ClassZentrova zentrova(ShippedPresetsFolder());
    zentrova.ParamValue(ParamDefines::AnalogOutputMode, 2);
    zentrova.SaveFile(file);
    Start();
    dialogs_.ExpectOpenFile(file);
    Ui().Choose("mnuFileOpen");
    // 36000 - (2400 - 300) / 2
    EXPECT_EQ(Ui().Text("TextParam(3)"), QStringLiteral("349.50\""));
}

TEST_F(FormMainTest, PutsTheMarkersBackWhenAnEntryIsLeft) {
    Start();
    form_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    auto &marker = Ui().Get<QWidget>("PicRelay(0)");
    const int before = marker.x();
    auto &box = Ui().Get<QLineEdit>("TextParam(3)");
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_5);
    auto &editor = Ui().Get<QLineEdit>("Text1");
    QTest::keyClicks(&editor, QStringLiteral("0"));
    QTest::keyClick(&editor, Qt::Key_Return);
    EXPECT_EQ(Ui().Text("TextParam(3)"), QStringLiteral("50.00\""));
    EXPECT_NE(marker.x(), before);
}

TEST_F(FormMainTest, ShowsTheChartOfTheTableAtEachRefresh) {
    Start();
    const int before = Ui().Get<QWidget>("PicRelay(1)").x();
    form_->Zentrova().ParamUpdate(57, 12000);
    form_->Zentrova().ParamUpdate(ParamDefines::AnalogOutputMode, 2);
    Q_EMIT form_->Link().TableRefreshed();
    EXPECT_LT(Ui().Get<QWidget>("PicRelay(1)").x(), before);
    EXPECT_FALSE(Ui().Enabled("TextParam(3)"));
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving()); // only a new configuration writes
}

// Commands during an entry. ------------------------------------------------------------------------------

class EntryAndCommandsTest : public FormMainTest {
protected:
    EntryAndCommandsTest() {
        Start();
        form_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    }

    QLineEdit &Text1() const { return Ui().Get<QLineEdit>("Text1"); }
    QComboBox &Combo1() const { return Ui().Get<QComboBox>("Combo1"); }
    std::int32_t Value(std::int16_t tag) const { return form_->Zentrova().ParamValue(tag); }

    // Types for the near distance, on the Basic tab.
    void Type(const char *text) {
        auto &box = Ui().Get<QLineEdit>("TextParam(3)");
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Right);
        EXPECT_TRUE(Text1().hasFocus());
        QTest::keyClicks(&Text1(), QString::fromLatin1(text));
    }
    void EditInList(std::int16_t tag) {
        ClickTab(1);
        auto &list = Ui().Get<QTreeView>("ListView1");
        list.setFocus();
        list.setCurrentIndex(list.model()->index(tag - 1, 0));
        QTest::keyClick(&list, Qt::Key_F2);
    }
    void ExpectRefusal() {
        dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 6.00\" and 420.00\""),
                              BoxIcon::None, QString());
    }
    void ExpectStillTyping(const char *text) {
        EXPECT_TRUE(dialogs_.AllCame());
        EXPECT_TRUE(form_->isVisible());
        EXPECT_TRUE(Text1().hasFocus());
        EXPECT_EQ(Text1().selectedText(), QString::fromLatin1(text));
        EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
    }
    // Clicks the button, which doesn't get the focus.
    void ClickButton(const char *name) {
        QTest::mouseClick(&Ui().Get<QToolButton>(name), Qt::LeftButton);
        Settle();
    }

    std::int32_t ValueInFile(const QString &name, std::int16_t tag) {
        ClassZentrova other(presets_);
        EXPECT_EQ(other.OpenFile(name).result, FileOpened::Whole);
        return other.ParamValue(tag);
    }

    QString file_ = configuration_.filePath(QStringLiteral("typed.ztv"));
};

TEST_F(EntryAndCommandsTest, AFileIsSavedWithWhatIsBeingTyped) {
    const std::function<void()> ways[] = {[this] { ClickButton("Save File"); },
                                          [this] { Ui().Choose("mnuFileSave(0)"); },
                                          [this] { Ui().Choose("mnuFileSave(1)"); }};
    int raw = 1300;
    for (const auto &save : ways) {
        Type(qPrintable(QString::number(raw / 100)));
        if (raw == 1300 || &save == &ways[2]) {
            dialogs_.ExpectSaveFile(file_);
        }
        dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
        save();
        EXPECT_EQ(ValueInFile(file_, ParamDefines::NearDistance), raw);
        EXPECT_TRUE(Text1().isHidden());
        EXPECT_TRUE(Ui().Get<QLineEdit>("TextParam(3)").hasFocus());
        EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
        raw += 100;
    }
}

TEST_F(EntryAndCommandsTest, AFileIsSavedWithWhatIsTypedByWayOfTheMenusKeys) {
    Type("13");
    dialogs_.ExpectSaveFile(file_);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    QTest::keyClick(form_.get(), Qt::Key_F, Qt::AltModifier);
    ASSERT_TRUE(WaitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_S);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(ValueInFile(file_, ParamDefines::NearDistance), 1300);
}

TEST_F(EntryAndCommandsTest, ARefusedTextKeepsACommandFromRunning) {
    form_->Zentrova().ConnectTo(nullptr);
    Q_EMIT form_->Link().OnlineChanged(true); // "Save ZTV" is enabled
    Type("5");
    const std::function<void()> ways[] = {
        [this] { ClickButton("Save File"); },      [this] { Ui().Choose("mnuFileSave(0)"); },
        [this] { Ui().Choose("mnuFileSave(1)"); }, [this] { ClickButton("Save ZTV"); },
        [this] { ClickButton("Exit"); },           [this] { Ui().Choose("mnuFileExit"); },
        [this] { EXPECT_FALSE(form_->close()); }};
    for (const auto &command : ways) {
        ExpectRefusal();
        command();
        ExpectStillTyping("5");
        EXPECT_EQ(Value(ParamDefines::SaveCommand), 0);
    }
}

TEST_F(EntryAndCommandsTest, TheSensorSavesWhatIsBeingTyped) {
    FakeLink link;
    form_->Zentrova().ConnectTo(&link);
    Q_EMIT form_->Link().OnlineChanged(true);
    Type("13");
    ClickButton("Save ZTV");
    EXPECT_EQ(link.writes, (std::vector<std::pair<int, int>>{{28, 1300}, {1, 1}}));
    EXPECT_TRUE(Text1().isHidden());
    form_->Zentrova().ConnectTo(&form_->Link());
}

TEST_F(EntryAndCommandsTest, WhatIsBeingTypedIsAChangeThatTheProgramAsksAboutAsItCloses) {
    Type("13");
    dialogs_.Expect(
        QStringLiteral("The currently open file has been changed. Do you want to save the changes?"),
        BoxIcon::Question, BoxButtons::YesNoCancel, BoxAnswer::Cancel);
    EXPECT_FALSE(form_->close());
    EXPECT_EQ(Value(ParamDefines::NearDistance), 1300);
    EXPECT_TRUE(Text1().isHidden());
    Type("12");
    dialogs_.Expect(
        QStringLiteral("The currently open file has been changed. Do you want to save the changes?"),
        BoxIcon::Question, BoxButtons::YesNoCancel, BoxAnswer::No);
    ClickButton("Exit");
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(Value(ParamDefines::NearDistance), 1200);
}

TEST_F(EntryAndCommandsTest, NothingTypedIsNoReasonToStay) {
    Type("1");
    QTest::keyClick(&Text1(), Qt::Key_Backspace);
    EXPECT_TRUE(form_->close());
    EXPECT_EQ(Value(ParamDefines::NearDistance), 1200);
}

TEST_F(EntryAndCommandsTest, AnUntouchedTextIsNoChange) {
    Type("");
    EXPECT_TRUE(form_->close());
}

TEST_F(EntryAndCommandsTest, TheListsEditorsAreLeftToo) {
    EditInList(ParamDefines::NearDistance);
    QTest::keyClicks(&Text1(), QStringLiteral("14"));
    dialogs_.ExpectSaveFile(file_);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    ClickButton("Save File");
    EXPECT_EQ(ValueInFile(file_, ParamDefines::NearDistance), 1400);
    EXPECT_TRUE(Text1().isHidden());

    ClickTab(0);
    EditInList(ParamDefines::AnalogOutputMode);
    ASSERT_TRUE(Combo1().isVisible());
    QTest::keyClick(&Combo1(), Qt::Key_Down);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    ClickButton("Save File");
    EXPECT_TRUE(Combo1().isHidden());
    EXPECT_EQ(ValueInFile(file_, ParamDefines::AnalogOutputMode), 2);
    EXPECT_TRUE(Ui().Get<QTreeView>("ListView1").hasFocus());
}

TEST_F(EntryAndCommandsTest, ACommandFindsTheValueWhoseWriteWaits) {
    FakeLink link;
    form_->Zentrova().ConnectTo(&link);
    link.holds = true;
    form_->Zentrova().ParamValue(ParamDefines::ClockOut, 1);
    Type("13");
    dialogs_.ExpectSaveFile(file_);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    QTest::keyClick(&Text1(), Qt::Key_Return);
    ClickButton("Save File");
    EXPECT_TRUE(dialogs_.AllCame());
    EXPECT_EQ(ValueInFile(file_, ParamDefines::NearDistance), 1300);
    Type("14");
    QTest::keyClick(&Text1(), Qt::Key_Return);
    form_->Zentrova().ParamValue(ParamDefines::SaveCommand, ParamDefines::StoreSettings);
    link.EndWrites(form_->Zentrova());
    const std::vector<std::pair<int, int>> expected = {{23, 1}, {28, 1400}, {1, 1}};
    EXPECT_EQ(link.writes, expected);
    form_->Zentrova().ConnectTo(&form_->Link());
}

TEST_F(EntryAndCommandsTest, ClosesOnceTheWaitingWritesAreSentAndAsksOnce) {
    FakeLink link;
    form_->Zentrova().ConnectTo(&link);
    link.holds = true;
    form_->Zentrova().ParamValue(ParamDefines::ClockOut, 1);
    Type("13");
    EXPECT_FALSE(form_->close());
    EXPECT_FALSE(form_->close());
    Settle();
    EXPECT_TRUE(form_->isVisible());
    const auto expectQuestion = [this](BoxAnswer answer) {
        dialogs_.Expect(
            QStringLiteral("The currently open file has been changed. Do you want to save the changes?"),
            BoxIcon::Question, BoxButtons::YesNoCancel, answer);
    };
    expectQuestion(BoxAnswer::Cancel);
    link.EndWrites(form_->Zentrova());
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    Settle();
    EXPECT_TRUE(form_->isVisible());
    const std::vector<std::pair<int, int>> expected = {{23, 1}, {28, 1300}};
    EXPECT_EQ(link.writes, expected);

    expectQuestion(BoxAnswer::No);
    EXPECT_TRUE(form_->close());
    form_->Zentrova().ConnectTo(&form_->Link());
}

// The program can't end behind a dialog.
TEST_F(EntryAndCommandsTest, ClosesAfterADialogThatIsOpenWhenTheWaitingWritesAreSent) {
    FakeLink link;
    form_->Zentrova().ConnectTo(&link);
    link.holds = true;
    form_->Zentrova().ParamValue(ParamDefines::ClockOut, 1);
    form_->Zentrova().ParamValue(ParamDefines::NearDistance, 1300);
    EXPECT_FALSE(form_->close());
    bool came = false;
    WhenDialogOpens([&](QWidget &dialog) {
        link.EndWrites(form_->Zentrova());
        Settle();
        EXPECT_TRUE(form_->isVisible());
        EXPECT_TRUE(dialog.isVisible());
        form_->Zentrova().ParamValue(ParamDefines::ClockOut, 0);
        form_->Zentrova().ParamValue(ParamDefines::NearDistance, 1400);
        EXPECT_TRUE(form_->Zentrova().WritesWait());
        dialogs_.Expect(
            QStringLiteral("The currently open file has been changed. Do you want to save the changes?"),
            BoxIcon::Question, BoxButtons::YesNoCancel, BoxAnswer::No);
        dialog.close();
        came = true;
    });
    Ui().Choose("mnuHelpAbout");
    EXPECT_TRUE(WaitUntil([&came] { return came; }));
    Settle();
    EXPECT_TRUE(form_->isVisible());
    link.EndWrites(form_->Zentrova());
    EXPECT_TRUE(WaitUntil([this] { return !form_->isVisible(); }));
    form_->Zentrova().ConnectTo(&form_->Link());
}

// Size. ---------------------------------------------------------------------------------------------

TEST_F(FormMainTest, IsNeverSmallerThanItsLeastSize) {
    Start();
    EXPECT_EQ(form_->size(), QSize(10200 / 15, 8940 / 15));
    form_->resize(100, 100);
    EXPECT_EQ(form_->size(), QSize(10200 / 15, 8940 / 15));
}

TEST_F(FormMainTest, LaysOutTheStripAndThePageThatShows) {
    Start();
    for (const QSize size : {QSize(680, 596), QSize(1000, 800)}) {
        form_->resize(size);
        const QRect strip = Strip().geometry();
        EXPECT_EQ(strip.width(), (size.width() * 15 - 350 + 7) / 15);
        EXPECT_EQ(strip.height(), (size.height() * 15 - 2300 + 7) / 15);
        const QRect page = Ui().Get<QWidget>("TabFrame(1)").geometry();
        EXPECT_NEAR(page.left() - strip.left(), 250 / 15.0, 1);
        EXPECT_NEAR(page.top() - strip.top(), 325 / 15.0, 1);
        EXPECT_NEAR(page.width(), strip.width() - 400 / 15.0, 1);
        EXPECT_NEAR(page.height(), strip.height() - 800 / 15.0, 1);
        EXPECT_TRUE(form_->centralWidget()->rect().contains(strip));
    }
    ClickTab(3);
    EXPECT_EQ(Ui().Get<QWidget>("TabFrame(4)").geometry(), Ui().Get<QWidget>("TabFrame(1)").geometry());
}

TEST_F(FormMainTest, LaysNothingOutWhileItIsMinimised) {
    Start();
    form_->resize(1000, 800);
    const QRect before = Strip().geometry();
    form_->showMinimized();
    form_->resize(700, 600);
    EXPECT_EQ(form_->size(), QSize(700, 600));
    EXPECT_EQ(Strip().geometry(), before);
    form_->showNormal();
    form_->resize(900, 700);
    EXPECT_EQ(Strip().width(), (900 * 15 - 350 + 7) / 15);
}

TEST_F(FormMainTest, LaysThePagesOutWithinWhatADockLeaves) {
    Start();
    form_->resize(1200, 1000);
    const auto pageSize = [this] { return Ui().Get<QWidget>("TabFrame(1)").size(); };
    const QSize strip = Strip().size();
    const QSize page = pageSize();
    const QSize area = form_->centralWidget()->size();
    QDockWidget *dock = AddDock(Qt::LeftDockWidgetArea);
    for (const Qt::DockWidgetArea side :
         {Qt::LeftDockWidgetArea, Qt::RightDockWidgetArea, Qt::TopDockWidgetArea}) {
        form_->addDockWidget(side, dock);
        dock->show();
        EXPECT_TRUE(WaitUntil([&] { return form_->centralWidget()->size() != area; }));
        const QSize lost = area - form_->centralWidget()->size();
        EXPECT_EQ(Strip().size(), strip - lost);
        EXPECT_EQ(pageSize(), page - lost);
        EXPECT_TRUE(form_->centralWidget()->rect().contains(Strip().geometry()));
        dock->hide();
        EXPECT_TRUE(WaitUntil([&] { return form_->centralWidget()->size() == area; }));
        EXPECT_EQ(Strip().size(), strip);
        EXPECT_EQ(pageSize(), page);
    }
}

TEST_F(FormMainTest, LaysThePagesOutBelowATallerToolbar) {
    Start();
    form_->resize(1000, 900);
    const QSize strip = Strip().size();
    const QSize page = Ui().Get<QWidget>("TabFrame(1)").size();
    auto &toolbar = Ui().Get<QWidget>("Toolbar1");
    const QSize lost(0, 100);
    toolbar.setFixedHeight(toolbar.height() + lost.height());
    EXPECT_TRUE(WaitUntil([&] { return Strip().size() == strip - lost; }));
    EXPECT_EQ(Ui().Get<QWidget>("TabFrame(1)").size(), page - lost);
    ClickTab(1);
    EXPECT_EQ(Ui().Get<QWidget>("TabFrame(2)").size(), page - lost);
}

TEST_F(FormMainTest, KeepsTheValueBoxOverWhatItCoversWhileADockComes) {
    Start();
    form_->resize(1200, 1000);
    auto &box = Ui().Get<QLineEdit>("TextParam(3)");
    form_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_7);
    auto &text1 = Ui().Get<QLineEdit>("Text1");
    EXPECT_TRUE(text1.isVisible());
    const auto place = [this](const QWidget &widget) {
        return QRect(widget.mapTo(form_.get(), QPoint()), widget.size());
    };
    EXPECT_EQ(place(text1), place(box));
    const QRect before = place(box);
    AddDock(Qt::LeftDockWidgetArea);
    EXPECT_TRUE(WaitUntil([&] { return place(box) != before && place(text1) == place(box); }));
    EXPECT_TRUE(text1.isVisible());
}

TEST_F(FormMainTest, LeavesABandFreeBetweenThePagesAndTheStatusBar) {
    Start();
    int height = 0;
    for (const QSize size : {QSize(680, 596), QSize(1000, 800)}) {
        form_->resize(size);
        const QRect band = form_->findChild<TabFrames *>()->Band();
        EXPECT_TRUE(form_->centralWidget()->rect().contains(band));
        EXPECT_EQ(band.width(), Strip().width());
        EXPECT_EQ(band.top(), Strip().geometry().bottom() + 1);
        EXPECT_EQ(band.bottom(), form_->centralWidget()->rect().bottom());
        EXPECT_GT(band.height(), 20);
        EXPECT_TRUE(height == 0 || height == band.height());
        height = band.height();
    }
}

// Unload. -------------------------------------------------------------------------------------------

TEST_F(FormMainTest, AsksAboutUnsavedChangesBeforeItCloses) {
    const QString question =
        QStringLiteral("The currently open file has been changed. Do you want to save the changes?");
    Start();
    form_->Link().ModbusAddress(99);
    form_->Zentrova().ParamValue(28, 4321);
    dialogs_.Expect(question, BoxIcon::Question, BoxButtons::YesNoCancel, BoxAnswer::Cancel);
    form_->close();
    EXPECT_TRUE(form_->isVisible());
    EXPECT_EQ(StoredText(settings_, "Options", "NetworkAddress"), QStringLiteral("nothing"));

    dialogs_.Expect(question, BoxIcon::Question, BoxButtons::YesNoCancel, BoxAnswer::No);
    form_->close();
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(StoredText(settings_, "Options", "NetworkAddress"), QStringLiteral("99"));
    EXPECT_TRUE(form_->Zentrova().FileChangesNeedSaving());
}

TEST_F(FormMainTest, SavesUnsavedChangesAndCloses) {
    const QString file = configuration_.filePath(QStringLiteral("left.ztv"));
    Start();
    form_->Zentrova().ParamValue(28, 4321);
    dialogs_.Expect(
        QStringLiteral("The currently open file has been changed. Do you want to save the changes?"),
        BoxIcon::Question, BoxButtons::YesNoCancel, BoxAnswer::Yes);
    dialogs_.ExpectSaveFile(file);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    form_->close();
    EXPECT_FALSE(form_->isVisible());
    EXPECT_TRUE(QFile::exists(file));
}

TEST_F(FormMainTest, ClosesAfterASaveThatWasCancelledOrFailed) {
    for (const std::optional<QString> &file :
         {std::optional<QString>(), std::optional(QStringLiteral("/no/where.ztv"))}) {
        Start();
        form_->Zentrova().ParamValue(28, 4321);
        dialogs_.Expect(
            QStringLiteral("The currently open file has been changed. Do you want to save the changes?"),
            BoxIcon::Question, BoxButtons::YesNoCancel, BoxAnswer::Yes);
        dialogs_.ExpectSaveFile(file);
        form_->close();
        EXPECT_FALSE(form_->isVisible());
    }
}

TEST_F(FormMainTest, LeavesItsSettingsToTheNextRun) {
    Start();
    form_->Link().CommPort(12);
    form_->Link().BaudRate(2);
    form_->Link().ParityStop(0);
    form_->Link().ModbusAddress(99);
    form_->resize(900, 700);
    form_->move(30, 40);
    form_->close();
    const char *rows[][3] = {
        {"Options", "CommPort", "12"},       {"Options", "BaudRate", "2"},    {"Options", "ParityStop", "0"},
        {"Options", "NetworkAddress", "99"}, {"Startup", "WindowState", "0"}, {"Startup", "Top", "600"},
        {"Startup", "Left", "450"},          {"Startup", "Height", "10500"},  {"Startup", "Width", "13500"}};
    for (const auto &row : rows) {
        EXPECT_EQ(StoredText(settings_, row[0], row[1]), QString::fromLatin1(row[2])) << row[1];
    }
    Start();
    EXPECT_EQ(form_->size(), QSize(900, 700));
    EXPECT_EQ(form_->pos(), QPoint(30, 40));
    EXPECT_EQ(form_->ModbusAddress(), 99);
}

TEST_F(FormMainTest, KeepsTheNormalPlaceWhenItClosesMaximised) {
    WriteWindowPlace(settings_, {.top = 300, .left = 150, .height = 9000, .width = 10500});
    Start();
    form_->showMaximized();
    form_->close();
    EXPECT_EQ(StoredText(settings_, "Startup", "WindowState"), QStringLiteral("2"));
    EXPECT_EQ(StoredText(settings_, "Startup", "Top"), QStringLiteral("300"));
    EXPECT_EQ(StoredText(settings_, "Startup", "Width"), QStringLiteral("10500"));
    Start();
    EXPECT_TRUE(form_->isMaximized());
}

TEST_F(FormMainTest, ComesBackMinimised) {
    WriteWindowState(settings_, WindowState::Minimised);
    Start();
    EXPECT_TRUE(form_->isMinimized());
    form_->showNormal();
    EXPECT_FALSE(form_->isMinimized());
    EXPECT_EQ(VisiblePage(), 1);
}

TEST_F(FormMainTest, SavesNothingOfTheWindowWhenItClosesMinimised) {
    Start();
    form_->showMinimized();
    form_->close();
    EXPECT_EQ(StoredText(settings_, "Options", "CommPort"), QStringLiteral("1"));
    EXPECT_EQ(StoredText(settings_, "Startup", "WindowState"), QStringLiteral("nothing"));
    EXPECT_EQ(StoredText(settings_, "Startup", "Top"), QStringLiteral("nothing"));
}

TEST_F(FormMainTest, ComesBackIntoReachFromAScreenThatIsGone) {
    WriteWindowPlace(settings_, {.top = 900000, .left = -900000, .height = 9000, .width = 10500});
    Start();
    EXPECT_EQ(form_->pos(), QPoint(0, 0));
}

} // namespace ztv
