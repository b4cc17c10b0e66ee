#pragma once

#include <functional>

class QAbstractButton;
class QAction;

namespace ztv {

// Runs the work of a press from the event loop, so that an assistive client that pressed the button isn't
// blocked while the work has a box open. Drops a press if the button is disabled or behind a modal dialog by
// then.
namespace DeferredWork {

void OnPress(QAbstractButton &button, std::function<void()> work);
void OnTrigger(QAction &action, std::function<void()> work);

} // namespace DeferredWork

} // namespace ztv
