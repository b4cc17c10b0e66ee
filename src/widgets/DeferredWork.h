#pragma once

#include <functional>

class QAbstractButton;
class QAction;

// Work that a press starts from the event loop: an assistive client that pressed the button mustn't be kept
// waiting while the work has a box open. A press is dropped if, by the time of its work, the button is
// disabled or lies behind a dialog.
namespace DeferredWork {

void OnPress(QAbstractButton &button, std::function<void()> work);
void OnTrigger(QAction &action, std::function<void()> work);

} // namespace DeferredWork
