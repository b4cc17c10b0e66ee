#include "tabs/ui/ValueOverlay.h"

#include "support/Numbers.h"
#include "tabs/ui/TextBoxEntry.h"
#include "widgets/Controls.h"
#include "widgets/EntryFocus.h"
#include "widgets/TextBoxFunctions.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace ztv {

ValueOverlay::ValueOverlay(EntryRules &rules, QWidget *parent) : QLineEdit(parent), rules_(rules) {
    Controls::Named(this, "Text1");
    setAccessibleName(QStringLiteral("Value"));
    EntryFocus::SelectAllOnEntry(*this);
    EntryFocus::ValidateOnLeave(*this, [this] { return PermitsLeaving(); });
    hide();
}

void ValueOverlay::MoveOver(QWidget &owner, const QRect &place, const QString &tag, const QString &text) {
    owner_ = &owner;
    // Aligns the typed text like the text that it replaces.
    const auto *box = qobject_cast<QLineEdit *>(&owner);
    setAlignment(box != nullptr ? box->alignment() : Qt::AlignLeft | Qt::AlignVCenter);
    setFont(owner.font());
    overOwner_ = false;
    insteadOfOwner_ = false;
    setGeometry(place);
    setText(text);
    SetTag(tag);
    QWidget::setTabOrder(&owner, this);
}

void ValueOverlay::MoveOver(QWidget &owner, const QString &tag, const QString &text) {
    MoveInsteadOf(owner, owner.rect(), tag, text);
    overOwner_ = true;
}

void ValueOverlay::MoveBeside(QWidget &owner, const QRect &place, const QString &tag, const QString &text) {
    MoveInsteadOf(owner, place, tag, text);
    setAlignment(Qt::AlignCenter);
}

// `place` is in the owner's coordinates.
void ValueOverlay::MoveInsteadOf(QWidget &owner, const QRect &place, const QString &tag,
                                 const QString &text) {
    MoveOver(owner, QRect(owner.mapTo(parentWidget(), place.topLeft()), place.size()), tag, text);
    insteadOfOwner_ = true;
}

void ValueOverlay::StayOver() {
    if (isHidden() || !overOwner_ || !owner_) {
        return;
    }
    if (!owner_->isEnabled() || !owner_->isVisibleTo(parentWidget())) {
        Close();
        return;
    }
    Follow(owner_->rect());
}

void ValueOverlay::StayBeside(QWidget &owner, const QRect &place) {
    if (!isHidden() && !overOwner_ && owner_ == &owner) {
        Follow(place);
    }
}

// `place` is in the owner's coordinates.
void ValueOverlay::Follow(const QRect &place) {
    setGeometry(QRect(owner_->mapTo(parentWidget(), place.topLeft()), place.size()));
    if (font() != owner_->font()) {
        setFont(owner_->font());
    }
}

void ValueOverlay::SetTag(const QString &tag) {
    setProperty("Tag", tag);
    setAccessibleName(rules_.Zentrova().ParamName(ToInt16(ToNumber(tag))));
}

void ValueOverlay::Open(QChar first) {
    raise();
    show();
    setFocus(Qt::OtherFocusReason);
    TextBoxFunctions::SelectAllText(*this);
    if (!first.isNull()) {
        insert(first);
    }
}

void ValueOverlay::Close() {
    if (isHidden()) {
        return;
    }
    {
        const QScopedValueRollback<bool> guard(closing_, true);
        // Also while another window is active: the owner gets the focus when this window becomes active
        // again.
        if (owner_ && window()->focusWidget() == this) {
            owner_->setFocus(Qt::OtherFocusReason);
        }
        hide();
    }
    Q_EMIT Left();
}

bool ValueOverlay::Leave() {
    if (isHidden()) {
        return true;
    }
    if (checking_ || !EntryFocus::PermitsLeaving(*this)) {
        return false;
    }
    Close();
    return true;
}

void ValueOverlay::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        Close();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!checking_ && Write()) {
            Close();
        }
        break;
    default:
        QLineEdit::keyPressEvent(event);
        break;
    }
}

bool ValueOverlay::Write() {
    const QScopedValueRollback<bool> guard(checking_, true);
    return ValidateAndWriteTextBoxVal(*this, rules_);
}

bool ValueOverlay::PermitsLeaving() {
    if (isHidden() || closing_ || checking_ || text().isEmpty()) {
        return true;
    }
    return Write() || isHidden(); // it may be closed behind the message
}

bool ValueOverlay::focusNextPrevChild(bool next) {
    if (!next && insteadOfOwner_ && owner_) {
        QWidget::setTabOrder(this, owner_); // Shift+Tab skips the owner, as Tab does
    }
    return QLineEdit::focusNextPrevChild(next);
}

void ValueOverlay::focusOutEvent(QFocusEvent *event) {
    QLineEdit::focusOutEvent(event);
    if (closing_ || EntryFocus::IsElsewhere(event->reason())) {
        return;
    }
    // Queued, so that it runs after the check of the text: a key is checked before the focus moves, a click
    // at its press, and any other change of focus queues its check before this call.
    QMetaObject::invokeMethod(this, &ValueOverlay::HideIfLeft, Qt::QueuedConnection);
}

void ValueOverlay::HideIfLeft() {
    if (checking_ || isHidden() || window()->focusWidget() == this) {
        return;
    }
    hide();
    Q_EMIT Left();
}

} // namespace ztv
