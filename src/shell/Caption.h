#pragma once

#include <QWidget>

// Shows the name of the open settings file in the title of the main form. Without one the title stays as it
// is.
void UpdateCaption(QWidget &form, const QString &currentFileName);
