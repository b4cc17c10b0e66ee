#pragma once

#include "link/LinkSession.h"
#include "link/SensorBackup.h"
#include "model/ClassZentrova.h"
#include "shell/FileCommands.h"
#include "shell/StripMessage.h"
#include "shell/WizardOutcome.h"
#include "support/SleepClock.h"

#include <QObject>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace ztv {

// Gathers the facts for the strip's message and reports each change of it. Its timer runs only while the
// message contains a time, and fires when a shown time reaches its next second.
class StripWatch : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        LinkSession &link;
        const ClassZentrova &zentrova;
        const FileCommands &files;
        std::function<QString(std::int16_t)> deviceOfPort;
        WizardOutcome &wizard;
        const SensorBackup *backup = nullptr; // none: no backups are kept
    };

    // REQUIRES: what it depends on outlives this.
    explicit StripWatch(Dependencies dependencies);

    const std::optional<StripMessage> &Message() const { return message_; }

    // Call it after a file command, which isn't reported by itself.
    void Update();

Q_SIGNALS:
    void Changed(const std::optional<StripMessage> &message);

private:
    void OnPollFailed(LinkTransaction transaction, LinkStatus status);
    void OnAnswer();
    std::optional<std::chrono::milliseconds> Silence() const;
    std::optional<std::chrono::milliseconds> Age() const;
    void WakeAtNextSecond();
    StripFacts Facts() const;

    Dependencies dependencies_;
    std::optional<StripMessage> message_;
    SleepClock::time_point lastAnswer_; // or the start of the link
    bool isOnline_ = false;
    bool portIsGone_ = false;
    bool repliesAreDamaged_ = false; // some came since the last good one
    QTimer nextSecond_;
};

} // namespace ztv
