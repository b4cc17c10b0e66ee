#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QString>
#include <QWidget>
#include <gtest/gtest.h>

namespace ztv {

// Operates a form by the names of its controls, as a user does with mouse and keyboard. An unknown name fails
// the test and lists the known ones.
class Form {
public:
    explicit Form(QWidget &window) : window_(window) {}

    template <typename Control>
    Control &Get(const char *name) const {
        auto *found = window_.findChild<Control *>(QString::fromLatin1(name));
        if (found == nullptr) {
            FailOnMiss(name);
        }
        return *found;
    }

    void Press(const char *buttonName) const;
    void Choose(const char *actionName) const;
    QString Text(const char *name) const; // for a label, a box or a button
    bool Enabled(const char *name) const; // for a widget or an action

private:
    [[noreturn]] void FailOnMiss(const char *name) const;

    QWidget &window_;
};

} // namespace ztv
