#pragma once

#include <QString>
#include <exception>

namespace ztv {

// The program's results, by which scripts decide. Their numbers never change.
enum class ExitStatus {
    Done = 0,
    Differs = 1,      // of a comparison
    WrongUse = 2,     // of commands, options or names
    NoConnection = 3, // to the port or the sensor
    Refused = 4,      // by the sensor, by a check of a value, or by the person who was asked
    File = 5
};

// Why a command, or its part for one sensor, ends: one line for a person, and a number for a script.
class Failure : public std::exception {
public:
    Failure(ExitStatus status, const QString &text) : status_(status), text_(text), utf8_(text.toUtf8()) {}

    ExitStatus Status() const { return status_; }
    const QString &Text() const { return text_; }
    const char *what() const noexcept override { return utf8_.constData(); }

private:
    ExitStatus status_;
    QString text_;
    QByteArray utf8_;
};

} // namespace ztv
