#pragma once

#include <QString>

namespace ztv {

namespace TextEditor {

// Shows a file in a text editor in a separate process, without waiting for it: in `command` if that program
// exists, otherwise in an editor of the desktop. Uses no shell. Returns false if nothing could be started.
bool Show(const QString &command, const QString &fileName);

} // namespace TextEditor

} // namespace ztv
