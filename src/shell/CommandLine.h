#pragma once

#include "support/UserDialogs.h"

#include <QString>
#include <QStringList>
#include <vector>

// The command line as one text, taken apart the program's own way.
namespace CommandLine {

struct Options {
    bool CheckoutEnabled = false; // the "Checkout" tab stays
    bool ShowCommandLine = false;
    bool ClearRegistry = false;
    QString CommandLineFile; // the settings file named, empty if none
};

// The arguments of a text: parted by blanks outside double quotes, quotes left on.
std::vector<QString> SplitArguments(const QString &text);

// The position of the first blank outside double quotes, or -1.
qsizetype FindArgumentEnd(const QString &text);

// The argument without one leading and one trailing double quote, each independently.
QString StripQuotes(const QString &argument);

// The text that SplitArguments takes apart into these arguments: quotes around those that hold blanks.
QString JoinArguments(const QStringList &arguments);

// Reads the options, showing the usage and the list of arguments where they ask for it.
Options Parse(const QString &commandText, UserDialogs &dialogs);

} // namespace CommandLine
