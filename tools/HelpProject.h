#pragma once

#include "help/HelpTopics.h"

#include <QMap>
#include <QString>
#include <QStringList>

// The help as the compiler of help files takes it: all that it needs besides the pages follows from the table
// of the topics.
namespace HelpProject {

// Checks the help and reports its faults, one line each: links and pictures that lead nowhere, pages that
// aren't in the table, pictures that no page shows, headings that aren't the page's title.
QStringList Faults(const HelpTopics &topics);

// The pictures that the pages show, without their folder.
QStringList Pictures(const HelpTopics &topics);

// The files of the project by their names: ZTV.hhp, and the contents and the index that it names.
QMap<QString, QString> Files(const HelpTopics &topics);

} // namespace HelpProject
