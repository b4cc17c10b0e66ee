#pragma once

#include <QWidget>

namespace ztv {

// Shows the name of the open settings file in the title of the main form. Without an open file, leaves the
// title unchanged.
void UpdateCaption(QWidget &form, const QString &currentFileName);

} // namespace ztv
