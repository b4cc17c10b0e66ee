#pragma once

#include <functional>

namespace ztv {

// Turns the event loop until the condition holds. False when it still doesn't after the deadline, which
// is generous: a test that passes never comes near it.
bool WaitUntil(const std::function<bool()> &condition, int deadlineMs = 10000);

// Turns the event loop until nothing is left that could be done at once.
void Settle();

} // namespace ztv
