#pragma once

#include "support/ClassMyHtmlHelp.h"

#include <QAbstractButton>
#include <QWidget>
#include <cstdint>

// The help of a dialog.
namespace FormHelp {

// F1 in the form opens the topic of that number, and so does its help button if it has one.
void Offer(QWidget &form, ClassMyHtmlHelp &help, std::int32_t HelpContextID,
           QAbstractButton *button = nullptr);

} // namespace FormHelp
