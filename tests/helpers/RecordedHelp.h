#pragma once

#include "help/HelpEngine.h"
#include "support/Fault.h"

#include <optional>
#include <ostream>
#include <utility>
#include <vector>

namespace ztv {

// One request to the help.
struct HelpCall {
    WindowHandle caller = 0;
    QString file;
    HelpCommand command{};
    HelpData data;

    bool operator==(const HelpCall &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const HelpCall &call) {
    out << call.caller << ' ' << call.file.toStdString() << ' ' << static_cast<std::uint32_t>(call.command)
        << ' ';
    std::visit(
        [&out](const auto &data) {
            if constexpr (std::is_same_v<std::decay_t<decltype(data)>, QString>) {
                out << '"' << data.toStdString() << '"';
            } else {
                out << data;
            }
        },
        call.data);
    return out;
}

// Records what is asked of the help instead of showing it.
class RecordedHelp : public HelpEngine {
public:
    void HtmlHelp(WindowHandle caller, const QString &file, HelpCommand command,
                  const HelpData &data) override {
        calls.push_back({caller, file, command, data});
        if (fault) {
            throw *fault; // NOLINT(misc-throw-by-value-catch-by-reference)
        }
    }

    // Returns the calls so far and forgets them.
    std::vector<HelpCall> Take() { return std::exchange(calls, {}); }

    std::vector<HelpCall> calls;
    std::optional<Fault> fault; // thrown by each call
};

} // namespace ztv
