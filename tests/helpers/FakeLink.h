#pragma once

#include "model/ClassZentrova.h"
#include "model/ParameterLink.h"

#include <functional>
#include <utility>
#include <vector>

namespace ztv {

// A link that records its calls. Its line is free after each write, unless `holds` keeps it busy until
// EndWrite.
class FakeLink : public ParameterLink {
public:
    bool PortIsOpen() const override { return open; }
    bool WriteIsUnderWay() const override { return busy; }
    void StartWrite(std::int16_t Tag, std::int32_t value) override {
        writes.emplace_back(Tag, value);
        busy = holds;
        if (onStart) {
            onStart();
        }
    }

    void DefineDownload() override { ++downloadsDefined; }
    void DownloadValue(std::int16_t Tag, std::int32_t value) override { downloaded.emplace_back(Tag, value); }
    void StartDownload() override { ++downloadsStarted; }
    void TableLoaded() override { ++tablesLoaded; }

    // Ends the write on the line, well or not, and lets the table send the next.
    void EndWrite(ClassZentrova &zentrova) {
        busy = false;
        if (!writes.empty()) {
            zentrova.ParamWritePending(static_cast<std::int16_t>(writes.back().first), false);
        }
        zentrova.SendWaitingWrites();
    }

    // Ends the writes until none waits.
    void EndWrites(ClassZentrova &zentrova) {
        while (busy || zentrova.WritesWait()) {
            EndWrite(zentrova);
        }
    }

    bool open = true;
    bool holds = false;
    bool busy = false;
    int downloadsDefined = 0;
    int downloadsStarted = 0;
    int tablesLoaded = 0;
    std::vector<std::pair<int, int>> downloaded;
    std::vector<std::pair<int, int>> writes;
    std::function<void()> onStart;
};

} // namespace ztv
