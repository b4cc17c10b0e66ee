#include "help/ui/HelpViewer.h"

#include "help/HelpTopics.h"
#include "help/ui/HelpWindow.h"
#include "support/Fault.h"

namespace ztv {

HelpViewer::HelpViewer(UserDialogs &dialogs, std::function<bool(const QUrl &)> openUrl)
    : dialogs_(dialogs),
      openUrl_(std::move(openUrl)) {}

HelpViewer::~HelpViewer() = default;

// Reads the topics at the first request.
bool HelpViewer::Load(const QString &chmFile) {
    const QString folder = HelpTopics::FolderBeside(chmFile);
    if (window_ != nullptr && window_->Topics().Folder() == folder) {
        return true;
    }
    try {
        window_ = std::make_unique<HelpWindow>(HelpTopics::Read(folder), openUrl_);
        return true;
    } catch (const Fault &fault) {
        Warn(dialogs_, QStringLiteral("The help can't be shown.\n") + fault.Description());
        return false;
    }
}

void HelpViewer::HtmlHelp(WindowHandle caller, const QString &file, HelpCommand command,
                          const HelpData &data) {
    if (command != HelpCommand::CloseAll && !Load(file)) {
        return;
    }
    const auto orFirst = [this](const HelpTopic *topic) {
        return topic != nullptr ? *topic : window_->Topics().All().front();
    };
    switch (command) {
    case HelpCommand::Contents: {
        const QWidget *form = QWidget::find(caller);
        const int number = form == nullptr ? 0 : form->property("HelpContextID").toInt();
        window_->ShowContents(orFirst(window_->Topics().OfNumber(number)));
        break;
    }
    case HelpCommand::DisplayTopic:
        window_->ShowTopic(
            orFirst(window_->Topics().OfFile(std::get<QString>(data).section(u'/', -1).section(u'#', 0, 0))));
        break;
    case HelpCommand::Context:
    case HelpCommand::TextPopup: // this engine has only one way to show a topic
        window_->ShowTopic(orFirst(window_->Topics().OfNumber(std::get<std::int32_t>(data))));
        break;
    case HelpCommand::CloseAll:
        window_.reset();
        break;
    }
}

} // namespace ztv
