#pragma once

#include "support/UserDialogs.h"

#include <QString>
#include <QStringList>
#include <vector>

// The command line. Windows hands it over as one text, which is split the program's own way; other systems
// hand over a list, in which each argument is one whatever characters it has.
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

// Arguments that came as a list, as a user would have typed them: in quotes where they hold a blank or a
// quote, or nothing. StripQuotes gives back each of them as it came.
std::vector<QString> AsTyped(const QStringList &arguments);

// Reads the options, showing the usage and the list of arguments where they ask for it. `arguments` have
// their quotes on, as SplitArguments and AsTyped leave them.
Options Parse(const std::vector<QString> &arguments, UserDialogs &dialogs);

} // namespace CommandLine
