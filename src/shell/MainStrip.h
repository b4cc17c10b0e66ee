#pragma once

#include "shell/StripWatch.h"
#include "shell/WizardOutcome.h"

#include <QObject>
#include <cstdint>
#include <functional>

namespace ztv {

class MessageStrip;
class TabFrames;

// The strip of the main form below the pages: the message, the facts for it, and its place.
class MainStrip : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        LinkSession &link;
        const ClassZentrova &zentrova;
        const FileCommands &files;
        std::function<QString(std::int16_t)> deviceOfPort;
        const SensorBackup &backup;
    };

    // Makes the strip a child of `area`, in which the tabs are. REQUIRES: all outlive this.
    MainStrip(QWidget &area, const TabFrames &tabs, const Dependencies &watched);

    // As those of StripWatch and MessageStrip.
    void Update() { watch_.Update(); }
    void Colour();

    // Returns the outcome of the wizard's writes. The strip shows it.
    WizardOutcome &Wizard() { return wizard_; }

Q_SIGNALS:
    void Pressed(StripAction action); // one that concerns more than the strip

private:
    void Obey(StripAction action);

    LinkSession &link_;
    WizardOutcome wizard_;
    StripWatch watch_;
    MessageStrip *strip_;
};

} // namespace ztv
