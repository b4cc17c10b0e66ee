#pragma once

#include "help/HelpEngine.h"
#include "support/UserDialogs.h"

#include <QString>
#include <QVariant>
#include <cstdint>
#include <functional>

// The program's help, over the engine that shows it. `CallingForm` is the window of the form that asks.
class ClassMyHtmlHelp {
public:
    ClassMyHtmlHelp(HelpEngine &engine, UserDialogs &dialogs) : engine_(engine), dialogs_(dialogs) {}

    // The help file's full name.
    const QString &CHMFile() const { return chmFile_; }
    void CHMFile(const QString &name) { chmFile_ = name; }

    // Shows the topic of that number: in the help's window, or in a small one over the form.
    void HHDisplayTopicID(WindowHandle CallingForm, std::int32_t IdTopic);
    void HHDisplayPopUp(WindowHandle CallingForm, std::int32_t IdTopic);

    // What shows the topic of that number for a window, as a form keeps it. This must outlive it.
    std::function<void(WindowHandle)> Topic(std::int32_t IdTopic);

    // Shows the topic of that address within the help. A file that isn't a help file by its name is told of,
    // and asked for all the same; so with the contents.
    void HHDisplayTopicURL(WindowHandle CallingForm, const QVariant &HHTopicURL);
    void HHDisplayContents(WindowHandle CallingForm);

    // Closes whatever help is open. Whether that works isn't looked at.
    void HHClose();

private:
    void CheckFile();

    HelpEngine &engine_;
    UserDialogs &dialogs_;
    QString chmFile_;
};
