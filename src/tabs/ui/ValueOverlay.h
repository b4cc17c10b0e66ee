#pragma once

#include "tabs/EntryRules.h"
#include "widgets/ValueEditor.h"

#include <QLineEdit>
#include <QPointer>
#include <QRect>
#include <QString>

// Text1: the one box of the main form that values are typed into. It lies hidden until it is placed over
// what shows a value and opened there; its property "Tag" is the parameter's number as text.
class ValueOverlay : public QLineEdit, public ValueEditor {
    Q_OBJECT

public:
    // `parent` is what all pages stand in.
    ValueOverlay(EntryRules &rules, QWidget *parent);

    // Gets ready to edit the parameter `tag` at `place`, in the parent's coordinates, hidden or not as it is.
    // `owner` shows the value: its place in the tab order is the box's too, and it gets the focus back.
    void MoveOver(QWidget &owner, const QRect &place, const QString &tag, const QString &text);

    // Over the whole of a box, or beside an owner, what is before the owner in the tab order is before the
    // box too, as what is behind it always is.
    void MoveOver(QWidget &owner, const QString &tag, const QString &text) override;
    void MoveBeside(QWidget &owner, const QRect &place, const QString &tag, const QString &text) override;

    void Open(QChar first) override;
    void Open() { Open({}); }
    void StayOver() override;

    // Hides the box if it shows. Nothing is written.
    void Close();

    // As if the user left the box: checks and writes what is typed, then hides. False: the text was refused,
    // the user has been told, and the box has the focus. Must not be called during a check.
    bool Leave();

    // True while the typed text is being validated, or its write waits for the one before it.
    bool IsChecking() const { return checked_ != 0; }

    // The parameter's number as text, without moving the box.
    void SetTag(const QString &tag);

Q_SIGNALS:
    // The box has lost the focus, or was closed, and is hidden.
    void Left();

    void Checked(); // IsChecking may have ended

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void MoveInsteadOf(QWidget &owner, const QRect &place, const QString &tag, const QString &text);
    bool Write();
    bool PermitsLeaving();
    bool OwesACheck() const { return asked_ != openings_ && !text().isEmpty(); }
    void HideIfLeft();

    EntryRules &rules_;
    QPointer<QWidget> owner_;
    int openings_ = 0;
    int moves_ = 0;
    int checked_ = 0; // the opening whose text is being checked or written; 0: none
    QString checkedText_;
    int asked_ = 0; // the opening whose text was found valid as it was left
    bool overOwner_ = false;
    bool insteadOfOwner_ = false; // in the tab order
    bool closing_ = false;
    bool goneOn_ = false; // the user is at another value already than the key that is on its way was for
};
