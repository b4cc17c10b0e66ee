#include "tests/cli/CtlUsage.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

namespace {

const QString completions = QStringLiteral(ZTV_TESTS_DIR "/../packaging/completions/ztv-ctl.");

} // namespace

// The completion files in the shells that they are for. The program is in the path, as if it were installed.
class CompletionTest : public testing::Test {
protected:
    CompletionTest() : path_(qgetenv("PATH")), terminal_(qgetenv("TERM")) {
        qputenv("PATH", ZTV_BIN_DIR ":" + path_);
        qputenv("TERM", "dumb");
        for (const char *name : {"winder one.ztv", "upgrade.hex", "notes.txt", "folder/deep.ztv"}) {
            WriteFile(folder_.filePath(QString::fromLatin1(name)), "x");
        }
    }
    ~CompletionTest() override {
        qputenv("PATH", path_);
        qputenv("TERM", terminal_);
    }

    QStringList Run(const QString &shell, const QStringList &arguments) {
        return OutputOf(shell, arguments, folder_.path()).split(u'\n', Qt::SkipEmptyParts);
    }

    // Returns what bash offers for the last word.
    QStringList Bash(const QStringList &words) {
        const QString script = QStringLiteral(
            "source \"$0\"; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); COMP_LINE=\"$*\"; "
            "COMP_POINT=${#COMP_LINE}; _ztv_ctl \"$1\" \"${!#}\"; printf '%s\\n' \"${COMPREPLY[@]}\"");
        return Run(QStringLiteral("bash"),
                   QStringList{QStringLiteral("-c"), script, completions + QStringLiteral("bash"),
                               QStringLiteral("ztv-ctl")} +
                       words);
    }

    std::set<QString> OptionsByBash(const QString &command) {
        QStringList words = {command, QStringLiteral("--")};
        words.removeAll(QString());
        const QStringList offered = Bash(words);
        return {offered.begin(), offered.end()};
    }

    // Types a line into an interactive bash and presses Tab. Returns the words of the line then.
    QString AfterTab(const QString &line) {
        QProcess shell;
        shell.setWorkingDirectory(folder_.path());
        shell.start(QStringLiteral("script"),
                    {QStringLiteral("-qefc"),
                     QStringLiteral("bash --noprofile --rcfile '%1bash' -i").arg(completions),
                     QStringLiteral("/dev/null")});
        // The words are between numbers that the shell computes; the echo of the line has none.
        shell.write(line.toUtf8() + "\t\001printf '<%s>' $((21 * 2)) \005 $((21 * 2))\n");
        const QByteArray mark = "<42>";
        QByteArray seen;
        EXPECT_TRUE(WaitUntil([&] {
            seen += shell.readAllStandardOutput();
            return seen.count(mark) == 2;
        })) << seen.toStdString();
        shell.kill();
        shell.waitForFinished();
        const qsizetype from = seen.indexOf(mark) + mark.size();
        return QString::fromUtf8(seen.mid(from, seen.lastIndexOf(mark) - from));
    }

    // Returns what fish offers, without descriptions.
    QStringList Fish(const char *line) {
        QStringList offered = Run(
            QStringLiteral("fish"),
            {QStringLiteral("--no-config"), QStringLiteral("-c"),
             QStringLiteral("source '%1fish'; complete -C'%2'").arg(completions, QString::fromUtf8(line))});
        for (QString &text : offered) {
            text = text.section(u'\t', 0, 0);
        }
        return offered;
    }

    QTemporaryDir folder_;
    QByteArray path_;
    QByteArray terminal_;
};

class FishCompletionTest : public CompletionTest {
protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable(QStringLiteral("fish")).isEmpty()) {
            GTEST_SKIP() << "fish isn't installed";
        }
    }
};

TEST_F(CompletionTest, BashOffersEachCommandAndItsOptions) {
    const CtlUsage usage = UsageByHelp();
    std::set<QString> commands;
    for (const auto &[command, options] : usage) {
        std::set<QString> wanted = usage.at(QString());
        wanted.insert(options.begin(), options.end());
        if (!command.isEmpty()) {
            commands.insert(command);
            wanted.erase(QStringLiteral("--version"));
        }
        wanted = command == QStringLiteral("simulate") ? SimulatorOptions() : wanted;
        EXPECT_EQ(TextOf({{command, OptionsByBash(command)}}), TextOf({{command, wanted}}));
    }
    const QStringList offered = Bash({QString()});
    EXPECT_EQ(std::set<QString>(offered.begin(), offered.end()), commands);
}

TEST_F(CompletionTest, BashOffersTheValuesOfOptions) {
    const auto texts = [](const char *list) { return QString::fromLatin1(list).split(u' '); };
    EXPECT_EQ(Bash(texts("--baud 9")), texts("9600"));
    EXPECT_EQ(Bash(texts("get --parity N")), texts("N1 N2"));
    EXPECT_EQ(Bash(texts("--format c")), texts("csv"));
    const QStringList devices = OutputOf(QStringLiteral("ztv-ctl"), texts("ports --format csv"))
                                    .split(u'\n', Qt::SkipEmptyParts)
                                    .mid(1);
    const QStringList offered = Bash({QStringLiteral("--port"), QString()});
    ASSERT_EQ(offered.size(), devices.size());
    for (qsizetype index = 0; index < devices.size(); ++index) {
        EXPECT_TRUE(devices.at(index).startsWith(offered.at(index)));
    }
}

TEST_F(CompletionTest, BashTakesTheValueOfAnOptionForNoCommand) {
    EXPECT_EQ(Bash({QStringLiteral("--port"), QStringLiteral("get"), QStringLiteral("ge")}),
              QStringList{QStringLiteral("get")});
    EXPECT_EQ(Bash({QStringLiteral("--address"), QStringLiteral("1"), QStringLiteral("watch"),
                    QStringLiteral("--ev")}),
              QStringList{QStringLiteral("--every")});
}

TEST_F(CompletionTest, BashOffersAllParametersButThoseThatCanBeWrittenToSet) {
    EXPECT_EQ(Bash({QStringLiteral("get"), QString()}).size(), 95);
    const QStringList written = Bash({QStringLiteral("set"), QString()});
    EXPECT_TRUE(written.contains(QStringLiteral("Near\\ Distance=")));
    EXPECT_FALSE(written.contains(QStringLiteral("Actual\\ Distance=")));
}

TEST_F(CompletionTest, TabCompletesACommandAnOptionAndAValueInBash) {
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl wat")), QStringLiteral("<ztv-ctl><watch>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl load --line")),
              QStringLiteral("<ztv-ctl><load><--line-settings>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl --format=j")), QStringLiteral("<ztv-ctl><--format=json>"));
}

TEST_F(CompletionTest, TabCompletesNamesWithBlanksInBash) {
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl get Near\\ D")),
              QStringLiteral("<ztv-ctl><get><Near Distance>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl get \"near d")),
              QStringLiteral("<ztv-ctl><get><Near Distance>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl watch 'air t")),
              QStringLiteral("<ztv-ctl><watch><Air Temperature (Deg F)>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl watch air")),
              QStringLiteral("<ztv-ctl><watch><Air Temperature (Deg F)>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl set far\\ d")),
              QStringLiteral("<ztv-ctl><set><Far Distance=>"));
}

TEST_F(CompletionTest, TabCompletesFilesByTheirTypeInBash) {
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl diff w")), QStringLiteral("<ztv-ctl><diff><winder one.ztv>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl diff fo")), QStringLiteral("<ztv-ctl><diff><folder/>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl diff folder/")),
              QStringLiteral("<ztv-ctl><diff><folder/deep.ztv>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl flash u")), QStringLiteral("<ztv-ctl><flash><upgrade.hex>"));
    EXPECT_EQ(AfterTab(QStringLiteral("ztv-ctl load n")), QStringLiteral("<ztv-ctl><load><n>"));
}

TEST_F(FishCompletionTest, OffersEachCommandAndItsOptions) {
    for (const auto &[command, options] : UsageByHelp()) {
        const QStringList offered = Fish(("ztv-ctl " + command.toUtf8() + " --").constData());
        const std::set<QString> offeredOptions(offered.begin(), offered.end());
        for (const QString &option : command == QStringLiteral("simulate") ? SimulatorOptions() : options) {
            EXPECT_TRUE(offeredOptions.contains(option)) << command.toStdString() << option.toStdString();
        }
        if (!command.isEmpty()) {
            EXPECT_TRUE(Fish("ztv-ctl ").contains(command));
        }
    }
    EXPECT_EQ(Fish("ztv-ctl ge"), QStringList{QStringLiteral("get")});
}

TEST_F(FishCompletionTest, OffersValuesNamesAndFiles) {
    const auto only = [](const char *text) { return QStringList{QString::fromLatin1(text)}; };
    EXPECT_EQ(Fish("ztv-ctl --baud 9"), only("9600"));
    EXPECT_EQ(Fish("ztv-ctl --port get --format c"), only("csv"));
    EXPECT_EQ(Fish("ztv-ctl --address 1 get \"Near D"), only("Near Distance"));
    EXPECT_EQ(Fish("ztv-ctl set Far\\ D"), only("Far Distance="));
    EXPECT_EQ(Fish("ztv-ctl set Actual\\ Di"), QStringList());
    EXPECT_EQ(Fish("ztv-ctl diff win"), only("winder one.ztv"));
    EXPECT_EQ(Fish("ztv-ctl flash up"), only("upgrade.hex"));
}

} // namespace ztv
