#pragma once

#include <QAbstractButton>
#include <QWidget>
#include <functional>

namespace ztv {

// Context help of dialogs.
namespace FormHelp {

// Shows a form's topic; the argument is the form's window.
using ShowTopic = std::function<void(WId)>;

// Makes F1 in the form show its topic, and so the help button if there is one.
void Offer(QWidget &form, const ShowTopic &showTopic, QAbstractButton *button = nullptr);

} // namespace FormHelp

} // namespace ztv
