#pragma once

#include "model/ClassZentrova.h"
#include "setup/WizardCalibration.h"

#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// The steps of the setup wizard, without widgets: their order, the conditions for leaving each step, and the
// recorded values. Each opened wizard creates its own instance.
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

    // A distance: its displayed text, and its raw value, none until it is read.
    struct Reading {
        QString shown = NoReading();
        std::optional<std::int32_t> raw;

        QString RawText() const { return raw ? QString::number(*raw) : QString(); }
    };

    static QString NoReading() { return QStringLiteral("---.--"); }

    // Stores the range limits that Cancel restores.
    explicit WizardSteps(ClassZentrova &zentrova);

    Step CurrentStep() const { return currentStep_; }
    bool FinishEnabled() const { return finishEnabled_; }
    bool NextEnabled() const { return currentStep_ != Finished; }
    bool BackEnabled() const { return currentStep_ != Introduction; }

    // Reads the distance from the table. Called once a second.
    void TakeReading();
    const Reading &Latest() const { return latest_; }

    // Records the latest distance for a place. At the core, also updates the distances of the roll.
    void Record(Place place, const Entries &entries);
    const Reading &Recorded(Place place) const { return recorded_[static_cast<std::size_t>(place)]; }
    const WizardCalibration::Roll &Roll() const { return roll_; }

    // Goes to the next step, or returns the message why it can't. Before it enters Mode, writes the presets
    // of the range limits.
    std::optional<QString> Next(const Entries &entries);
    void Back(const Entries &entries);

    // Returns true if Cancel has range limits to restore.
    bool RangeIsChanged() const;

    // Restores the range limits. Nothing else is written before Finish.
    void Cancel();

    // A value that Finish will write, as texts.
    struct Change {
        QString parameter; // its name and number
        QString before;
        QString after;

        bool operator==(const Change &) const = default;
    };

    // Returns the values that Finish would write now, in its order, without those that the sensor has
    // already. Throws a Fault as Outcome does.
    std::vector<Change> Changes(const Entries &entries) const;

    // Returns all values that Finish asks for.
    std::vector<ParameterValue> Values(const WizardCalibration::Settings &outcome,
                                       const Entries &entries) const;

    // Returns the range limits that Cancel asks for.
    std::vector<ParameterValue> SavedRange() const;

    // Returns the result of the steps. Throws a Fault (conversion, overflow) for a value that can't be
    // written.
    WizardCalibration::Settings Outcome(const Entries &entries) const;

    // Writes `outcome`.
    void Finish(const WizardCalibration::Settings &outcome, const Entries &entries);

private:
    std::optional<QString> ValidateStep(const Entries &entries) const;
    void SetStep(Step step);
    QString BeforeText(std::int16_t tag) const;

    ClassZentrova &zentrova_;
    Step currentStep_ = Introduction;
    bool finishEnabled_ = false;
    std::int32_t savedMinRange_;
    std::int32_t savedMaxRange_;
    Reading latest_;
    std::array<Reading, PlaceCount> recorded_;
    WizardCalibration::Roll roll_{NoReading(), NoReading(), NoReading(), NoReading()};
};

} // namespace ztv
