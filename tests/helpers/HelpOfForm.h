#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "tests/helpers/RecordedHelp.h"
#include "tests/helpers/ScriptedDialogs.h"

#include <QWidget>

namespace ztv {

// The help of a form that is tried by itself, with what was asked of it.
class HelpOfForm {
public:
    operator ClassMyHtmlHelp &() { return help_; }

    // A form asked for its topic, and for nothing else since the last look.
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
