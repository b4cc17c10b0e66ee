#pragma once

#include "help/HelpEngine.h"

namespace ztv {

// The HTML Help of Windows.
class HtmlHelpEngine : public HelpEngine {
public:
    // Returns true if this system has HTML Help.
    static bool IsThere();

    void HtmlHelp(WindowHandle caller, const QString &file, HelpCommand command,
                  const HelpData &data) override;
};

} // namespace ztv
