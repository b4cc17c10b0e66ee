#include "shell/Program.h"

#include "shell/Application.h"
#include "support/ApplicationTitle.h"
#include "support/Fault.h"
#include "tests/support/Printers.h"
#include "tests/support/ScriptedDialogs.h"
#include "tests/support/TestPresets.h"

#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

int RunWith(ScriptedDialogs &dialogs, const QString &folder, bool &shown) {
    SettingsStore settings(ApplicationTitle());
    return RunProgram(
        {.dialogs = dialogs, .settings = settings, .programFolder = folder, .commandText = QString()},
        [&shown](QWidget &form) {
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

TEST(ProgramTest, EndsWithStatus1AndTheDatabasesMessageWithoutPresets) {
    const QTemporaryDir empty;
    ScriptedDialogs dialogs;
    dialogs.ExpectTextWith(QStringLiteral("Presets.fil: unable to open database file"), BoxIcon::Critical);
    bool shown = false;
    EXPECT_EQ(RunWith(dialogs, empty.path(), shown), 1);
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

TEST(ApplicationTest, HandsAFaultOfAHandlerToItsOneHandler) {
    auto &application = dynamic_cast<Application &>(*qApp);
    std::vector<std::string> faults;
    application.OnFault([&faults](const Fault &fault) {
        faults.emplace_back(fault.what());
        QTimer::singleShot(0, qApp, [] { throw Fault::Overflow(QStringLiteral("follows from it")); });
        QApplication::processEvents(); // as the box does that shows it
    });
    QTimer::singleShot(0, qApp, [] { throw Fault::Subscript(QStringLiteral("parameter(96)")); });
    while (faults.empty()) {
        QApplication::processEvents();
    }
    EXPECT_EQ(faults, (std::vector<std::string>{"Subscript out of range: parameter(96)"}));
    application.OnFault([](const Fault &fault) { ADD_FAILURE() << "fault: " << fault.what(); });
}
