#pragma once

#include "help/HelpEngine.h"

// Shows no help.
class NoHelp : public HelpEngine {
public:
    void HtmlHelp(WindowHandle, const QString &, HelpCommand, const HelpData &) override {}
};
