#include "widgets/EntryFocus.h"

#include "widgets/TextBoxFunctions.h"

#include <QApplication>
#include <QDialog>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

namespace ztv {

namespace {

using EntryFocus::IsElsewhere;

class Selector : public QObject {
public:
    explicit Selector(QLineEdit &box) : QObject(&box), box_(box) { box.installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override {
        switch (event->type()) {
        case QEvent::FocusIn:
            if (!elsewhere_) {
                TextBoxFunctions::SelectAllText(box_);
                byClick_ = static_cast<QFocusEvent *>(event)->reason() == Qt::MouseFocusReason;
            }
            break;
        case QEvent::FocusOut:
            elsewhere_ = IsElsewhere(static_cast<QFocusEvent *>(event)->reason());
            byClick_ = false;
            break;
        case QEvent::MouseButtonRelease:
            // The press has set the cursor: selects the text again, unless the user has selected a part by
            // dragging.
            if (byClick_ && !box_.hasSelectedText()) {
                TextBoxFunctions::SelectAllText(box_);
            }
            byClick_ = false;
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QLineEdit &box_;
    bool elsewhere_ = false;
    bool byClick_ = false;
};

class Validator : public QObject {
public:
    Validator(QLineEdit &box, std::function<bool()> isValid)
        : QObject(&box),
          box_(box),
          isValid_(std::move(isValid)),
          others_(*this) {
        box.installEventFilter(this);
        if (box.hasFocus()) {
            qApp->installEventFilter(&others_);
        }
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        return RefusesAtBox(*event) || QObject::eventFilter(watched, event);
    }

    // `isValid` may open a modal box, during which the window and this box may be destroyed.
    bool Check() {
        const QScopedValueRollback<const QWidget *> guard(checkingIn, box_.window());
        const QPointer<QLineEdit> box(&box_);
        const std::function<bool()> isValid = isValid_;
        if (isValid()) {
            return true;
        }
        if (box) {
            box->setFocus(Qt::OtherFocusReason);
            TextBoxFunctions::SelectAllText(*box);
        }
        return false;
    }

private:
    // Filters the events of all other controls, from the box's receiving the focus until the check.
    class Others : public QObject {
    public:
        explicit Others(Validator &validator) : validator_(validator) {}

        bool eventFilter(QObject *watched, QEvent *event) override {
            return validator_.RefusesAt(*watched, *event) || QObject::eventFilter(watched, event);
        }

    private:
        Validator &validator_;
    };

    // The window of the running check. Only one box of a window is checked at a time: while the user reads
    // the message, and while the focus returns, leaving a box of that window starts no other check.
    inline static const QWidget *checkingIn = nullptr;

    bool IsChecking() const { return checkingIn == box_.window(); }

    bool RefusesAtBox(QEvent &event) {
        switch (event.type()) {
        case QEvent::FocusIn:
            left_ = false;
            qApp->installEventFilter(&others_);
            return false;
        case QEvent::FocusOut:
            OnFocusOut(static_cast<QFocusEvent &>(event).reason());
            return false;
        case QEvent::KeyPress:
            return IsLeaving(static_cast<QKeyEvent &>(event)) && !PermitsLeaving();
        default:
            return false;
        }
    }

    // A click moves the focus before the clicked control receives the press.
    bool RefusesAt(QObject &watched, QEvent &event) {
        switch (event.type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::TouchBegin:
            return left_ && IsOfSameWindow(watched) && RefusesAfterwards();
        case QEvent::Shortcut:
            return box_.hasFocus() && IsOfSameWindow(watched) && !StaysAt(watched) && !PermitsLeaving();
        default:
            return false;
        }
    }

    void OnFocusOut(Qt::FocusReason reason) {
        const QWidget *next = QApplication::focusWidget();
        left_ = !IsElsewhere(reason) && !IsChecking() && !permitted_ && next != nullptr &&
                next->window() == box_.window() && IsInUse();
        if (!left_) {
            qApp->removeEventFilter(&others_);
            return;
        }
        // If no press arrives before this call, neither mouse nor key has moved the focus.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (left_) {
                    RefusesAfterwards();
                }
            },
            Qt::QueuedConnection);
    }

    bool RefusesAfterwards() {
        left_ = false;
        qApp->removeEventFilter(&others_);
        return IsInUse() && !box_.hasFocus() && !Check();
    }

    // For events that move the focus only after this filter has passed them on.
    bool PermitsLeaving() {
        if (IsChecking()) {
            return true;
        }
        if (!Check()) {
            return false;
        }
        permitted_ = true;
        QMetaObject::invokeMethod(
            this, [this] { permitted_ = false; }, Qt::QueuedConnection);
        return true;
    }

    bool IsInUse() const { return box_.isEnabled() && box_.isVisible(); }

    bool IsOfSameWindow(const QObject &object) const {
        return object.isWidgetType() && static_cast<const QWidget &>(object).window() == box_.window();
    }

    // Returns true if a mnemonic of `object` doesn't leave the box: it opens a menu or leads to the box
    // itself.
    bool StaysAt(const QObject &object) const {
        const auto *label = qobject_cast<const QLabel *>(&object);
        return qobject_cast<const QMenuBar *>(&object) != nullptr ||
               (label != nullptr && label->buddy() == &box_);
    }

    bool IsLeaving(const QKeyEvent &key) const {
        switch (key.key()) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            return (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return PressesDefaultButton();
        default:
            return false;
        }
    }

    bool PressesDefaultButton() const {
        if (qobject_cast<const QDialog *>(box_.window()) == nullptr) {
            return false;
        }
        const QList<QPushButton *> buttons = box_.window()->findChildren<QPushButton *>();
        return std::any_of(buttons.begin(), buttons.end(), [](const QPushButton *button) {
            return button->isDefault() && button->isEnabled() && button->isVisible();
        });
    }

    QLineEdit &box_;
    std::function<bool()> isValid_;
    Others others_;
    bool left_ = false;      // the focus has left the box, which isn't checked yet
    bool permitted_ = false; // the box is checked and the focus is about to leave
};

class MenuBarReturn : public QObject {
public:
    explicit MenuBarReturn(QMenuBar &bar) : QObject(&bar), bar_(bar) {
        connect(qApp, &QApplication::focusChanged, this, &MenuBarReturn::OnFocusChanged);
    }

private:
    void OnFocusChanged(QWidget *before, QWidget *now) {
        if (now == &bar_) {
            if (before != nullptr) { // null: the focus came from another window
                owner_ = before;
            }
        } else if (before == &bar_ && now != nullptr) {
            const QPointer<QWidget> owner = std::exchange(owner_, nullptr);
            if (owner && owner != now && owner->window() == now->window()) {
                const QPointer<QWidget> next(now);
                owner->setFocus(Qt::OtherFocusReason);
                if (next) {
                    next->setFocus(QGuiApplication::mouseButtons() == Qt::NoButton ? Qt::OtherFocusReason
                                                                                   : Qt::MouseFocusReason);
                }
            }
        }
    }

    QMenuBar &bar_;
    QPointer<QWidget> owner_;
};

} // namespace

namespace EntryFocus {

bool IsElsewhere(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

void SelectAllOnEntry(QLineEdit &box) {
    new Selector(box);
}

void ValidateOnLeave(QLineEdit &box, std::function<bool()> isValid) {
    new Validator(box, std::move(isValid));
}

bool PermitsLeaving(QLineEdit &box) {
    for (QObject *child : box.children()) {
        if (auto *validator = dynamic_cast<Validator *>(child)) {
            return validator->Check();
        }
    }
    return true;
}

void ComeBackFrom(QMenuBar &bar) {
    new MenuBarReturn(bar);
}

} // namespace EntryFocus

} // namespace ztv
