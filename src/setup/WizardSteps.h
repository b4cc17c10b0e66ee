#pragma once

#include "model/ClassZentrova.h"
#include "setup/WizardCalibration.h"

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

// The steps of the setup wizard, apart from what shows them: which follows which, what each demands before
// it is left, what was recorded. Opening and closing the wizard is opening and closing one of these.
class WizardSteps {
public:
    enum Step : std::int16_t {
        Introduction,
        Mode,
        FarEnd,
        NearEnd,
        Diameters,
        CoreDistance,
        Drive,
        Finished
    };
    static constexpr int StepCount = 8;

    // The recordings, by the index of their controls.
    enum Place { AtFarEnd, AtNearEnd, AtCore };
    static constexpr int PlaceCount = 3;

    enum class Use { Distance, Diameter };
    enum class DriveMode { Torque, Velocity };

    // The user's choices and texts.
    struct Entries {
        std::optional<Use> use;
        std::optional<DriveMode> drive;
        std::array<QString, 2> voltage; // by AtFarEnd and AtNearEnd
        QString coreDiameter;
        QString maxDiameter;
        bool save = true;
    };

    // A distance: as it is shown, and its raw value as text, which is empty until there is one.
    struct Reading {
        QString shown = NoReading();
        QString raw;
    };

    static QString NoReading() { return QStringLiteral("---.--"); }

    // Remembers the range limits that Cancel puts back.
    explicit WizardSteps(ClassZentrova &zentrova);

    Step CurrentStep() const { return currentStep_; }
    bool FinishEnabled() const { return finishEnabled_; }
    bool NextEnabled() const { return currentStep_ != Finished; }
    bool BackEnabled() const { return currentStep_ != Introduction; }

    // Once a second: takes the distance from the table.
    void TakeReading();
    const Reading &Latest() const { return latest_; }

    // Takes the latest distance for a place. At the core the figures of the roll follow.
    void Record(Place place, const Entries &entries);
    const Reading &Recorded(Place place) const { return recorded_[static_cast<std::size_t>(place)]; }
    const WizardCalibration::Roll &Roll() const { return roll_; }

    // Goes on, or says why not. Coming to the choice of the use opens the range limits, by writes that turn
    // the event loop; the step changes after them.
    std::optional<QString> Next(const Entries &entries);
    void Back(const Entries &entries);

    // Puts the range limits back; nothing else has been written before the end.
    void Cancel();

    // The result of the steps. Fault (conversion, overflow) for a value that can't be written.
    WizardCalibration::Settings Outcome(const Entries &entries) const;

    // Writes it, by writes that turn the event loop.
    void Finish(const WizardCalibration::Settings &outcome, const Entries &entries);

private:
    std::optional<QString> ValidateStep(const Entries &entries) const;
    void SetStep(Step step);

    ClassZentrova &zentrova_;
    Step currentStep_ = Introduction;
    bool finishEnabled_ = false;
    std::int32_t savedMinRange_;
    std::int32_t savedMaxRange_;
    Reading latest_;
    std::array<Reading, PlaceCount> recorded_;
    WizardCalibration::Roll roll_{NoReading(), NoReading(), NoReading(), NoReading()};
};
