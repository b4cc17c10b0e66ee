#pragma once

#include "support/UserDialogs.h"

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace ztv {

// Parses the command line. Windows passes it as one text, which the program splits by its own rules; other
// systems pass a list, in which each item is one argument, whatever characters it contains.
namespace CommandLine {

struct Options {
    bool CheckoutEnabled = false; // shows the "Checkout" tab
    bool ShowCommandLine = false;
    bool ClearRegistry = false;
    QString CommandLineFile; // the name of the settings file; empty if none
};

// Splits a text at the blanks outside double quotes. The arguments keep their quotes.
std::vector<QString> SplitArguments(const QString &text);

// Returns the position of the first blank outside double quotes, or -1.
qsizetype FindArgumentEnd(const QString &text);

// Removes one leading and one trailing double quote, each independently of the other.
QString StripQuotes(const QString &argument);

// Returns the arguments of a list as a user would have typed them: in quotes if they contain a blank or a
// quote, or are empty. StripQuotes restores each of them.
std::vector<QString> AsTyped(const QStringList &arguments);

// Returns the text to print on standard output instead of starting: the usage for --help, the version for
// --version, whichever comes first. Returns nothing if neither is given.
std::optional<QString> TextToPrint(const QStringList &arguments);

// Parses the options, and shows the usage and the list of arguments if they request it. REQUIRES: `arguments`
// have their quotes, as SplitArguments and AsTyped return them.
Options Parse(const std::vector<QString> &arguments, UserDialogs &dialogs);

} // namespace CommandLine

} // namespace ztv
