#include "desktop/TextEditor.h"

#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

namespace {

// Puts programs of these names into the only folder of the search path. Each writes its name and arguments to
// a file.
class TextEditorTest : public testing::Test {
protected:
    void Install(const char *name) {
        QFile program(folder_.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(program.open(QFile::WriteOnly));
        program.write("#!/bin/sh\nprintf '%s|' \"${0##*/}\" \"$@\" > '" + Log().toLocal8Bit() +
                      ".new'\n/bin/mv '" + Log().toLocal8Bit() + ".new' '" + Log().toLocal8Bit() + "'\n");
        ASSERT_TRUE(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    QString Log() const { return folder_.filePath(QStringLiteral("log")); }
    QByteArray Started() const {
        EXPECT_TRUE(WaitUntil([this] { return QFile::exists(Log()); }));
        QFile log(Log());
        return log.open(QFile::ReadOnly) ? log.readAll() : QByteArray();
    }

    QTemporaryDir folder_;
    EnvironmentVariable path_{"PATH", folder_.path()};
};

} // namespace

TEST_F(TextEditorTest, StartsTheCommandIfItIsThere) {
    Install("notepad.exe");
    Install("gedit");
    EXPECT_TRUE(TextEditor::Show(QStringLiteral("notepad.exe"), QStringLiteral("/a/PROGMEM.MCP")));
    EXPECT_EQ(Started(), QByteArray("notepad.exe|/a/PROGMEM.MCP|"));
}

TEST_F(TextEditorTest, StartsAnEditorOfTheDesktopOtherwise) {
    Install("xdg-open");
    Install("gedit");
    EXPECT_TRUE(TextEditor::Show(QStringLiteral("notepad.exe"), QStringLiteral("/a/PROGMEM.MCP")));
    EXPECT_EQ(Started(), QByteArray("gedit|/a/PROGMEM.MCP|"));
}

TEST_F(TextEditorTest, LeavesItToTheDesktopIfItKnowsNone) {
    Install("xdg-open");
    EXPECT_TRUE(TextEditor::Show(QStringLiteral("notepad.exe"), QStringLiteral("/a/PROGMEM.MCP")));
    EXPECT_EQ(Started(), QByteArray("xdg-open|/a/PROGMEM.MCP|"));
}

TEST_F(TextEditorTest, GivesTheNameAsItIsWithoutAShell) {
    Install("notepad.exe");
    const QString name = QStringLiteral("/a b/$(x) ; \"y\" 'z'.MCP");
    EXPECT_TRUE(TextEditor::Show(QStringLiteral("notepad.exe"), name));
    EXPECT_EQ(Started(), QByteArray("notepad.exe|") + name.toLocal8Bit() + "|");
}

TEST_F(TextEditorTest, TellsThatThereIsNone) {
    EXPECT_FALSE(TextEditor::Show(QStringLiteral("notepad.exe"), QStringLiteral("/a/PROGMEM.MCP")));
}

} // namespace ztv
