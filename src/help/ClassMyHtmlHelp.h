#pragma once

#include "help/HelpEngine.h"
#include "support/UserDialogs.h"

#include <QString>
#include <QVariant>
#include <cstdint>
#include <functional>

namespace ztv {

// The program's help, shown by a HelpEngine. `CallingForm` is the window of the form that requests it.
class ClassMyHtmlHelp {
public:
    ClassMyHtmlHelp(HelpEngine &engine, UserDialogs &dialogs) : engine_(engine), dialogs_(dialogs) {}

    // The help file's full name.
    const QString &CHMFile() const { return chmFile_; }
    void CHMFile(const QString &name) { chmFile_ = name; }

    // Show the topic `IdTopic`: in the help window, or in a small window over the form.
    void HHDisplayTopicID(WindowHandle CallingForm, std::int32_t IdTopic);
    void HHDisplayPopUp(WindowHandle CallingForm, std::int32_t IdTopic);

    // Returns a function that shows the topic `IdTopic` for a window. REQUIRES: this outlives the function.
    std::function<void(WindowHandle)> Topic(std::int32_t IdTopic);

    // Show the topic at an address within the help, or the contents. Warn the user if the file isn't a help
    // file by its name, and request it from the engine in any case.
    void HHDisplayTopicURL(WindowHandle CallingForm, const QVariant &HHTopicURL);
    void HHDisplayContents(WindowHandle CallingForm);

    // Closes all open help and ignores failures.
    void HHClose();

private:
    void CheckFile();

    HelpEngine &engine_;
    UserDialogs &dialogs_;
    QString chmFile_;
};

} // namespace ztv
