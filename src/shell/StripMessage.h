#pragma once

#include "link/CommSettings.h"

#include <QString>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// The buttons of the strip, from left to right.
enum class StripAction {
    ResetCounters,
    Online,
    Communications,
    Search,
    GoOffline,
    StartWizard,
    OpenFile,
    SaveAs,
    Dismiss,
    Help
};

// The text of the strip between the pages and the status bar: the worst of what is wrong, and the ways out.
struct StripMessage {
    // Worst first.
    enum class Kind {
        CounterNearItsEnd,
        PortGone,
        NoAnswer,
        AnotherSensor,
        ValuesHeld,
        NotTaken,
        NotSaved,
        NotOpened,
        NotBackedUp,
        NoEcho,
        NotConnected
    };
    enum class Severity { Alarm, Warning, Note };

    Kind kind = Kind::NotConnected;
    Severity severity = Severity::Note;
    QString headline;
    QString detail;
    std::vector<StripAction> actions; // in the order of the buttons

    bool operator==(const StripMessage &) const = default;
};

// The facts that decide on the strip's message.
struct StripFacts {
    // A settings file that couldn't be read or written.
    struct FileFailure {
        QString name;
        QString reason;
    };

    // A value that the wizard asked for.
    struct WizardValue {
        QString name;
        std::int16_t tag = 0;
        QString asked;
        QString held; // by the sensor
        bool isTaken = false;
    };

    bool isOnline = false;
    bool portIsGone = false;
    bool anotherSensorAnswers = false;
    bool valuesAreHeld = false;
    bool repliesAreDamaged = false; // some came since the last good one
    bool echoIsReceived = true;
    std::optional<std::chrono::seconds> silence; // since the last good poll, while that is too long ago
    std::optional<std::chrono::seconds> age;     // of the values; none if they were never read
    CommSettings comm;
    QString device;        // of comm.port
    QString openFile;      // the settings file's name; empty for none
    bool hasEdits = false; // values were changed since they were read, loaded or saved
    std::int16_t timeouts = 0;
    std::int16_t crcErrors = 0;
    std::optional<FileFailure> notOpened;
    std::optional<FileFailure> notSaved;
    QString notBackedUp; // why the sensor's values couldn't be kept before a write; empty if they could
    std::vector<WizardValue> wizardValues; // none if all were taken
};

// Returns the worst message, or none if all is well.
std::optional<StripMessage> WorstMessage(const StripFacts &facts);

} // namespace ztv
