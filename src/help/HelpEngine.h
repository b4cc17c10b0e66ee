#pragma once

#include <QString>
#include <cstdint>
#include <variant>

namespace ztv {

// A native window handle; 0: none.
using WindowHandle = std::uintptr_t;

// The commands of the platform's HTML Help, by its numbers.
enum class HelpCommand : std::uint32_t {
    DisplayTopic = 0,
    Contents = 1,
    TextPopup = 14,
    Context = 15,
    CloseAll = 18
};

// The argument of a command: a topic's number, or a text.
using HelpData = std::variant<std::int32_t, QString>;

// Shows the help through one entry point, that of the platform's HTML Help.
class HelpEngine {
public:
    virtual ~HelpEngine() = default;

    // `file` is the full name of the compiled help file. The engine itself reports a missing or damaged help
    // to the user.
    virtual void HtmlHelp(WindowHandle caller, const QString &file, HelpCommand command,
                          const HelpData &data) = 0;
};

} // namespace ztv
