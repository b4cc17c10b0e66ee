#include "tests/cli/CtlUsage.h"

#include "tests/helpers/Files.h"
#include "tests/helpers/Wait.h"

#include <QProcess>
#include <QRegularExpression>

namespace ztv {

namespace {

std::set<QString> Captured(const QString &text, const char *pattern) {
    const QRegularExpression expression(QString::fromLatin1(pattern), QRegularExpression::MultilineOption);
    std::set<QString> found;
    for (const QRegularExpressionMatch &match : expression.globalMatch(text)) {
        found.insert(match.captured(1));
    }
    return found;
}

std::set<QString> OptionsOfHelp(const QString &help) {
    return Captured(help, "^  (?:-\\w, ?)?(--[a-z-]+)");
}

QString Help(const QStringList &command) {
    return OutputOf(QStringLiteral(ZTV_BIN_DIR "/ztv-ctl"), command + QStringList{QStringLiteral("--help")});
}

} // namespace

std::string TextOf(const CtlUsage &usage) {
    QString text;
    for (const auto &[command, options] : usage) {
        text += command + u':';
        for (const QString &option : options) {
            text += u' ' + option;
        }
        text += u'\n';
    }
    return text.toStdString();
}

QString OutputOf(const QString &program, const QStringList &arguments, const QString &folder) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    EXPECT_TRUE(WaitUntil([&] { return process.state() == QProcess::NotRunning; })) << program.toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

CtlUsage UsageByHelp() {
    const QString help = Help({});
    CtlUsage usage = {{QString(), OptionsOfHelp(help)}};
    for (const QString &command :
         Captured(help.mid(help.indexOf(QStringLiteral("\nCommands:"))), "^  ([a-z]+) +\\w")) {
        usage[command] = OptionsOfHelp(Help({command}));
        usage[command].erase(QStringLiteral("--help"));
    }
    return usage;
}

std::set<QString> SimulatorOptions() {
    std::set<QString> options =
        OptionsOfHelp(OutputOf(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"), {QStringLiteral("--help")}));
    options.erase(QStringLiteral("--version"));
    return options;
}

std::set<QString> OptionsIn(const QString &text) {
    return Captured(text, "(?<![\\w-])(--[a-z][a-z-]+)");
}

QString SourceText(const char *path) {
    const QByteArray text = ReadFile(QStringLiteral(ZTV_TESTS_DIR "/../") + QString::fromLatin1(path));
    EXPECT_FALSE(text.isEmpty()) << path;
    return QString::fromUtf8(text);
}

} // namespace ztv
