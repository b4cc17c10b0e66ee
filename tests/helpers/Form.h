#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QString>
#include <QWidget>
#include <gtest/gtest.h>

namespace ztv {

// Drives a form by the names of its controls, as a person does with mouse and keyboard. A name that isn't
// there fails the test with the list of those that are.
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
    QString Text(const char *name) const; // of a label, a box, a button
    bool Enabled(const char *name) const; // of a widget or an action

private:
    [[noreturn]] void FailOnMiss(const char *name) const;

    QWidget &window_;
};

} // namespace ztv
