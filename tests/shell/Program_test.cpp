#include "shell/Program.h"

#include "help/ClassMyHtmlHelp.h"
#include "help/ui/HelpViewer.h"
#include "shell/Application.h"
#include "shell/FormMain.h"
#include "shell/Rescue.h"
#include "support/ApplicationTitle.h"
#include "support/Fault.h"
#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/RecordedHelp.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/TestPresets.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>
#include <set>

namespace ztv {

namespace {

int RunWith(ScriptedDialogs &dialogs, const QString &folder, bool &shown) {
    SettingsStore settings(ApplicationTitle());
    RecordedHelp help;
    return RunProgram({.dialogs = dialogs,
                       .settings = settings,
                       .helpEngine = help,
                       .programFolder = folder,
                       .arguments = {}},
                      [&shown](FormMain &form) {
                          shown = form.isVisible();
                          QTimer::singleShot(0, qApp, [] { QApplication::exit(0); });
                      });
}

} // namespace

TEST(ProgramTest, ShowsItsFormAndEndsWithStatus0) {
    ScriptedDialogs dialogs;
    bool shown = false;
    EXPECT_EQ(RunWith(dialogs, ShippedPresetsFolder(), shown), 0);
    EXPECT_TRUE(shown);
}

TEST(ProgramTest, TellsWhereTheSystemHasNoToolForItsInformation) {
    const QTemporaryDir empty;
    const EnvironmentVariable noTools("PATH", empty.path());
    ScriptedDialogs dialogs;
    SettingsStore settings(ApplicationTitle());
    RecordedHelp help;
    RunProgram({.dialogs = dialogs,
                .settings = settings,
                .helpEngine = help,
                .programFolder = ShippedPresetsFolder(),
                .arguments = {}},
               [&](FormMain &form) {
                   WhenDialogOpens([&dialogs](QWidget &about) {
                       dialogs.Expect(QStringLiteral("System Information Is Unavailable At This Time"),
                                      BoxIcon::None, BoxButtons::Ok, BoxAnswer::Ok);
                       Form(about).Press("cmdSysInfo");
                       EXPECT_TRUE(dialogs.AllCame());
                       about.close();
                   });
                   QTimer::singleShot(0, &form, [&form] {
                       Form(form).Choose("mnuHelpAbout");
                       QApplication::exit(0);
                   });
               });
}

TEST(ProgramTest, EndsWithStatus1AndTheDatabasesMessageWithoutPresets) {
    const QTemporaryDir empty;
    ScriptedDialogs dialogs;
    dialogs.ExpectTextWith(QStringLiteral("Presets.fil: there is no such file"), BoxIcon::Critical);
    bool shown = false;
    EXPECT_EQ(RunWith(dialogs, empty.path(), shown), 1);
    EXPECT_FALSE(shown);
}

TEST(ProgramTest, SaysThatItHasToCloseForASettingThatCannotBeRead) {
    const QTemporaryDir folder;
    const EnvironmentVariable configuration("XDG_CONFIG_HOME", folder.path());
    SettingsStore settings(ApplicationTitle());
    settings.Write(QStringLiteral("Options"), QStringLiteral("BaudRate"), QStringLiteral("38400000"));
    ScriptedDialogs dialogs;
    dialogs.ExpectNotice(
        QStringLiteral(
            "Overflow: the setting \"BaudRate\" of section \"Options\" holds 38400000, which isn't within "
            "-32768 to 32767.\n\nThe settings are kept in\n%1\n\nTo delete all of them, start the program "
            "with /CLEARREG or with the Ctrl key held down.\n\nThe program has to close.")
            .arg(settings.Place()),
        BoxIcon::Critical);
    bool shown = false;
    EXPECT_EQ(RunWith(dialogs, ShippedPresetsFolder(), shown), 1);
    EXPECT_FALSE(shown);
}

TEST(ProgramTest, SaysWhatIsWrongWithDamagedPresets) {
    const std::pair<const char *, const char *> rows[] = {
        {"DELETE FROM Parameters WHERE rowid > 50", "has 50 records, fewer than its count 96"},
        {"ALTER TABLE Parameters RENAME COLUMN Max TO Most", "no such column: Max"},
        {"UPDATE Parameters SET Value = 70000 WHERE rowid = 13", "column Value holds 70000"},
    };
    for (const auto &[sql, message] : rows) {
        const ChangedPresets presets(sql);
        ScriptedDialogs dialogs;
        dialogs.ExpectTextWith(QString::fromLatin1(message), BoxIcon::Critical);
        bool shown = false;
        EXPECT_EQ(RunWith(dialogs, presets.Folder(), shown), 1);
    }
}

TEST(ProgramTest, RescuesUnsavedChangesOnAFault) {
    const QTemporaryDir data;
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", data.path().toLocal8Bit());
    ScriptedDialogs dialogs;
    SettingsStore settings(ApplicationTitle());
    RecordedHelp help;
    RunProgram({.dialogs = dialogs,
                .settings = settings,
                .helpEngine = help,
                .programFolder = ShippedPresetsFolder(),
                .arguments = {}},
               [&](FormMain &form) {
                   QTimer::singleShot(0, qApp, [] { QApplication::exit(0); });
                   dialogs.ExpectNotice(
                       QStringLiteral("Subscript out of range: x\n\nThe program has to close."),
                       BoxIcon::Critical);
                   ShowFault(dialogs, Fault::Subscript(QStringLiteral("x")), &form);
                   for (int value : {4321, 4322}) { // within a second, too
                       form.Zentrova().ParamValue(28, value);
                       dialogs.ExpectTextWith(
                           QStringLiteral("Subscript out of range: x\n\nYour unsaved changes are in "
                                          "the file\n%1/ZTV Link/Rescued ")
                               .arg(data.path()),
                           BoxIcon::Critical);
                       ShowFault(dialogs, Fault::Subscript(QStringLiteral("x")), &form);
                   }
               });
    const QFileInfoList files =
        QDir(data.filePath(QStringLiteral("ZTV Link"))).entryInfoList(QDir::Files, QDir::Time);
    ASSERT_EQ(files.size(), 2);
    std::set<std::int32_t> values;
    for (const QFileInfo &file : files) {
        ClassZentrova zentrova(ShippedPresetsFolder());
        EXPECT_EQ(zentrova.OpenFile(file.filePath()).result, FileOpened::Whole);
        values.insert(zentrova.ParamValue(28));
    }
    EXPECT_EQ(values, (std::set<std::int32_t>{4321, 4322}));
    qputenv("XDG_DATA_HOME", before);
}

TEST(ProgramTest, RescuesElsewhereWhereTheDataFolderTakesNothing) {
    const QTemporaryDir home;
    const QTemporaryDir temporary;
    const EnvironmentVariable noData("XDG_DATA_HOME", QStringLiteral("/dev/null"));
    EnvironmentVariable homeFolder("HOME", home.path());
    const EnvironmentVariable temporaryFolder("TMPDIR", temporary.path());
    ClassZentrova zentrova(ShippedPresetsFolder());
    for (const QTemporaryDir *folder : {&home, &temporary}) {
        zentrova.ParamValue(28, zentrova.ParamValue(28) + 1);
        EXPECT_TRUE(RescueUnsavedChanges(zentrova).startsWith(
            QStringLiteral("Your unsaved changes are in the file\n%1/Rescued ").arg(folder->path())));
        EXPECT_EQ(QDir(folder->path()).entryList(QDir::Files).size(), 1);
        homeFolder.Set(QStringLiteral("/dev/null"));
    }
}

TEST(ProgramTest, SaysSoWhenNothingCouldBeRescued) {
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", "/dev/null");
    const EnvironmentVariable noHome("HOME", QStringLiteral("/dev/null"));
    const EnvironmentVariable noTemporary("TMPDIR", QStringLiteral("/dev/null"));
    ClassZentrova zentrova(ShippedPresetsFolder());
    EXPECT_EQ(RescueUnsavedChanges(zentrova), QString());
    zentrova.ParamValue(28, 4321);
    EXPECT_TRUE(RescueUnsavedChanges(zentrova).startsWith(
        QStringLiteral("Your unsaved changes couldn't be saved: /dev/null/ZTV Link/Rescued ")));
    qputenv("XDG_DATA_HOME", before);
}

TEST(ApplicationTest, HandsAFaultOfAHandlerToItsOneHandler) {
    auto &application = dynamic_cast<Application &>(*qApp);
    std::vector<std::string> faults;
    application.OnFault([&faults](const Fault &fault) {
        faults.emplace_back(fault.what());
        QTimer::singleShot(0, qApp, [] { throw Fault::Overflow(QStringLiteral("follows from it")); });
        QApplication::processEvents(); // as the box that shows it does
    });
    QTimer::singleShot(0, qApp, [] { throw Fault::Subscript(QStringLiteral("parameter(96)")); });
    while (faults.empty()) {
        QApplication::processEvents();
    }
    EXPECT_EQ(faults, (std::vector<std::string>{"Subscript out of range: parameter(96)"}));
    application.OnFault([](const Fault &fault) { ADD_FAILURE() << "fault: " << fault.what(); });
}

TEST(ProgramTest, EndsWithItsMainFormThoughTheHelpIsOpen) {
    ScriptedDialogs dialogs;
    SettingsStore settings(ApplicationTitle());
    HelpViewer help(dialogs, [](const QUrl &) { return false; });
    QApplication::setQuitOnLastWindowClosed(true);
    bool shown = false;
    EXPECT_EQ(RunProgram({.dialogs = dialogs,
                          .settings = settings,
                          .helpEngine = help,
                          .programFolder = ShippedPresetsFolder(),
                          .arguments = {}},
                         [&shown](FormMain &form) {
                             QTimer::singleShot(0, &form, [&] {
                                 form.hHelp().HHDisplayContents(form.winId());
                                 for (const QWidget *window : QApplication::topLevelWidgets()) {
                                     shown = shown || (window->objectName() == QStringLiteral("HelpWindow") &&
                                                       window->isVisible());
                                 }
                                 form.close();
                             });
                         }),
              0);
    QApplication::setQuitOnLastWindowClosed(false);
    EXPECT_TRUE(shown);
}

} // namespace ztv
