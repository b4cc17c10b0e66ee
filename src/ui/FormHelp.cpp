#include "ui/FormHelp.h"

#include <QShortcut>

void FormHelp::Offer(QWidget &form, ClassMyHtmlHelp &help, std::int32_t HelpContextID,
                     QAbstractButton *button) {
    const auto show = [&form, &help, HelpContextID] { help.HHDisplayTopicID(form.winId(), HelpContextID); };
    auto *key = new QShortcut(QKeySequence(Qt::Key_F1), &form);
    key->setAutoRepeat(false);
    QObject::connect(key, &QShortcut::activated, &form, show);
    if (button != nullptr) {
        QObject::connect(button, &QAbstractButton::clicked, &form, show);
    }
}
