#pragma once

#include <QProcess>
#include <memory>
#include <vector>

namespace ztv {

// Keeps each processor awake with work of the lowest priority. On a virtual machine, waking a processor takes
// longer than a round trip.
class Awake {
public:
    Awake();
    ~Awake();

private:
    std::vector<std::unique_ptr<QProcess>> idlers_;
};

} // namespace ztv
