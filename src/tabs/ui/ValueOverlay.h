#pragma once

#include "tabs/EntryRules.h"
#include "widgets/ValueEditor.h"

#include <QLineEdit>
#include <QPointer>
#include <QRect>
#include <QString>

namespace ztv {

// Text1: the only box of the main form into which the user types values. It is hidden until it is placed over
// the display of a value and opened there. Its property "Tag" is the parameter's number as text.
class ValueOverlay : public QLineEdit, public ValueEditor {
    Q_OBJECT

public:
    // `parent` contains all pages.
    ValueOverlay(EntryRules &rules, QWidget *parent);

    // Prepares to edit the parameter `tag` at `place`, in the parent's coordinates, without showing or hiding
    // the box. `owner` shows the value: the box follows it in the tab order and returns the focus to it.
    void MoveOver(QWidget &owner, const QRect &place, const QString &tag, const QString &text);

    // Over the whole of a box or beside an owner, the box replaces the owner in the tab order: Shift+Tab
    // leads to the control before the owner, as Tab leads to the control after it.
    void MoveOver(QWidget &owner, const QString &tag, const QString &text) override;
    void MoveBeside(QWidget &owner, const QRect &place, const QString &tag, const QString &text) override;

    void Open(QChar first) override;
    void Open() { Open({}); }
    void StayOver() override;
    void StayBeside(QWidget &owner, const QRect &place) override;

    // Hides the box, if it is shown, without writing.
    void Close();

    // Acts as if the user left the box: validates and writes the text, then hides the box. Returns false if
    // the text was rejected, with the reason shown and the focus in the box, or while that reason is shown.
    bool Leave();

    // Sets the parameter's number, as text, without moving the box.
    void SetTag(const QString &tag);

Q_SIGNALS:
    // The box has lost the focus, or was closed, and is hidden.
    void Left();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void Follow(const QRect &place);
    void MoveInsteadOf(QWidget &owner, const QRect &place, const QString &tag, const QString &text);
    bool Write();
    bool PermitsLeaving();
    void HideIfLeft();

    EntryRules &rules_;
    QPointer<QWidget> owner_;
    bool overOwner_ = false;
    bool insteadOfOwner_ = false; // in the tab order
    bool closing_ = false;
    bool checking_ = false; // the text is being checked; a message may be open
};

} // namespace ztv
