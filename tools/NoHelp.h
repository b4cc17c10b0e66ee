#pragma once

#include "help/HelpEngine.h"

namespace ztv {

// Shows no help.
class NoHelp : public HelpEngine {
public:
    void HtmlHelp(WindowHandle, const QString &, HelpCommand, const HelpData &) override {}
};

} // namespace ztv
