#pragma once

#include "cli/Failure.h"

#include <QString>
#include <cstdio>

namespace ztv {

// The person before the program: remarks, progress and questions. All of it goes to the stream of messages,
// so that results stay apart.
class Console {
public:
    struct Streams {
        std::FILE *input = stdin;
        std::FILE *messages = stderr;
        bool someoneAnswers = false; // the input is a terminal
        bool someoneReads = false;   // the messages go to a terminal
    };

    // `quiet` leaves out remarks and progress.
    Console(const Streams &streams, bool quiet) : streams_(streams), quiet_(quiet) {}
    ~Console() { EndProgress(); }
    Console(const Console &) = delete;
    Console &operator=(const Console &) = delete;

    // Returns the process's own streams.
    static Streams OfProcess();

    // Prints a line. Fail is for what went wrong, Remark for what a script needn't know.
    void Fail(const QString &text);
    void Remark(const QString &text);

    // Replaces the line of progress. Prints nothing where no one reads.
    void Progress(const QString &text);
    void EndProgress();

    // Whether a question can be answered.
    bool SomeoneAnswers() const { return streams_.someoneAnswers; }

    // Asks a question that is answered with y or n; anything but a yes is a no. Throws a Failure: wrong use
    // where no one can answer, refused on a no.
    void AskToGoOn(const QString &question);

private:
    void Print(const QString &line);

    Streams streams_;
    bool quiet_;
    qsizetype shown_ = 0; // letters of the progress
};

} // namespace ztv
