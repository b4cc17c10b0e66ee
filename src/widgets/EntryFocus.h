#pragma once

#include <QLineEdit>
#include <QMenuBar>
#include <functional>

namespace ztv {

// Focus behaviour of entry boxes: selects the text on entry and validates it before the user leaves.
namespace EntryFocus {

// Returns true if the focus goes to another window or a menu, from which it returns by itself: the user
// hasn't left the control.
bool IsElsewhere(Qt::FocusReason reason);

// Selects the whole text whenever the box receives the focus, also by a click. When the focus returns from
// another window or a menu, the selection and the cursor are unchanged.
void SelectAllOnEntry(QLineEdit &box);

// Calls `isValid` once when the user wants to leave the box for another control of its window: by a click, a
// key, a mnemonic, or by Enter where that presses the default button. If it returns false, the box has the
// focus, with its whole text selected, and the click or key has no effect. `isValid` shows the user the
// reason and may open a modal box for that.
//
// The user can always close the window (Escape, its frame). Going to another window or a menu isn't leaving,
// and neither is disabling or hiding the box.
void ValidateOnLeave(QLineEdit &box, std::function<bool()> isValid);

// Calls the `isValid` that ValidateOnLeave received for the box, for a command that ends the entry without
// taking the focus. If it returns false, the box has the focus as above and the command must not run.
bool PermitsLeaving(QLineEdit &box);

// Makes a menu bar return the focus to its previous owner also when the user goes from the menu bar straight
// to another control, so that the user leaves that owner for the other control.
void ComeBackFrom(QMenuBar &bar);

} // namespace EntryFocus

} // namespace ztv
