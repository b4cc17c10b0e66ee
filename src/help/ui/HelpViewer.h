#pragma once

#include "help/HelpEngine.h"
#include "support/UserDialogs.h"

#include <QUrl>
#include <functional>
#include <memory>

namespace ztv {

class HelpWindow;

// Shows the help where the platform has no HTML Help: the topics beside the compiled help file, in a window
// of the program's own. For a form that requests the contents, opens the form's own topic, which its property
// "HelpContextID" names.
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

} // namespace ztv
