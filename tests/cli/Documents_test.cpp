#include "cli/Arguments.h"
#include "cli/Failure.h"
#include "cli/ParameterNames.h"
#include "sim/OptionsParser.h"
#include "tests/cli/CtlUsage.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <vector>

namespace ztv {

namespace {

const char *const manPage = "packaging/ztv-ctl.1.in";
const char *const docsPage = "docs/command-line.md";
const char *const helpPage = "help/ztv-ctl.html";
const char *const fishFile = "packaging/completions/ztv-ctl.fish";

QString Man() {
    return SourceText(manPage).replace(QStringLiteral("\\-"), QStringLiteral("-"));
}

// Returns the lines between two texts, the first of which begins a line.
QString Between(const QString &text, const char *from, const char *to) {
    const qsizetype start = text.indexOf(u'\n' + QString::fromUtf8(from));
    EXPECT_GE(start, 0) << from;
    return text.mid(start, text.indexOf(QString::fromUtf8(to), start + 1) - start);
}

QRegularExpression Lines(const char *pattern) {
    return QRegularExpression(QString::fromUtf8(pattern), QRegularExpression::MultilineOption);
}

// Returns the options of each row: the first cell is a command, the second has its options.
CtlUsage UsageOfRows(const QString &text, const char *row) {
    CtlUsage usage;
    for (const QRegularExpressionMatch &match : Lines(row).globalMatch(text)) {
        usage[match.captured(1)] = OptionsIn(match.captured(2));
    }
    return usage;
}

// Options are defined below .TP.
std::set<QString> OptionsDefined(const QString &section) {
    std::set<QString> options;
    for (const QRegularExpressionMatch &match : Lines("^\\.TP\\n\\.B\\w? (.*)$").globalMatch(section)) {
        options.merge(OptionsIn(match.captured(1)));
    }
    return options;
}

CtlUsage UsageOfManPage() {
    const QString man = Man();
    CtlUsage usage = {{QString(), OptionsDefined(Between(man, ".SH OPTIONS", "\n.SH COMMANDS"))}};
    const QStringList sections =
        Between(man, ".SH COMMANDS", "\n.SH FORMATS").split(QStringLiteral("\n.SS "));
    for (const QString &section : sections.mid(1)) {
        const QString name = section.section(Lines("[ \\n]"), 0, 0).remove(u'"');
        usage[name] = OptionsDefined(section);
    }
    return usage;
}

std::vector<QString> CodeOfMarkdown(const QString &text) {
    std::vector<QString> lines;
    bool isFenced = false;
    for (const QString &line : text.split(u'\n')) {
        isFenced = isFenced != line.startsWith(QStringLiteral("```"));
        if (isFenced || line.startsWith(QStringLiteral("    "))) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<QString> CodeOfMatches(const QString &text, const char *pattern) {
    std::vector<QString> lines;
    for (const QRegularExpressionMatch &match : Lines(pattern).globalMatch(text)) {
        lines.push_back(match.captured(1));
    }
    return lines;
}

std::vector<QString> CodeOfHelpPage() {
    QString text = SourceText(helpPage);
    text.replace(QStringLiteral("&quot;"), QStringLiteral("\""))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"));
    return CodeOfMatches(text, "<tt>(.*?)</tt>");
}

std::vector<QString> CodeOfHelps() {
    std::vector<QString> lines;
    for (const auto &[command, options] : UsageByHelp()) {
        const QString help =
            OutputOf(QStringLiteral(ZTV_BIN_DIR "/ztv-ctl"),
                     QStringList{command, QStringLiteral("--help")}.mid(command.isEmpty() ? 1 : 0));
        const std::vector<QString> examples =
            CodeOfMatches(help.mid(help.indexOf(QStringLiteral("\nExamples:"))), "^  (ztv-ctl .*)$");
        EXPECT_EQ(examples.size(), 2U) << command.toStdString();
        lines.insert(lines.end(), examples.begin(), examples.end());
    }
    return lines;
}

// Returns each call of the program with arguments in lines of shell.
QStringList Calls(const std::vector<QString> &code) {
    static const QRegularExpression call(QStringLiteral("(?<![\\w/-])ztv-ctl (?:[^|)\"\\n]|\"[^\"]*\")+"));
    QStringList calls;
    for (const QString &line : code) {
        for (const QRegularExpressionMatch &match : call.globalMatch(line)) {
            calls.append(match.captured());
        }
    }
    return calls;
}

// Returns the words of a call, as a shell splits them.
QList<QByteArray> Words(const QString &call) {
    const QTemporaryDir folder;
    OutputOf(QStringLiteral("bash"),
             {QStringLiteral("-c"),
              QStringLiteral("exec 3> words; ztv-ctl() { printf '%s\\0' ztv-ctl \"$@\" >&3; }; ") + call},
             folder.path());
    QList<QByteArray> words = ReadFile(folder.filePath(QStringLiteral("words"))).split('\0');
    words.removeLast();
    return words;
}

void ExpectParameters(const Arguments &arguments) {
    const ClassZentrova zentrova(ShippedPresetsFolder());
    for (const QString &parameter : arguments.parameters) {
        TagOf(parameter.section(u'=', 0, 0), zentrova);
    }
}

void ExpectGood(const QString &call) {
    const QList<QByteArray> words = Words(call);
    std::vector<const char *> argv;
    for (const QByteArray &word : words) {
        argv.push_back(word.constData());
    }
    try {
        const auto arguments = ParseArguments(static_cast<int>(argv.size()), argv.data());
        ASSERT_TRUE(arguments);
        ExpectParameters(*arguments);
        const sim::ParsedOptions parsed =
            sim::ParseOptions(QStringList{QStringLiteral("ztv-sim")} + arguments->simulatorArguments);
        EXPECT_EQ(parsed.error, QString()) << call.toStdString();
    } catch (const Failure &failure) {
        ADD_FAILURE() << call.toStdString() << ": " << failure.what();
    }
}

void ExpectGoodExamples(const std::vector<QString> &code, int least) {
    const QStringList calls = Calls(code);
    EXPECT_GE(calls.size(), least);
    for (const QString &call : calls) {
        ExpectGood(call);
    }
}

} // namespace

TEST(CtlDocumentsTest, TheManPageDescribesEachCommandAndOption) {
    EXPECT_EQ(TextOf(UsageOfManPage()), TextOf(UsageByHelp()));
}

TEST(CtlDocumentsTest, TheDocsPageNamesEachCommandAndOption) {
    const QString page = SourceText(docsPage);
    CtlUsage usage = UsageOfRows(Between(page, "## Commands", "\n## "), "^\\| `([a-z]+)[^|]*\\|([^|]*)\\|");
    usage[QString()] = OptionsIn(Between(page, "All commands accept", "\n\n"));
    EXPECT_EQ(TextOf(usage), TextOf(UsageByHelp()));
}

TEST(CtlDocumentsTest, TheHelpPageNamesEachCommandAndOption) {
    const QString page = SourceText(helpPage);
    CtlUsage usage = UsageOfRows(page, "^<tr><td>([a-z]+)</td><td>([^<]*)</td>");
    for (const QString &row : CodeOfMatches(page, "^<tr><td>(--[^<]*)</td>")) {
        usage[QString()].merge(OptionsIn(row));
    }
    EXPECT_EQ(TextOf(usage), TextOf(UsageByHelp()));
}

TEST(CtlDocumentsTest, NameNoOptionThatIsNotThere) {
    std::set<QString> known = SimulatorOptions();
    for (auto &[command, options] : UsageByHelp()) {
        known.insert(options.begin(), options.end());
    }
    for (const QString &page : {Man(), SourceText(docsPage), SourceText(helpPage)}) {
        for (const QString &option : OptionsIn(page)) {
            EXPECT_TRUE(known.contains(option)) << option.toStdString();
        }
    }
}

TEST(CtlDocumentsTest, FishCompletesEachCommandAndOption) {
    CtlUsage usage;
    const QString file = SourceText(fishFile);
    for (const QRegularExpressionMatch &match :
         Lines("^complete -c ztv-ctl -n __ztv_ctl_is -a (\\w+)").globalMatch(file)) {
        usage[match.captured(1)] = {};
    }
    for (const QRegularExpressionMatch &match :
         Lines("^complete -c ztv-ctl (.*)-l ([a-z-]+)").globalMatch(file)) {
        const QString commands =
            match.captured(1).section(QStringLiteral("__ztv_ctl_is "), 1).section(u'\'', 0, 0);
        for (const QString &command : commands.split(u' ')) {
            usage[command].insert(QStringLiteral("--") + match.captured(2));
        }
    }
    CtlUsage wanted = UsageByHelp();
    wanted[QStringLiteral("simulate")] = SimulatorOptions();
    wanted[QStringLiteral("simulate")].erase(QStringLiteral("--help")); // as all commands have it
    EXPECT_EQ(TextOf(usage), TextOf(wanted));
}

TEST(CtlDocumentsTest, ExamplesOfTheHelpTextsAreGood) {
    ExpectGoodExamples(CodeOfHelps(), 32);
}

TEST(CtlDocumentsTest, ExamplesOfTheManPageAreGood) {
    ExpectGoodExamples(CodeOfMatches(Between(Man(), ".SH EXAMPLES", "\n.SH SEE"), "^(ztv-ctl .*)$"), 11);
}

TEST(CtlDocumentsTest, ExamplesOfTheDocumentsAreGood) {
    ExpectGoodExamples(CodeOfMarkdown(SourceText(docsPage)), 12);
    ExpectGoodExamples(CodeOfMarkdown(SourceText("README.md")), 3);
    ExpectGoodExamples(CodeOfHelpPage(), 6);
}

} // namespace ztv
