#include "shell/CommandLine.h"

#include "tests/support/Printers.h"
#include "tests/support/ScriptedDialogs.h"

#include <gtest/gtest.h>

namespace {

using Arguments = std::vector<QString>;

const QString usage = QStringLiteral("Usage: \n\nZtvLink.exe [filename.ztv] [/options] where options are:\n\n"
                                     " /HELP\t\tDisplay this help window\n"
                                     " /CLEARREG\tClear and recreate all registry settings\n");

Arguments Texts(std::initializer_list<const char *> texts) {
    Arguments arguments;
    for (const char *text : texts) {
        arguments.push_back(QString::fromUtf8(text));
    }
    return arguments;
}

} // namespace

TEST(CommandLineTest, PartsTheTextAtBlanksOutsideQuotes) {
    const auto split = [](const char *text) { return CommandLine::SplitArguments(QString::fromUtf8(text)); };
    EXPECT_EQ(split(""), Arguments{});
    EXPECT_EQ(split("   "), Arguments{});
    EXPECT_EQ(split("a"), Texts({"a"}));
    EXPECT_EQ(split("  a   b "), Texts({"a", "b"}));
    EXPECT_EQ(split("\"a b\" c"), Texts({"\"a b\"", "c"}));
    EXPECT_EQ(split("a\"b c\"d e"), Texts({"a\"b c\"d", "e"}));
    EXPECT_EQ(split("x \"a b c"), Texts({"x", "\"a b c"})); // an open quote runs to the end
    EXPECT_EQ(split("\"\" a"), Texts({"\"\"", "a"}));
}

TEST(CommandLineTest, FindsTheEndOfAnArgument) {
    EXPECT_EQ(CommandLine::FindArgumentEnd(QStringLiteral("ab cd")), 2);
    EXPECT_EQ(CommandLine::FindArgumentEnd(QStringLiteral("\"a b\" c")), 5);
    EXPECT_EQ(CommandLine::FindArgumentEnd(QStringLiteral("abc")), -1);
    EXPECT_EQ(CommandLine::FindArgumentEnd(QString()), -1);
}

TEST(CommandLineTest, StripsOneQuoteAtEachEnd) {
    EXPECT_EQ(CommandLine::StripQuotes(QStringLiteral("\"a b\"")), QStringLiteral("a b"));
    EXPECT_EQ(CommandLine::StripQuotes(QStringLiteral("\"a")), QStringLiteral("a"));
    EXPECT_EQ(CommandLine::StripQuotes(QStringLiteral("a\"")), QStringLiteral("a"));
    EXPECT_EQ(CommandLine::StripQuotes(QStringLiteral("\"\"a\"\"")), QStringLiteral("\"a\""));
    EXPECT_EQ(CommandLine::StripQuotes(QStringLiteral("\"")), QString());
}

TEST(CommandLineTest, JoinsWhatItTakesApart) {
    const QStringList arguments{QStringLiteral("/checkout"), QStringLiteral("/home/a b/c.ztv"),
                                QStringLiteral("x")};
    EXPECT_EQ(CommandLine::SplitArguments(CommandLine::JoinArguments(arguments)),
              Texts({"/checkout", "\"/home/a b/c.ztv\"", "x"}));
}

TEST(CommandLineTest, ShowsNothingWithoutArguments) {
    ScriptedDialogs dialogs;
    const CommandLine::Options options = CommandLine::Parse(QStringLiteral("  "), dialogs);
    EXPECT_FALSE(options.CheckoutEnabled || options.ShowCommandLine || options.ClearRegistry);
    EXPECT_EQ(options.CommandLineFile, QString());
}

TEST(CommandLineTest, TakesTheOptionsInAnyCaseAndKeepsThatOfAFile) {
    ScriptedDialogs dialogs;
    const CommandLine::Options options =
        CommandLine::Parse(QStringLiteral("/checkOut /CLEARreg \"C:\\My Files\\Roll.ZTV\""), dialogs);
    EXPECT_TRUE(options.CheckoutEnabled);
    EXPECT_TRUE(options.ClearRegistry);
    EXPECT_FALSE(options.ShowCommandLine);
    EXPECT_EQ(options.CommandLineFile, QStringLiteral("C:\\My Files\\Roll.ZTV"));
}

TEST(CommandLineTest, TakesTheLastOfTwoFiles) {
    ScriptedDialogs dialogs;
    EXPECT_EQ(CommandLine::Parse(QStringLiteral("a.ztv b.ztv"), dialogs).CommandLineFile,
              QStringLiteral("b.ztv"));
}

TEST(CommandLineTest, ShowsTheUsageForEachOfItsNames) {
    for (const char *option : {"/help", "/HELP", "?", "/?"}) {
        ScriptedDialogs dialogs;
        dialogs.ExpectNotice(usage, BoxIcon::Information);
        EXPECT_EQ(CommandLine::Parse(QString::fromLatin1(option), dialogs).CommandLineFile, QString());
    }
}

TEST(CommandLineTest, ListsAllArgumentsAsGiven) {
    ScriptedDialogs dialogs;
    dialogs.ExpectNotice(usage, BoxIcon::Information);
    dialogs.ExpectNotice(
        QStringLiteral("Command Line Options Selected: \n\n\"a b.ztv\"\n/help\n/cmdline\n/CheckOut\n"),
        BoxIcon::Information);
    CommandLine::Parse(QStringLiteral("\"a b.ztv\" /help /cmdline /CheckOut"), dialogs);
}
