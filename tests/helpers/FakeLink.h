#pragma once

#include "model/ParameterLink.h"

#include <functional>
#include <utility>
#include <vector>

namespace ztv {

// A link that records each call.
class FakeLink : public ParameterLink {
public:
    bool PortIsOpen() const override { return open; }
    void WaitForWriteIdle() override {
        ++waits;
        if (whileWaiting) {
            whileWaiting();
        }
    }
    void StartWrite(std::int16_t Tag, std::int32_t value) override {
        writes.emplace_back(Tag, value);
        if (onStart) {
            onStart();
        }
    }

    void DefineDownload() override { ++downloadsDefined; }
    void DownloadValue(std::int16_t Tag, std::int32_t value) override { downloaded.emplace_back(Tag, value); }
    void StartDownload() override { ++downloadsStarted; }

    bool open = true;
    int waits = 0;
    int downloadsDefined = 0;
    int downloadsStarted = 0;
    std::vector<std::pair<int, int>> downloaded;
    std::vector<std::pair<int, int>> writes;
    std::function<void()> whileWaiting;
    std::function<void()> onStart;
};

} // namespace ztv
