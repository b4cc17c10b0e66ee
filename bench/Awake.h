#pragma once

#include <QProcess>
#include <memory>
#include <vector>

namespace ztv {

// Keeps each processor from going to sleep, by work that gives way to any other. On a virtual machine a
// processor that sleeps takes longer to wake than a round trip takes.
class Awake {
public:
    Awake();
    ~Awake();

private:
    std::vector<std::unique_ptr<QProcess>> idlers_;
};

} // namespace ztv
