// Fuzzes the command line and its file names. An input is used twice: as the text in UTF-8, and as a list of
// arguments, each with its length in bytes, then the argument in UTF-8.

#include "shell/CommandLine.h"

#include "fuzz/Harness.h"
#include "support/FileFunctions.h"
#include "support/PathFunctions.h"

namespace ztv {

namespace {

// The arguments must appear in the text in their order, with nothing but blanks between them.
void CheckSplit(const QString &text, const std::vector<QString> &arguments) {
    qsizetype at = 0;
    const auto passBlanks = [&] {
        while (at < text.size() && text[at] == u' ') {
            ++at;
        }
    };
    for (const QString &argument : arguments) {
        passBlanks();
        REQUIRE(!argument.isEmpty() && argument.front() != u' ');
        REQUIRE(QStringView(text).mid(at, argument.size()) == argument);
        REQUIRE(CommandLine::FindArgumentEnd(argument) == -1 || &argument == &arguments.back());
        at += argument.size();
        REQUIRE(at == text.size() || text[at] == u' ');
    }
    passBlanks();
    REQUIRE(at == text.size());
}

bool IsOption(const QString &argument) {
    for (const char *option : {"/CHECKOUT", "/CMDLINE", "/CLEARREG", "/HELP", "?", "/?"}) {
        if (argument.toUpper() == QLatin1String(option)) {
            return true;
        }
    }
    return false;
}

void CheckOptions(const std::vector<QString> &arguments) {
    Fuzz::CountingDialogs dialogs;
    const CommandLine::Options options = CommandLine::Parse(arguments, dialogs);
    QString file;
    int help = 0;
    for (const QString &argument : arguments) {
        if (!IsOption(argument)) {
            file = CommandLine::StripQuotes(argument);
        }
        help += argument.endsWith(u'?') || argument.endsWith(u'P') || argument.endsWith(u'p')
                    ? static_cast<int>(IsOption(argument))
                    : 0;
    }
    REQUIRE(options.CommandLineFile == file);
    REQUIRE(dialogs.boxes == help + static_cast<int>(options.ShowCommandLine));
    REQUIRE(!options.ShowCommandLine || dialogs.lastText.endsWith(arguments.back() + u'\n'));
}

// Arguments of a list must survive joining and splitting, whatever characters they have. None may turn into
// an option.
void CheckList(const QStringList &list) {
    const std::vector<QString> typed = CommandLine::AsTyped(list);
    REQUIRE(typed.size() == static_cast<std::size_t>(list.size()));
    for (std::size_t i = 0; i < typed.size(); ++i) {
        const QString &argument = list[static_cast<qsizetype>(i)];
        REQUIRE(CommandLine::StripQuotes(typed[i]) == argument);
        REQUIRE(IsOption(typed[i]) == IsOption(argument));
    }
    CheckOptions(typed);
}

QStringList ListOf(Fuzz::Input input) {
    QStringList list;
    while (!input.AtEnd()) {
        const std::uint8_t length = input.Byte();
        list.append(QString::fromUtf8(input.Take(length)));
    }
    return list;
}

void CheckFileName(const QString &path) {
    const QString name = PathFunctions::FileNameOfPath(path);
    REQUIRE(path.endsWith(name) && !name.contains(u'\\'));
    REQUIRE(name.size() == path.size() || path[path.size() - name.size() - 1] == u'\\');
    FileFunctions::FileExists(path); // reads the disk: only checks that it returns
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QString text = QString::fromUtf8(Fuzz::Bytes(data, size));
    const std::vector<QString> arguments = CommandLine::SplitArguments(text);
    CheckSplit(text, arguments);
    CheckOptions(arguments);
    CheckList(QStringList(arguments.begin(), arguments.end()));
    CheckList(ListOf(Fuzz::Input(data, size)));
    CheckFileName(text);
    for (const QString &argument : arguments) {
        CheckFileName(CommandLine::StripQuotes(argument));
    }
    return 0;
}

} // namespace ztv
