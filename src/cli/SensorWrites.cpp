#include "cli/SensorWrites.h"

#include "cli/Failure.h"
#include "cli/Interruption.h"
#include "cli/SensorPlace.h"
#include "model/ParamDefines.h"

#include <optional>

namespace ztv {

namespace {

constexpr int usualTries = 3;

} // namespace

SensorWrites::SensorWrites(SensorLine &line, const ClassZentrova &zentrova, const SetPlan &plan,
                           const CommSettings &place)
    : line_(line),
      zentrova_(zentrova),
      plan_(plan),
      place_(place),
      address_(place.address) {}

SensorLine::Values SensorWrites::Send() {
    for (const SetPlan::Write &write : plan_.writes) {
        ThrowIfInterrupted();
        SendOne(write);
        ++taken_;
    }
    return Find({place_}, plan_.tags);
}

void SensorWrites::SendOne(const SetPlan::Write &write) {
    // A write that changes the way is sent once, so that it is repeated here, on the way that is found.
    const int tries = ChangesTheWay(write.tag) ? usualTries : 1;
    std::int32_t held = 0;
    bool isDone = false;
    for (int count = 0; count < tries && !isDone; ++count) {
        isInDoubt_ = true;
        const bool isConfirmed = IsConfirmed(write);
        held = isConfirmed && !ChangesTheWay(write.tag) ? write.raw : HeldAfter(write);
        isInDoubt_ = false;
        isDone = isConfirmed || held == write.raw;
    }
    if (held != write.raw) {
        throw Failure(ExitStatus::Refused, Named() + NotHeldText(zentrova_, write, held) + Progress());
    }
}

// Reads the row where the sensor is, or was if it didn't take the write.
std::int32_t SensorWrites::HeldAfter(const SetPlan::Write &write) {
    return Find({PlaceAfter(place_, write.tag, write.raw), place_}, {write.tag}).at(write.tag);
}

// Throws a Failure when the sensor refuses the value.
bool SensorWrites::IsConfirmed(const SetPlan::Write &write) {
    try {
        return line_.Write(place_.address, write.tag, write.raw) == LinkStatus::NoError;
    } catch (const Failure &failure) {
        if (failure.Status() != ExitStatus::Refused) {
            return false; // the line broke, perhaps after the sensor took the value
        }
        isInDoubt_ = false;
        throw Failure(ExitStatus::Refused, failure.Text() +
                                               QStringLiteral(": the sensor refuses %1 for \"%2\"")
                                                   .arg(zentrova_.FormatRaw(write.raw, write.tag),
                                                        zentrova_.ParamName(write.tag)) +
                                               Progress());
    }
}

SensorLine::Values SensorWrites::Find(const std::vector<CommSettings> &places,
                                      const std::vector<std::int16_t> &tags) {
    const std::int32_t serialNumber = plan_.before.at(ParamDefines::SerialNumber);
    const std::optional<FoundSensor> found = FindSensor(line_, places, serialNumber, tags);
    if (!found) {
        throw isInDoubt_ ? NotKnown(taken_, taken_ + 1) : NotKnown(0, taken_);
    }
    place_ = found->place;
    return found->values;
}

Failure SensorWrites::NotKnown(std::size_t first, std::size_t last) const {
    const QStringList names = Names(first, last);
    return {ExitStatus::NoConnection,
            Named() +
                QStringLiteral("it can't be read back, so it isn't known whether %1 %2 written")
                    .arg(names.join(QStringLiteral(", ")),
                         names.size() == 1 ? QStringLiteral("was") : QStringLiteral("were")) +
                (isInDoubt_ ? Progress() : QString())};
}

QString SensorWrites::Progress() const {
    const std::size_t next = taken_ + (isInDoubt_ ? 1 : 0);
    QString text;
    const auto add = [&](const QString &what, std::size_t first, std::size_t last) {
        if (first < last) {
            text += QStringLiteral("; %1: %2").arg(what, Names(first, last).join(QStringLiteral(", ")));
        }
    };
    add(QStringLiteral("confirmed, but not read back"), 0, taken_);
    add(QStringLiteral("not known"), taken_, next);
    add(QStringLiteral("not written"), next, plan_.writes.size());
    return text;
}

QString SensorWrites::Named() const {
    return QStringLiteral("address %1: ").arg(address_);
}

QStringList SensorWrites::Names(std::size_t first, std::size_t last) const {
    QStringList names;
    for (std::size_t index = first; index < last; ++index) {
        names.append(u'"' + zentrova_.ParamName(plan_.writes[index].tag) + u'"');
    }
    names.removeDuplicates();
    return names;
}

} // namespace ztv
