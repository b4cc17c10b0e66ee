#pragma once

#include "support/Fault.h"

#include <QApplication>
#include <functional>
#include <utility>

namespace ztv {

// The application object: handles every fault that an event handler doesn't catch.
class Application : public QApplication {
    Q_OBJECT

public:
    Application(int &argc, char **argv);

    // Sets the handler of uncaught faults. REQUIRES: called before the first event.
    void OnFault(std::function<void(const Fault &)> handler) { onFault_ = std::move(handler); }

    bool notify(QObject *receiver, QEvent *event) override;

private:
    std::function<void(const Fault &)> onFault_;
    bool handlingFault_ = false;
};

} // namespace ztv
