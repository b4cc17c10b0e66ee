#pragma once

#include <QFrame>

// A page of the main form's tabs. Its size is the form's business, what it shows is its own.
class TabPage : public QFrame {
    Q_OBJECT

public:
    // The member `number` of the pages' array.
    TabPage(int number, QWidget *parent);

    // The user changes to another page: what this one still has to write, it writes now, which may turn the
    // event loop.
    virtual void Leaving() {}

    // A command ends what is chosen on the page: it is written now, which may turn the event loop.
    virtual void LeaveEntry() {}

    // The user has changed to this page. It may write parameters, which turns the event loop.
    virtual void Entered() {}

    // Copies the parameter table onto the page. Called for the page that shows only.
    virtual void UpdateDisplay() {}
};
