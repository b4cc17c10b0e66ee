#pragma once

#include <QString>

// True where a database file describes no more tables, views and the like than a file of ours may have. The
// file is looked at without the engine, which would read any number of them before it could be asked how many
// there are. True as well for what is no database: the engine says why.
bool HasFewSchemaEntries(const QString &fileName);
