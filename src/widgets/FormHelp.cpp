#include "widgets/FormHelp.h"

#include <QShortcut>

namespace ztv {

void FormHelp::Offer(QWidget &form, const ShowTopic &showTopic, QAbstractButton *button) {
    const auto show = [&form, showTopic] { showTopic(form.winId()); };
    auto *key = new QShortcut(QKeySequence(Qt::Key_F1), &form);
    key->setAutoRepeat(false);
    QObject::connect(key, &QShortcut::activated, &form, show);
    if (button != nullptr) {
        QObject::connect(button, &QAbstractButton::clicked, &form, show);
    }
}

} // namespace ztv
