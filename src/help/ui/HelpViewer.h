#pragma once

#include "help/HelpEngine.h"
#include "support/UserDialogs.h"

#include <QUrl>
#include <functional>
#include <memory>

class HelpWindow;

// Shows the help where the platform has no HTML Help: the topics that lie beside the compiled help file, in a
// window of the program's own. A form that asks for the contents finds its own topic open in it, by its
// property "HelpContextID".
class HelpViewer : public HelpEngine {
public:
    HelpViewer(UserDialogs &dialogs, std::function<bool(const QUrl &)> openUrl);
    ~HelpViewer() override;

    void HtmlHelp(WindowHandle caller, const QString &file, HelpCommand command,
                  const HelpData &data) override;

private:
    bool Load(const QString &chmFile);

    UserDialogs &dialogs_;
    std::function<bool(const QUrl &)> openUrl_;
    std::unique_ptr<HelpWindow> window_;
};
