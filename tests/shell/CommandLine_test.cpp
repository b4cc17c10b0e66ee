#include "shell/CommandLine.h"

#include "support/ProgramVersion.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"

#include <gtest/gtest.h>

namespace ztv {

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

CommandLine::Options Parse(const char *text, ScriptedDialogs &dialogs) {
    return CommandLine::Parse(CommandLine::SplitArguments(QString::fromUtf8(text)), dialogs);
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

TEST(CommandLineTest, QuotesWhatAUserWouldHaveQuoted) {
    const QStringList list{QStringLiteral("/checkout"), QStringLiteral("/home/a b/c.ztv"),
                           QStringLiteral("x"),         QStringLiteral("Roll 12\".ztv"),
                           QStringLiteral("12\""),      QString()};
    const Arguments typed = CommandLine::AsTyped(list);
    EXPECT_EQ(typed,
              Texts({"/checkout", "\"/home/a b/c.ztv\"", "x", "\"Roll 12\".ztv\"", "\"12\"\"", "\"\""}));
    for (qsizetype i = 0; i < list.size(); ++i) {
        EXPECT_EQ(CommandLine::StripQuotes(typed[static_cast<std::size_t>(i)]), list[i]);
    }
}

TEST(CommandLineTest, TakesEachArgumentOfAListAsOne) {
    for (const char *name :
         {"Roll 12\".ztv", "12\"", "\"quoted\".ztv", "\"", "\" \"", " a  b ", "a\tb\nc", "größe \".ztv"}) {
        ScriptedDialogs dialogs;
        const QStringList list{QString::fromUtf8(name), QStringLiteral("/CheckOut")};
        const CommandLine::Options options = CommandLine::Parse(CommandLine::AsTyped(list), dialogs);
        EXPECT_EQ(options.CommandLineFile, QString::fromUtf8(name));
        EXPECT_TRUE(options.CheckoutEnabled) << name;
    }
}

TEST(CommandLineTest, ListsTheArgumentsOfAListAsTyped) {
    ScriptedDialogs dialogs;
    dialogs.ExpectNotice(
        QStringLiteral("Command Line Options Selected: \n\n\"Roll 12\".ztv\"\n\"a b.ztv\"\n/cmdline\n"),
        BoxIcon::Information);
    CommandLine::Parse(CommandLine::AsTyped({QStringLiteral("Roll 12\".ztv"), QStringLiteral("a b.ztv"),
                                             QStringLiteral("/cmdline")}),
                       dialogs);
}

TEST(CommandLineTest, ShowsNothingWithoutArguments) {
    ScriptedDialogs dialogs;
    const CommandLine::Options options = Parse("  ", dialogs);
    EXPECT_FALSE(options.CheckoutEnabled || options.ShowCommandLine || options.ClearRegistry);
    EXPECT_EQ(options.CommandLineFile, QString());
}

TEST(CommandLineTest, TakesTheOptionsInAnyCaseAndKeepsThatOfAFile) {
    ScriptedDialogs dialogs;
    const CommandLine::Options options = Parse("/checkOut /CLEARreg \"C:\\My Files\\Roll.ZTV\"", dialogs);
    EXPECT_TRUE(options.CheckoutEnabled);
    EXPECT_TRUE(options.ClearRegistry);
    EXPECT_FALSE(options.ShowCommandLine);
    EXPECT_EQ(options.CommandLineFile, QStringLiteral("C:\\My Files\\Roll.ZTV"));
}

TEST(CommandLineTest, TakesTheLastOfTwoFiles) {
    ScriptedDialogs dialogs;
    EXPECT_EQ(Parse("a.ztv b.ztv", dialogs).CommandLineFile, QStringLiteral("b.ztv"));
}

TEST(CommandLineTest, ShowsTheUsageForEachOfItsNames) {
    for (const char *option : {"/help", "/HELP", "?", "/?"}) {
        ScriptedDialogs dialogs;
        dialogs.ExpectNotice(usage, BoxIcon::Information);
        EXPECT_EQ(Parse(option, dialogs).CommandLineFile, QString());
    }
}

TEST(CommandLineTest, ListsAllArgumentsAsGiven) {
    ScriptedDialogs dialogs;
    dialogs.ExpectNotice(usage, BoxIcon::Information);
    dialogs.ExpectNotice(
        QStringLiteral("Command Line Options Selected: \n\n\"a b.ztv\"\n/help\n/cmdline\n/CheckOut\n"),
        BoxIcon::Information);
    Parse("\"a b.ztv\" /help /cmdline /CheckOut", dialogs);
}

TEST(CommandLineTest, PrintsTheUsageWithTheOptionsOfATerminal) {
    EXPECT_EQ(CommandLine::TextToPrint({QStringLiteral("--help")}),
              usage + QStringLiteral(" --help\t\tPrint this help and exit\n"
                                     " --version\tPrint the version and exit\n"));
}

TEST(CommandLineTest, PrintsTheTitleAndTheVersion) {
    EXPECT_EQ(CommandLine::TextToPrint({QStringLiteral("--version")}),
              QStringLiteral("ZTV Link ") + ProgramVersion() + u'\n');
}

TEST(CommandLineTest, TheFirstOfTheTwoIsPrintedWhateverElseIsGiven) {
    const QString version = *CommandLine::TextToPrint({QStringLiteral("--version")});
    EXPECT_EQ(CommandLine::TextToPrint({QStringLiteral("a.ztv"), QStringLiteral("/CLEARREG"),
                                        QStringLiteral("--version"), QStringLiteral("--help")}),
              version);
}

TEST(CommandLineTest, NothingElseIsPrintedInsteadOfStarting) {
    for (const char *argument : {"/HELP", "/help", "?", "/?", "-h", "-help", "--HELP", "--Version",
                                 "--helper", "./--help", "\"--help\"", "--", "", "a.ztv"}) {
        EXPECT_EQ(CommandLine::TextToPrint({QString::fromLatin1(argument)}), std::nullopt) << argument;
    }
    EXPECT_EQ(CommandLine::TextToPrint({}), std::nullopt);
}

} // namespace ztv
