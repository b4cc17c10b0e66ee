#include "cli/Console.h"

#include "cli/Interruption.h"

#include <QByteArray>
#include <unistd.h>

namespace ztv {

namespace {

bool IsTerminal(std::FILE *stream) {
    return isatty(fileno(stream)) != 0;
}

bool IsYes(const QByteArray &answer) {
    const QByteArray letters = answer.trimmed().toLower();
    return letters == "y" || letters == "yes";
}

// A name from outside may hold what a terminal obeys, or a line end.
QString OneLine(QString text) {
    for (QChar &letter : text) {
        letter = letter.category() == QChar::Other_Control ? QChar(u'?') : letter;
    }
    return text;
}

} // namespace

Console::Streams Console::OfProcess() {
    return {.someoneAnswers = IsTerminal(stdin), .someoneReads = IsTerminal(stderr)};
}

void Console::Fail(const QString &text) {
    Print(text);
}

void Console::Remark(const QString &text) {
    if (!quiet_) {
        Print(text);
    }
}

void Console::Progress(const QString &text) {
    if (quiet_ || !streams_.someoneReads) {
        return;
    }
    std::fputs(('\r' + text.leftJustified(shown_).toUtf8()).constData(), streams_.messages);
    std::fflush(streams_.messages);
    shown_ = text.size();
}

void Console::EndProgress() {
    if (shown_ > 0) {
        std::fputs(('\r' + QByteArray(shown_, ' ') + '\r').constData(), streams_.messages);
        std::fflush(streams_.messages);
        shown_ = 0;
    }
}

void Console::AskToGoOn(const QString &question) {
    if (!streams_.someoneAnswers) {
        throw Failure(ExitStatus::WrongUse,
                      question + QStringLiteral(" Nobody can answer here; give --yes to go on"));
    }
    EndProgress();
    std::fputs((OneLine(question).toUtf8() + " [y/N] ").constData(), streams_.messages);
    std::fflush(streams_.messages);
    QByteArray answer; // the whole line: the rest of one must not answer the next question
    int letter = std::fgetc(streams_.input);
    for (; letter != EOF && letter != '\n'; letter = std::fgetc(streams_.input)) {
        answer.append(static_cast<char>(letter));
    }
    if (letter == EOF && answer.isEmpty()) {
        std::fputc('\n', streams_.messages);
    }
    ThrowIfInterrupted();
    if (!IsYes(answer)) {
        throw Failure(ExitStatus::Refused, QStringLiteral("Nothing was written"));
    }
}

void Console::Print(const QString &line) {
    EndProgress();
    std::fputs(("ztv-ctl: " + OneLine(line).toUtf8() + '\n').constData(), streams_.messages);
    std::fflush(streams_.messages);
}

} // namespace ztv
