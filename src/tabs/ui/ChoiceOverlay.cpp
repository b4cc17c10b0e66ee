#include "tabs/ui/ChoiceOverlay.h"

#include "widgets/Controls.h"
#include "widgets/EntryFocus.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace ztv {

ChoiceOverlay::ChoiceOverlay(QWidget *parent) : QComboBox(parent) {
    Controls::Named(this, "Combo1");
    setAccessibleName(QStringLiteral("Value"));
    hide();
}

void ChoiceOverlay::Open(QWidget &owner, const QPoint &corner, int width, const QStringList &texts,
                         int choice) {
    owner_ = &owner;
    clear();
    addItems(texts);
    setCurrentIndex(choice);
    setGeometry(QRect(corner, QSize(width, sizeHint().height())));
    raise();
    show();
    setFocus(Qt::OtherFocusReason);
}

void ChoiceOverlay::Close() {
    if (isHidden()) {
        return;
    }
    const QScopedValueRollback<bool> guard(closing_, true);
    if (owner_ && window()->focusWidget() == this) {
        owner_->setFocus(Qt::OtherFocusReason);
    }
    hide();
}

void ChoiceOverlay::Leave() {
    if (!isHidden()) {
        Q_EMIT Chosen(currentIndex());
        Close();
    }
}

void ChoiceOverlay::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        Close();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        focusNextChild(); // as Tab does
        break;
    default:
        QComboBox::keyPressEvent(event);
        break;
    }
}

void ChoiceOverlay::focusOutEvent(QFocusEvent *event) {
    QComboBox::focusOutEvent(event);
    const bool comesBack =
        EntryFocus::IsElsewhere(event->reason()) || QApplication::activePopupWidget() != nullptr;
    if (closing_ || isHidden() || comesBack) {
        return;
    }
    Q_EMIT Chosen(currentIndex());
    hide();
}

} // namespace ztv
