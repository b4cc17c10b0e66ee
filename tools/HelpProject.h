#pragma once

#include "help/HelpTopics.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace ztv {

// Prepares the help for the compiler of help files: derives all files that it needs besides the pages from
// the table of the topics.
namespace HelpProject {

// Validates the help and returns its faults, one line each: broken links, missing pictures, pages that aren't
// in the table, pictures that no page shows, headings that differ from the page's title.
QStringList Faults(const HelpTopics &topics);

// Returns the file names, without their folder, of the pictures that the pages show.
QStringList Pictures(const HelpTopics &topics);

// Returns the files of the project by name: ZTV.hhp, and the contents and the index that it names.
QMap<QString, QString> Files(const HelpTopics &topics);

} // namespace HelpProject

} // namespace ztv
