// Tests the help from the program's forms: their requests, and the page that appears.

#include "help/HelpTopics.h"
#include "help/ui/HelpViewer.h"
#include "help/ui/HelpWindow.h"
#include "shell/FormAbout.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include "firmware/ui/FormUpgradeFirmware.h"
#include "link/ui/FormComms.h"
#include "link/ui/FormReadWrite.h"
#include "link/ui/FormSearch.h"
#include "setup/ui/FormTransmitDelay.h"
#include "setup/ui/frmWizard.h"
#include "shell/Application.h"
#include "tabs/TabTable.h"
#include "tabs/ui/FormEdit.h"

#include <QDir>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QWindow>

namespace ztv {

class AskedHelpTest : public MainFormTest {
protected:
    QString File() const { return QDir::toNativeSeparators(presets_ + QStringLiteral("/ZTV.chm")); }

    // Presses F1 and each of the dialog's help buttons, then closes it.
    void ExpectTopicOf(QWidget &form, std::int32_t number, const char *button = nullptr) {
        form.show();
        form.activateWindow();
        EXPECT_TRUE(WaitUntil([&form] { return form.isActiveWindow(); }));
        const std::vector expected = {HelpCall{form.winId(), File(), HelpCommand::Context, number}};
        QTest::keyClick(form.focusWidget() == nullptr ? &form : form.focusWidget(), Qt::Key_F1);
        Settle();
        EXPECT_EQ(help_.Take(), expected) << form.objectName().toStdString();
        if (button != nullptr) {
            Form(form).Press(button);
            EXPECT_EQ(help_.Take(), expected) << form.objectName().toStdString();
        }
        EXPECT_TRUE(form.isVisible());
        EXPECT_NE(HelpTopics::Read(QStringLiteral(ZTV_BIN_DIR "/help")).OfNumber(number), nullptr)
            << form.objectName().toStdString();
        form.close();
    }
};

TEST_F(AskedHelpTest, IsAFileInTheProgramsFolder) {
    Start();
    EXPECT_EQ(form_->hHelp().CHMFile(), File());
}

TEST_F(AskedHelpTest, ShowsTheContentsFromTheMenuTheToolbarAndF1) {
    Start();
    form_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    const std::vector contents = {
        HelpCall{form_->winId(), File(), HelpCommand::Contents, QStringLiteral("0")}};
    Ui().Choose("mnuZtvHelp");
    EXPECT_EQ(help_.Take(), contents);
    Ui().Choose("Toolbar1(Help)");
    EXPECT_EQ(help_.Take(), contents);
    QTest::keyClick(form_.get(), Qt::Key_F1);
    Settle();
    EXPECT_EQ(help_.Take(), contents);
}

TEST_F(AskedHelpTest, ShowsTheTopicOfEachDialog) {
    Start();
    ClassMyHtmlHelp &help = form_->hHelp();
    FormReadWrite direction(help);
    ExpectTopicOf(direction, FormReadWrite::HelpContextID);
    FormComms comms(form_->Link(), form_->Zentrova(), dialogs_, settings_, help);
    ExpectTopicOf(comms, FormComms::HelpContextID, "CommandHelp");
    FormSearch search(form_->Link(), form_->Zentrova(), dialogs_, help,
                      {.port = 1, .baud = 4, .parityStop = 1});
    ExpectTopicOf(search, FormSearch::HelpContextID, "CommandHelp");
    frmWizard wizard(form_->Zentrova(), dialogs_, help);
    ExpectTopicOf(wizard, frmWizard::HelpContextID, "cmdNav(0)");
    FormTransmitDelay calculator(form_->Zentrova(), form_->Link(), dialogs_, help);
    ExpectTopicOf(calculator, FormTransmitDelay::HelpContextID, "CommandHelp");
    EntryRules rules(form_->Zentrova(), dialogs_);
    FormEdit edit(rules, dialogs_, help);
    edit.RawMax = 4095;
    edit.EngMax = 10;
    edit.SetEntry(QStringLiteral("0"), QStringLiteral("40"));
    ExpectTopicOf(edit, FormEdit::HelpContextID);
    BootComm boot([](auto &, auto) { return nullptr; });
    FormUpgradeFirmware upgrade({.bootComm = boot,
                                 .link = form_->Link(),
                                 .zentrova = form_->Zentrova(),
                                 .dialogs = dialogs_,
                                 .help = help,
                                 .programFolder = presets_,
                                 .showInEditor = [](auto &, auto &) { return false; }});
    ExpectTopicOf(upgrade, FormUpgradeFirmware::HelpContextID);
    FormAbout about({}, {}, help);
    ExpectTopicOf(about, FormAbout::HelpContextID);
}

TEST_F(AskedHelpTest, IsThereOnEachStepOfTheWizard) {
    Start();
    frmWizard wizard(form_->Zentrova(), dialogs_, form_->hHelp());
    wizard.show();
    EXPECT_TRUE(Form(wizard).Enabled("cmdNav(0)"));
    Form(wizard).Press("cmdNav(3)");
    EXPECT_TRUE(Form(wizard).Enabled("cmdNav(0)"));
}

// The help in its window. ---------------------------------------------------------------------------

class ShownHelpTest : public MainFormTest {
protected:
    HelpEngine &Engine() override { return viewer_; }

    static HelpWindow *Window() {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (auto *help = qobject_cast<HelpWindow *>(window)) {
                return help;
            }
        }
        return nullptr;
    }
    static std::int32_t Shown() {
        return Window() == nullptr || !Window()->isVisible() ? 0 : Window()->Topic()->number;
    }
    static HelpPage &Page() { return Form(*Window()).Get<HelpPage>("Page"); }

    // Clicks through the window system, so that a blocked window doesn't get the click.
    static void Click(QWidget &widget, const QPoint &place) {
        QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, {},
                          widget.mapTo(widget.window(), place));
        Settle();
    }
    static void ClickTopic(const char *title) {
        auto &contents = Form(*Window()).Get<QTreeWidget>("Contents");
        const auto items =
            contents.findItems(QString::fromLatin1(title), Qt::MatchExactly | Qt::MatchRecursive);
        ASSERT_EQ(items.size(), 1) << title;
        Click(*contents.viewport(), contents.visualItemRect(items.first()).center());
    }
    // Expects that the window can be clicked, scrolled and typed into.
    static void ExpectUsable() {
        ClickTopic("Troubleshooting");
        EXPECT_EQ(Shown(), 1300);
        QScrollBar &bar = *Page().verticalScrollBar();
        EXPECT_EQ(bar.value(), 0);
        Click(bar, QPoint(bar.width() / 2, bar.height() - bar.width() * 2));
        EXPECT_GT(bar.value(), 0);
        ClickTopic("First steps");
        EXPECT_EQ(Shown(), 1005);
    }

    HelpViewer viewer_{dialogs_, [](const QUrl &) { return false; }};
};

TEST_F(ShownHelpTest, OpensAtTheTopicOfTheTab) {
    Start(QStringLiteral("/checkout"));
    auto &strip = Ui().Get<QTabWidget>("TabStrip1");
    const std::pair<int, int> rows[] = {{0, 1020}, {1, 1030}, {2, 1040}, {3, 1050},
                                        {4, 1050}, {0, 1020}, {4, 1020}};
    for (const auto &[tab, topic] : rows) {
        strip.setCurrentIndex(tab);
        Ui().Choose("mnuZtvHelp");
        EXPECT_EQ(Shown(), topic) << tab;
    }
    EXPECT_EQ(Form(*Window()).Get<QTabWidget>("Lists").currentIndex(), 0);
}

TEST_F(ShownHelpTest, HasATopicForEachNumberThatTheTabsGive) {
    const HelpTopics topics = HelpTopics::Read(QStringLiteral(ZTV_BIN_DIR "/help"));
    for (const Tab::Description &tab : Tab::Table) {
        if (tab.helpContext != 0) {
            ASSERT_NE(topics.OfNumber(tab.helpContext), nullptr);
            EXPECT_EQ(topics.OfNumber(tab.helpContext)->title,
                      QLatin1String(tab.key) + QStringLiteral(" tab"));
        }
    }
    EXPECT_EQ(topics.OfNumber(1170)->title, QStringLiteral("Upgrade Firmware"));
    EXPECT_EQ(topics.OfNumber(1200)->title, QStringLiteral("Settings files"));
}

TEST_F(ShownHelpTest, CanBeUsedWhileADialogIsOpen) {
    Start();
    WhenDialogOpens([](QWidget &dialog) {
        Form(dialog).Press("CommandHelp");
        EXPECT_EQ(Shown(), FormComms::HelpContextID);
        ExpectUsable();
        EXPECT_TRUE(dialog.isVisible());
        Form(dialog).Press("CommandCancel");
    });
    Ui().Choose("mnuCommunications");
    EXPECT_TRUE(Window()->isVisible());
    ExpectUsable();
}

TEST_F(ShownHelpTest, StaysUsableWhenADialogOpensOverItAndAnotherOverThat) {
    Start();
    Ui().Choose("mnuZtvHelp");
    WhenDialogOpens([](QWidget &comms) {
        EXPECT_TRUE(WaitUntil(
            [&comms] { return Window()->windowHandle()->transientParent() == comms.windowHandle(); }));
        ExpectUsable();
        WhenDialogOpens([](QWidget &search) {
            EXPECT_TRUE(WaitUntil(
                [&search] { return Window()->windowHandle()->transientParent() == search.windowHandle(); }));
            ExpectUsable();
            Form(search).Press("CommandClose");
        });
        comms.activateWindow();
        Form(comms).Press("CommandSearch");
        ExpectUsable();
        Form(comms).Press("CommandCancel");
    });
    Ui().Choose("mnuCommunications");
    ExpectUsable();
    EXPECT_EQ(Window()->windowHandle()->transientParent(), nullptr);
}

// Proves that the clicks above detect a blocked window.
TEST_F(ShownHelpTest, ADialogBlocksTheMainForm) {
    Start();
    WhenDialogOpens([this](QWidget &dialog) {
        auto &strip = Ui().Get<QTabWidget>("TabStrip1");
        Click(*strip.tabBar(), strip.tabBar()->tabRect(1).center());
        EXPECT_EQ(form_->CurrentTab(), 1);
        Form(dialog).Press("CommandCancel");
    });
    Ui().Choose("mnuCommunications");
    auto &strip = Ui().Get<QTabWidget>("TabStrip1");
    Click(*strip.tabBar(), strip.tabBar()->tabRect(1).center());
    EXPECT_EQ(form_->CurrentTab(), 2);
}

// About. --------------------------------------------------------------------------------------------

class AboutTest : public MainFormTest {
protected:
    void ShowAbout(const std::function<void(const Form &)> &work) {
        WhenDialogOpens([&work](QWidget &dialog) {
            EXPECT_EQ(dialog.objectName(), QStringLiteral("FormAbout"));
            work(Form(dialog));
            dialog.close();
        });
        Ui().Choose("mnuHelpAbout");
    }
    QStringList Tabs() const {
        QStringList captions;
        auto &strip = Ui().Get<QTabWidget>("TabStrip1");
        for (int index = 0; index < strip.count(); ++index) {
            captions.append(strip.tabText(index));
        }
        return captions;
    }
    static void ClickToolbar(const Form &about, Qt::KeyboardModifiers modifiers) {
        auto &button = about.Get<QToolButton>("Toolbar1(1)");
        QTest::mouseClick(&button, Qt::LeftButton, modifiers);
        QTest::keyRelease(&button, Qt::Key_Control); // for the tests to come
        Settle();
    }

    const QStringList four_ = {QStringLiteral("&Basic"), QStringLiteral("&Advanced"),
                               QStringLiteral("&Wizard"), QStringLiteral("&Distance")};
};

TEST_F(AboutTest, ShowsThePresetsOfASensorThatWasNeverOnline) {
    Start();
    ShowAbout([](const Form &about) {
        EXPECT_EQ(about.Text("lblSwVersion(1)").count(u'.'), 2);
        EXPECT_EQ(about.Text("lblFwVersion(1)"), QStringLiteral("2.14"));
        EXPECT_EQ(about.Text("lblBootVersion(1)"), QStringLiteral("1.00"));
        EXPECT_EQ(about.Text("lblProcID(1)"), QStringLiteral("3264"));
        EXPECT_EQ(about.Text("lblProcRevision(1)"), QStringLiteral("4"));
        EXPECT_EQ(about.Text("lblPCBRev(1)"), QStringLiteral("3"));
        EXPECT_EQ(about.Text("lblNotes").count(u'\n'), 5);
    });
}

TEST_F(AboutTest, ShowsTheSensorAsItWasLastRead) {
    Start();
    const std::pair<std::int16_t, int> words[] = {{8, 305}, {9, 120}, {6, 1}, {7, 2}, {11, 9}};
    for (const auto &[tag, word] : words) {
        form_->Zentrova().ParamUpdate(tag, word);
    }
    ShowAbout([](const Form &about) {
        EXPECT_EQ(about.Text("lblFwVersion(1)"), QStringLiteral("3.05"));
        EXPECT_EQ(about.Text("lblBootVersion(1)"), QStringLiteral("1.20"));
        EXPECT_EQ(about.Text("lblProcID(1)"), QStringLiteral("1"));
        EXPECT_EQ(about.Text("lblProcRevision(1)"), QStringLiteral("2"));
        EXPECT_EQ(about.Text("lblPCBRev(1)"), QStringLiteral("9"));
    });
}

TEST_F(AboutTest, ShowsTheMakerAsTheSettingsSay) {
    const QString logo = configuration_.filePath(QStringLiteral("logo.png"));
    QPixmap picture(400, 100);
    picture.fill(Qt::blue);
    ASSERT_TRUE(picture.save(logo));
    settings_.Write(QStringLiteral("Maker"), QStringLiteral("Address"), QStringLiteral("Here 1\nThere"));
    settings_.Write(QStringLiteral("Maker"), QStringLiteral("Logo"), logo);
    settings_.Write(QStringLiteral("Maker"), QStringLiteral("WebAddress"),
                    QStringLiteral("https://maker.example/"));
    Start();
    ShowAbout([](const Form &about) {
        EXPECT_EQ(about.Text("lblNotes"), QStringLiteral("Here 1\nThere"));
        EXPECT_EQ(about.Get<QToolButton>("Picture1").iconSize(), QSize(160, 40));
        about.Press("Picture1");
    });
    EXPECT_EQ(opened_, QUrl(QStringLiteral("https://maker.example/")));
}

TEST_F(AboutTest, LeadsToTheMasterAndTheSystem) {
    Start();
    ShowAbout([this](const Form &about) {
        dialogs_.ExpectTextWith(QStringLiteral("Mbaxp\nModbus RTU master of ZTV Link\nVersion "),
                                BoxIcon::Information);
        about.Press("cmdMbaxpAbout");
        EXPECT_TRUE(dialogs_.AllCame());
        about.Press("cmdSysInfo");
    });
    EXPECT_EQ(systemInformations_, 1);
}

TEST_F(AboutTest, BringsBackTheCheckoutTab) {
    Start();
    EXPECT_EQ(Tabs(), four_);
    ShowAbout([](const Form &about) { ClickToolbar(about, {}); });
    EXPECT_EQ(Tabs(), four_);
    ShowAbout([](const Form &about) { ClickToolbar(about, Qt::ControlModifier); });
    EXPECT_EQ(Tabs(), four_ + QStringList{QStringLiteral("Checkout")});

    auto &strip = Ui().Get<QTabWidget>("TabStrip1");
    strip.setCurrentIndex(3);
    strip.setCurrentIndex(4);
    EXPECT_EQ(form_->CurrentTab(), 5);
    EXPECT_TRUE(Ui().Get<QWidget>("TabFrame(5)").isVisible());
    EXPECT_EQ(form_->HelpContext(), 1050);
}

TEST_F(AboutTest, FaultsWhenTheCheckoutTabIsThere) {
    auto &application = dynamic_cast<Application &>(*qApp);
    QStringList faults;
    application.OnFault([&faults](const Fault &fault) {
        EXPECT_EQ(fault.Cause(), Fault::Kind::DuplicateKey);
        faults.append(fault.Description());
    });
    const QStringList one = {QStringLiteral("Key is not unique: Checkout")};
    Start(QStringLiteral("/checkout"));
    ShowAbout([](const Form &about) { ClickToolbar(about, Qt::ControlModifier); });
    EXPECT_EQ(faults, one);
    faults.clear();
    Start();
    ShowAbout([](const Form &about) {
        ClickToolbar(about, Qt::ControlModifier);
        ClickToolbar(about, Qt::ControlModifier);
    });
    EXPECT_EQ(faults, one);
    EXPECT_EQ(Tabs().size(), 5);
    application.OnFault([](const Fault &fault) { ADD_FAILURE() << "fault: " << fault.what(); });
}

} // namespace ztv
