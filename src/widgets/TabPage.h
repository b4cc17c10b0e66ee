#pragma once

#include "widgets/PageScale.h"

#include <QFrame>

namespace ztv {

enum class ValueState; // model/ValueState.h

// A page of the main form's tabs. The form sets its size; the page itself controls its content.
class TabPage : public QFrame {
    Q_OBJECT

public:
    // Builds the member `number` of the array of pages.
    TabPage(int number, QWidget *parent);

    // Called when a command ends a choice on the page. Writes the choice.
    virtual void LeaveEntry() {}

    // Called when the user has changed to this page. May write parameters.
    virtual void Entered() {}

    // Shows whether the measured values are live. Called when that changes, for the visible page, and before
    // a page is entered.
    virtual void ShowState(ValueState) {}

    // Marks the parameters whose last write failed, and no others. Called when one fails, for the visible
    // page; UpdateDisplay shows the rest.
    virtual void ShowFailedWrites() {}

    // Copies the parameter table onto the page. Called only for the visible page.
    virtual void UpdateDisplay() {}

    // Returns the scale of the page's content: the largest at which it fits into the page.
    const PageScale &Scale() const { return scale_; }

protected:
    // Lays out the content for the page's size and scale. Called at each change of the size.
    virtual void Fit() {}

    // Sets the font of the main form, at the page's scale, as that of the content.
    void ScaleFont();

    void resizeEvent(QResizeEvent *event) override;

private:
    PageScale scale_;
};

} // namespace ztv
