#pragma once

#include "firmware/OneButtonUpgrade.h"

#include <QTimer>

namespace ztv {

// Ends the upgrade's next wait, of ten seconds, at once.
inline void CutWaitShort(OneButtonUpgrade &upgrade) {
    auto *timer = upgrade.findChild<QTimer *>(QStringLiteral("TimerTimeout"));
    auto *watch = new QTimer(&upgrade);
    QObject::connect(watch, &QTimer::timeout, timer, [timer, watch] {
        if (timer->isActive()) {
            watch->stop();
            timer->start(0);
        }
    });
    watch->start(0);
}

} // namespace ztv
