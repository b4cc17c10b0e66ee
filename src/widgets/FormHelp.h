#pragma once

#include <QAbstractButton>
#include <QWidget>
#include <functional>

// The help of a dialog.
namespace FormHelp {

// Shows a form's topic; the argument is the form's window.
using ShowTopic = std::function<void(WId)>;

// F1 in the form shows its topic, and so does its help button if it has one.
void Offer(QWidget &form, const ShowTopic &showTopic, QAbstractButton *button = nullptr);

} // namespace FormHelp
