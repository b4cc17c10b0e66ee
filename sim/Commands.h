#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace sim {

class SimulatedSensor;

// The command language on standard input.
class Commands {
public:
    explicit Commands(SimulatedSensor &sensor) : sensor_(sensor) {}

    // Returns the text to print; "error: ..." when the command was rejected and changed nothing.
    QString Run(const QString &line);

private:
    using Handler = QString (Commands::*)(const QStringList &arguments);
    struct Command;
    static const Command commands[];

    QString Set(const QStringList &arguments);
    QString Get(const QStringList &arguments);
    QString Mute(const QStringList &arguments);
    QString Drop(const QStringList &arguments);
    QString Corrupt(const QStringList &arguments);
    QString Latency(const QStringList &arguments);
    QString Exception(const QStringList &arguments);
    QString Pace(const QStringList &arguments);
    QString Baud(const QStringList &arguments);
    QString Parity(const QStringList &arguments);
    QString Address(const QStringList &arguments);
    QString Addressing(const QStringList &arguments);
    QString Target(const QStringList &arguments);
    QString Echo(const QStringList &arguments);
    QString Unplug(const QStringList &arguments);
    QString Plug(const QStringList &arguments);
    QString Reset(const QStringList &arguments);
    QString Mark(const QStringList &arguments);
    QString Peek(const QStringList &arguments);
    QString Dump(const QStringList &arguments);
    QString SetBootFault(const QStringList &arguments);
    QString ClearBootFaults(const QStringList &arguments);
    QString Stats(const QStringList &arguments);
    QString Quit(const QStringList &arguments);
    QString Help(const QStringList &arguments);

    std::optional<int> Number(const QString &text) const;
    QString SetLine(int number, const std::optional<int> &value, const QString &text);

    SimulatedSensor &sensor_;
};

} // namespace sim
