#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "tests/helpers/RecordedHelp.h"
#include "tests/helpers/ScriptedDialogs.h"

#include <QWidget>

namespace ztv {

// The help of a single form under test; records the requests.
class HelpOfForm {
public:
    operator ClassMyHtmlHelp &() { return help_; }

    // Whether `form` asked for that topic, and nothing else was asked since the last call.
    bool WasAskedFor(std::int32_t number, const QWidget &form) {
        return engine_.Take() ==
               std::vector{HelpCall{form.effectiveWinId(), QString(), HelpCommand::Context, number}};
    }

private:
    RecordedHelp engine_;
    ScriptedDialogs dialogs_;
    ClassMyHtmlHelp help_{engine_, dialogs_};
};

} // namespace ztv
