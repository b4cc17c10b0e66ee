#include "help/ClassMyHtmlHelp.h"

#include "support/Fault.h"

namespace ztv {

void ClassMyHtmlHelp::HHDisplayTopicID(WindowHandle CallingForm, std::int32_t IdTopic) {
    engine_.HtmlHelp(CallingForm, chmFile_, HelpCommand::Context, IdTopic);
}

void ClassMyHtmlHelp::HHDisplayPopUp(WindowHandle CallingForm, std::int32_t IdTopic) {
    engine_.HtmlHelp(CallingForm, chmFile_, HelpCommand::TextPopup, IdTopic);
}

std::function<void(WindowHandle)> ClassMyHtmlHelp::Topic(std::int32_t IdTopic) {
    return [this, IdTopic](WindowHandle CallingForm) { HHDisplayTopicID(CallingForm, IdTopic); };
}

void ClassMyHtmlHelp::HHDisplayTopicURL(WindowHandle CallingForm, const QVariant &HHTopicURL) {
    CheckFile();
    engine_.HtmlHelp(CallingForm, chmFile_, HelpCommand::DisplayTopic, HHTopicURL.toString());
}

void ClassMyHtmlHelp::HHDisplayContents(WindowHandle CallingForm) {
    CheckFile();
    engine_.HtmlHelp(CallingForm, chmFile_, HelpCommand::Contents, QStringLiteral("0"));
}

void ClassMyHtmlHelp::HHClose() {
    try {
        engine_.HtmlHelp(0, QString(), HelpCommand::CloseAll, 0);
    } catch (const Fault &) {
        return; // ignored: nothing can be done about it
    }
}

// Only warns: the engine decides which files it can open.
void ClassMyHtmlHelp::CheckFile() {
    if (!chmFile_.endsWith(QStringLiteral("chm"))) {
        Warn(dialogs_, chmFile_ + QStringLiteral(" is not a valid HTML Help file."));
    }
}

} // namespace ztv
