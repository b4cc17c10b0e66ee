#include "tests/helpers/Form.h"

#include "tests/helpers/Wait.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <stdexcept>

namespace ztv {

void Form::FailOnMiss(const char *name) const {
    std::string names;
    for (const QObject *child : window_.findChildren<QObject *>()) {
        if (!child->objectName().isEmpty() && !child->objectName().startsWith(QStringLiteral("qt_"))) {
            names += "\n  " + child->objectName().toStdString();
        }
    }
    throw std::runtime_error(std::string("no control ") + name + "; there are:" + names);
}

void Form::Press(const char *buttonName) const {
    auto &button = Get<QAbstractButton>(buttonName);
    EXPECT_TRUE(button.isEnabled()) << buttonName;
    QTest::mouseClick(&button, Qt::LeftButton);
    Settle();
}

void Form::Choose(const char *actionName) const {
    auto &action = Get<QAction>(actionName);
    EXPECT_TRUE(action.isEnabled()) << actionName;
    action.trigger();
    Settle();
}

QString Form::Text(const char *name) const {
    auto &widget = Get<QWidget>(name);
    if (const auto *label = qobject_cast<QLabel *>(&widget)) {
        return label->text();
    }
    if (const auto *box = qobject_cast<QLineEdit *>(&widget)) {
        return box->text();
    }
    if (const auto *button = qobject_cast<QAbstractButton *>(&widget)) {
        return button->text();
    }
    ADD_FAILURE() << name << " has no text";
    return {};
}

bool Form::Enabled(const char *name) const {
    if (const auto *action = window_.findChild<QAction *>(QString::fromLatin1(name))) {
        return action->isEnabled();
    }
    return Get<QWidget>(name).isEnabled();
}

} // namespace ztv
