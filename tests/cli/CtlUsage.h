#pragma once

#include <QString>
#include <QStringList>
#include <map>
#include <set>
#include <string>

namespace ztv {

// The options of each command of ztv-ctl; of the program itself, or of all commands, at the empty name.
using CtlUsage = std::map<QString, std::set<QString>>;

// Returns the usage as a text to compare, a line for each command.
std::string TextOf(const CtlUsage &usage);

// Returns what a program prints on standard output.
QString OutputOf(const QString &program, const QStringList &arguments, const QString &folder = {});

// Returns what --help of the program and of each command says.
CtlUsage UsageByHelp();

// Returns the options of the simulated sensor that go through "ztv-ctl simulate".
std::set<QString> SimulatorOptions();

// Returns the options that a text names.
std::set<QString> OptionsIn(const QString &text);

// Returns a file of the sources.
QString SourceText(const char *path);

} // namespace ztv
