#pragma once

#include <functional>

namespace ztv {

// Runs the event loop until the condition is true. Returns false at the deadline, which is generous: a
// passing test never comes near it.
bool WaitUntil(const std::function<bool()> &condition, int deadlineMs = 10000);

// Runs the event loop until no event is pending.
void Settle();

} // namespace ztv
