#pragma once

#include <QString>

namespace ztv {

// Returns true where a database file describes no more tables, views and the like than a valid file may have.
// Reads the file without the engine, which would load any number of them before it could be asked for their
// number. Also returns true for a file that is no database: the engine then reports why.
bool HasFewSchemaEntries(const QString &fileName);

} // namespace ztv
