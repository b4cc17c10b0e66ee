#pragma once

#include <QString>

namespace TextEditor {

// Shows a file in a text editor of its own process, without waiting for it: in `command` where that program
// is there, else in what the desktop opens a text with. No shell is involved. False when nothing could be
// started.
bool Show(const QString &command, const QString &fileName);

} // namespace TextEditor
