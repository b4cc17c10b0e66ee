#pragma once

#include "support/UserDialogs.h"

#include <QPointer>
#include <QWidget>

// Real message boxes.
class QtDialogs : public UserDialogs {
public:
    // The window that owns the boxes from now on. Until it is set they stand alone.
    void SetOwner(QWidget *owner) { owner_ = owner; }

    BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) override;

private:
    QPointer<QWidget> owner_;
};
