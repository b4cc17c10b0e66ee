#pragma once

#include <QLineEdit>
#include <QMenuBar>
#include <functional>

// Focus behaviour of entry boxes: selects the text on entry and validates it before the user leaves.
namespace EntryFocus {

// The focus goes to another window or a menu, and comes back from there by itself: nothing is left.
bool IsElsewhere(Qt::FocusReason reason);

// Selects the whole text when the focus comes to the box by whatever way, a click included. Coming back from
// another window or from a menu of its own, the box is as it was left.
void SelectAllOnEntry(QLineEdit &box);

// Asks `isValid` once when the user wants to leave the box for another control of its window: by a click, a
// key, a mnemonic, or by Enter where that presses the default button. On false the focus is on the box, with
// its whole text selected, and what was clicked or pressed doesn't act. `isValid` tells the user why, and may
// open a modal box for that.
//
// The window can always be closed (Escape, its frame), and another window or a menu isn't leaving; neither is
// a box that is disabled or hidden.
void ValidateOnLeave(QLineEdit &box, std::function<bool()> isValid);

// Asks what ValidateOnLeave was given for the box, for a command that ends what is typed there without taking
// the focus. False: as above; the command mustn't run.
bool PermitsLeaving(QLineEdit &box);

// A menu bar that has taken the focus gives it back also when the user goes straight on to another control,
// so that what had it is left for that.
void ComeBackFrom(QMenuBar &bar);

} // namespace EntryFocus
