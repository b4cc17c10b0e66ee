#include "setup/WizardSteps.h"

#include "model/Global.h"
#include "model/ParamDefines.h"
#include "support/Numbers.h"

#include <algorithm>

namespace ztv {

namespace {

constexpr int shownDecimals = 2;

QString NameOf(const ClassZentrova &zentrova, std::int16_t tag) {
    return QStringLiteral("%1 (%2)").arg(zentrova.ParamName(tag)).arg(tag);
}

} // namespace

WizardSteps::WizardSteps(ClassZentrova &zentrova)
    : zentrova_(zentrova),
      savedMinRange_(zentrova.ParamValue(ParamDefines::MinRange)),
      savedMaxRange_(zentrova.ParamValue(ParamDefines::MaxRange)) {}

void WizardSteps::TakeReading() {
    const std::int32_t raw = zentrova_.ParamValue(ParamDefines::ActualDistance);
    latest_.raw = raw;
    latest_.shown = ReformatDecimals(
        Global::RawToFormatted(raw, zentrova_.ParamDecimalPlaces(ParamDefines::ActualDistance)),
        shownDecimals);
}

void WizardSteps::Record(Place place, const Entries &entries) {
    recorded_[static_cast<std::size_t>(place)] = latest_;
    if (place != AtCore || !latest_.raw) {
        return;
    }
    roll_.distanceToCore = latest_.shown;
    roll_.distanceToMax =
        WizardCalibration::DistanceToMax(latest_.shown, entries.coreDiameter, entries.maxDiameter);
}

std::optional<QString> WizardSteps::ValidateStep(const Entries &entries) const {
    const auto refusedUnless = [](std::initializer_list<std::pair<bool, const char *>> checks) {
        std::optional<QString> message;
        for (const auto &[holds, text] : checks) {
            if (!holds) {
                message = QString::fromLatin1(text);
                break;
            }
        }
        return message;
    };
    const auto isRecorded = [this](Place place) { return Recorded(place).raw.has_value(); };
    const char *const notRecorded = "You must click the Record button to proceed.";
    const char *const noVoltage = "Please enter an output voltage value.";
    switch (currentStep_) {
    case Mode:
        return refusedUnless({{entries.use.has_value(), "Please select a mode."}});
    case FarEnd:
        return refusedUnless(
            {{isRecorded(AtFarEnd), notRecorded}, {!entries.voltage[AtFarEnd].isEmpty(), noVoltage}});
    case NearEnd:
        return refusedUnless(
            {{isRecorded(AtNearEnd), notRecorded}, {!entries.voltage[AtNearEnd].isEmpty(), noVoltage}});
    case Diameters: {
        const bool core = !entries.coreDiameter.isEmpty();
        const bool max = !entries.maxDiameter.isEmpty();
        return refusedUnless({{core, "Please enter a value for Core Diameter."},
                              {max, "Please enter a value for Max Diameter."},
                              {core && max && ToNumber(entries.maxDiameter) > ToNumber(entries.coreDiameter),
                               "The 'Max Diameter' must be greater than the 'Core Diameter'."}});
    }
    case CoreDistance:
        return refusedUnless(
            {{isRecorded(AtCore), notRecorded},
             {isRecorded(AtCore) && WizardCalibration::LeavesRoom(roll_.distanceToMax),
              "The 'Distance To Max' reading must be greater than or equal to 6.00 Inches. Please decrease "
              "the 'Max Dia' setting or move Zentrova farther from core."}});
    case Drive:
        return refusedUnless({{entries.drive.has_value(), "Please select the drive mode."}});
    case Introduction:
    case Finished:
        break;
    }
    return std::nullopt;
}

std::optional<QString> WizardSteps::Next(const Entries &entries) {
    if (currentStep_ == Finished) {
        return std::nullopt;
    }
    if (const std::optional<QString> message = ValidateStep(entries)) {
        return message;
    }
    switch (currentStep_) {
    case Mode:
        SetStep(entries.use == Use::Distance ? FarEnd : Diameters);
        break;
    case NearEnd:
        SetStep(Finished);
        break;
    case Diameters:
        roll_.coreDiameter = entries.coreDiameter;
        roll_.maxDiameter = entries.maxDiameter;
        SetStep(CoreDistance);
        break;
    default:
        SetStep(static_cast<Step>(currentStep_ + 1));
        break;
    }
    return std::nullopt;
}

void WizardSteps::Back(const Entries &entries) {
    switch (currentStep_) {
    case Introduction:
        break;
    case Diameters:
        SetStep(Mode);
        break;
    case CoreDistance: // the recording depends on the diameters
        recorded_[AtCore] = Reading();
        roll_.distanceToCore = NoReading();
        roll_.distanceToMax = NoReading();
        SetStep(Diameters);
        break;
    case Finished:
        SetStep(entries.use == Use::Distance ? NearEnd : Drive);
        break;
    default:
        SetStep(static_cast<Step>(currentStep_ - 1));
        break;
    }
}

void WizardSteps::SetStep(Step step) {
    finishEnabled_ = false;
    if (step == Mode) {
        // Resets the range, so that a narrow old one doesn't prevent the readings of the next steps.
        for (const std::int16_t tag : {ParamDefines::MinRange, ParamDefines::MaxRange}) {
            zentrova_.ParamValue(tag, zentrova_.ParamPreset(tag));
        }
    }
    finishEnabled_ = step == Finished;
    currentStep_ = step;
}

std::vector<ParameterValue> WizardSteps::SavedRange() const {
    return {{.tag = ParamDefines::MinRange, .value = savedMinRange_},
            {.tag = ParamDefines::MaxRange, .value = savedMaxRange_}};
}

bool WizardSteps::RangeIsChanged() const {
    return std::ranges::any_of(SavedRange(), [this](const ParameterValue &limit) {
        return zentrova_.ParamValue(limit.tag) != limit.value;
    });
}

void WizardSteps::Cancel() {
    for (const ParameterValue &limit : SavedRange()) {
        zentrova_.ParamValue(limit.tag, limit.value);
    }
}

std::vector<ParameterValue> WizardSteps::Values(const WizardCalibration::Settings &outcome,
                                                const Entries &entries) const {
    return WizardCalibration::ValuesOf(zentrova_, outcome, entries.save);
}

std::vector<WizardSteps::Change> WizardSteps::Changes(const Entries &entries) const {
    std::vector<Change> changes;
    for (const auto &[tag, value] : Values(Outcome(entries), entries)) {
        if (tag == ParamDefines::SaveCommand) {
            changes.push_back({NameOf(zentrova_, tag), QString(), QStringLiteral("saves all")});
        } else if (value != zentrova_.ParamValue(tag)) {
            changes.push_back({NameOf(zentrova_, tag), BeforeText(tag), zentrova_.FormatRaw(value, tag)});
        }
    }
    return changes;
}

// Adds the range limit that the sensor had before the wizard opened the range.
QString WizardSteps::BeforeText(std::int16_t tag) const {
    const std::int32_t value = zentrova_.ParamValue(tag);
    QString text = zentrova_.FormatRaw(value, tag);
    for (const ParameterValue &saved : SavedRange()) {
        if (saved.tag == tag && saved.value != value) {
            text += QStringLiteral(" (was %1)").arg(zentrova_.FormatRaw(saved.value, tag));
        }
    }
    return text;
}

WizardCalibration::Settings WizardSteps::Outcome(const Entries &entries) const {
    if (entries.use == Use::Distance) {
        return WizardCalibration::ForDistance(zentrova_, {.farRaw = Recorded(AtFarEnd).raw.value(),
                                                          .nearRaw = Recorded(AtNearEnd).raw.value(),
                                                          .farVoltage = entries.voltage[AtFarEnd],
                                                          .nearVoltage = entries.voltage[AtNearEnd]});
    }
    return entries.drive == DriveMode::Torque ? WizardCalibration::ForTorque(zentrova_, roll_)
                                              : WizardCalibration::ForVelocity(zentrova_, roll_);
}

void WizardSteps::Finish(const WizardCalibration::Settings &outcome, const Entries &entries) {
    WizardCalibration::Write(zentrova_, outcome, entries.save);
}

} // namespace ztv
