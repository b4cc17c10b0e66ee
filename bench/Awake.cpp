#include "bench/Awake.h"

#include <QThread>
#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#endif

namespace ztv {

Awake::Awake() {
    for (int processor = 0; processor < QThread::idealThreadCount(); ++processor) {
        auto idler = std::make_unique<QProcess>();
#ifdef Q_OS_LINUX
        idler->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
#endif
        idler->start(QStringLiteral("nice"),
                     {QStringLiteral("-n"), QStringLiteral("19"), QStringLiteral("sh"), QStringLiteral("-c"),
                      QStringLiteral("while :; do :; done")});
        idlers_.push_back(std::move(idler));
    }
}

Awake::~Awake() {
    for (const auto &idler : idlers_) {
        idler->kill();
        idler->waitForFinished();
    }
}

} // namespace ztv
