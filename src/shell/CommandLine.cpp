#include "shell/CommandLine.h"

#include "support/ApplicationTitle.h"
#include "support/Numbers.h"
#include "support/ProgramVersion.h"

namespace ztv {

namespace {

const BoxStyle information{.icon = BoxIcon::Information, .buttons = BoxButtons::Ok};

QString Usage() {
    return QStringLiteral("Usage: \n\n"
                          "ZtvLink.exe [filename.ztv] [/options] where options are:\n\n"
                          " /HELP\t\tDisplay this help window\n"
                          " /CLEARREG\tClear and recreate all registry settings\n");
}

// The box lists only the options of a program that starts.
QString UsageOnTerminal() {
    return Usage() + QStringLiteral(" --help\t\tPrint this help and exit\n"
                                    " --version\tPrint the version and exit\n");
}

} // namespace

namespace CommandLine {

std::vector<QString> SplitArguments(const QString &text) {
    std::vector<QString> arguments;
    QString rest = TrimBlanks(text).toString();
    while (!rest.isEmpty()) {
        const qsizetype end = FindArgumentEnd(rest);
        arguments.push_back(end < 0 ? rest : rest.left(end));
        rest = end < 0 ? QString() : TrimBlanks(QStringView(rest).mid(end)).toString();
    }
    return arguments;
}

qsizetype FindArgumentEnd(const QString &text) {
    bool inQuotes = false;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == u'"') {
            inQuotes = !inQuotes;
        } else if (text[at] == u' ' && !inQuotes) {
            return at;
        }
    }
    return -1;
}

QString StripQuotes(const QString &argument) {
    QString stripped = argument;
    if (stripped.startsWith(u'"')) {
        stripped.remove(0, 1);
    }
    if (stripped.endsWith(u'"')) {
        stripped.chop(1);
    }
    return stripped;
}

std::vector<QString> AsTyped(const QStringList &arguments) {
    std::vector<QString> typed;
    for (const QString &argument : arguments) {
        const bool needsQuotes = argument.isEmpty() || argument.contains(u' ') || argument.contains(u'"');
        typed.push_back(needsQuotes ? u'"' + argument + u'"' : argument);
    }
    return typed;
}

std::optional<QString> TextToPrint(const QStringList &arguments) {
    for (const QString &argument : arguments) {
        if (argument == QStringLiteral("--help")) {
            return UsageOnTerminal();
        }
        if (argument == QStringLiteral("--version")) {
            return ApplicationTitle() + u' ' + ProgramVersion() + u'\n';
        }
    }
    return std::nullopt;
}

Options Parse(const std::vector<QString> &arguments, UserDialogs &dialogs) {
    Options options;
    QString list;
    for (const QString &argument : arguments) {
        const QString upper = argument.toUpper();
        if (upper == QStringLiteral("/CHECKOUT")) {
            options.CheckoutEnabled = true;
        } else if (upper == QStringLiteral("/CMDLINE")) {
            options.ShowCommandLine = true;
        } else if (upper == QStringLiteral("/CLEARREG")) {
            options.ClearRegistry = true;
        } else if (upper == QStringLiteral("/HELP") || upper == QStringLiteral("?") ||
                   upper == QStringLiteral("/?")) {
            dialogs.OwnedMessageBox(Usage(), information, ApplicationTitle());
        } else {
            options.CommandLineFile = StripQuotes(argument);
        }
        list += argument + u'\n';
    }
    if (options.ShowCommandLine) {
        dialogs.OwnedMessageBox(QStringLiteral("Command Line Options Selected: \n\n") + list, information,
                                ApplicationTitle());
    }
    return options;
}

} // namespace CommandLine

} // namespace ztv
