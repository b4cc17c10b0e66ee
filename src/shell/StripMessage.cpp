#include "shell/StripMessage.h"

#include "shell/LinkWords.h"

#include <QFileInfo>
#include <QStringList>
#include <algorithm>
#include <limits>

namespace ztv {

namespace {

using Kind = StripMessage::Kind;
using LinkWords::Duration;
using Severity = StripMessage::Severity;

// At the fastest poll, the rest of the count lasts for nine more minutes of time-outs.
constexpr std::int16_t countToWarnAt = 30000;

QString PortWithDevice(const StripFacts &facts) {
    return QStringLiteral("port %1 (%2)").arg(facts.comm.port).arg(facts.device);
}

QString Place(const StripFacts &facts) {
    return QStringLiteral("Address %1 on %2, %3")
        .arg(facts.comm.address)
        .arg(PortWithDevice(facts), LinkWords::LineSetting(facts.comm));
}

// Says whose values the screen shows while no sensor is read.
QString Origin(const StripFacts &facts) {
    const QString edits = facts.hasEdits ? QStringLiteral(", with changes") : QString();
    if (facts.age) {
        return QStringLiteral("The values are the last ones read, %1 ago").arg(Duration(*facts.age)) + edits;
    }
    if (!facts.openFile.isEmpty()) {
        return QStringLiteral("The values are those of %1").arg(QFileInfo(facts.openFile).fileName()) + edits;
    }
    return QStringLiteral("The values are the factory's, not a sensor's") + edits;
}

std::optional<StripMessage> OfCounters(const StripFacts &facts) {
    const std::int16_t count = std::max(facts.timeouts, facts.crcErrors);
    if (count < countToWarnAt) {
        return std::nullopt;
    }
    return StripMessage{
        Kind::CounterNearItsEnd,
        Severity::Alarm,
        QStringLiteral("%1 %2 counted")
            .arg(count)
            .arg(count == facts.timeouts ? QStringLiteral("time-outs") : QStringLiteral("CRC errors")),
        QStringLiteral("The program closes when the count passes %1")
            .arg(std::numeric_limits<std::int16_t>::max()),
        {StripAction::ResetCounters, StripAction::GoOffline}};
}

std::optional<StripMessage> OfLink(const StripFacts &facts) {
    if (!facts.isOnline) {
        return std::nullopt;
    }
    if (facts.portIsGone) {
        return StripMessage{Kind::PortGone,
                            Severity::Alarm,
                            QStringLiteral("The serial port is gone"),
                            QStringLiteral("Plug the adapter of %1 in again; the link resumes by itself")
                                .arg(PortWithDevice(facts)),
                            {StripAction::Communications, StripAction::GoOffline}};
    }
    if (facts.silence) {
        return StripMessage{
            Kind::NoAnswer,
            Severity::Alarm,
            (facts.repliesAreDamaged ? QStringLiteral("Only damaged answers for %1")
                                     : QStringLiteral("No answer for %1"))
                .arg(Duration(*facts.silence)),
            Place(facts) + QStringLiteral(". ") + Origin(facts),
            {StripAction::Communications, StripAction::Search, StripAction::GoOffline, StripAction::Help}};
    }
    if (facts.anotherSensorAnswers) {
        return StripMessage{
            Kind::AnotherSensor,
            Severity::Alarm,
            QStringLiteral("Another sensor answers"),
            QStringLiteral("Its values aren't shown, and nothing is written to it: go offline and online"),
            {StripAction::GoOffline, StripAction::Help}};
    }
    if (facts.valuesAreHeld) {
        return StripMessage{Kind::ValuesHeld,
                            Severity::Warning,
                            QStringLiteral("The values aren't read"),
                            QStringLiteral("A file couldn't be opened or sent: go offline and online"),
                            {StripAction::GoOffline, StripAction::Help}};
    }
    return std::nullopt;
}

QString HeadlineOf(const std::vector<StripFacts::WizardValue> &notTaken) {
    return notTaken.size() == 1
               ? QStringLiteral("The wizard's %1 wasn't taken").arg(notTaken.front().name)
               : QStringLiteral("%1 of the wizard's values weren't taken").arg(notTaken.size());
}

// Offline, the values are the last ones read; those that the sensor has by now come with the next poll.
std::optional<StripMessage> OfWizard(const StripFacts &facts) {
    std::vector<StripFacts::WizardValue> notTaken;
    QStringList held;
    QStringList taken;
    for (const StripFacts::WizardValue &value : facts.wizardValues) {
        if (value.isTaken) {
            taken.append(value.name);
            continue;
        }
        notTaken.push_back(value);
        held.append(
            QStringLiteral("%1 (%2) %3, not %4").arg(value.name).arg(value.tag).arg(value.held, value.asked));
    }
    if (!facts.isOnline || notTaken.empty()) {
        return std::nullopt;
    }
    QString detail = QStringLiteral("The sensor has ") + held.join(QStringLiteral("; "));
    if (!taken.isEmpty()) {
        detail += QStringLiteral(". Taken: ") + taken.join(QStringLiteral(", "));
    }
    return StripMessage{Kind::NotTaken,
                        Severity::Warning,
                        HeadlineOf(notTaken),
                        detail,
                        {StripAction::StartWizard, StripAction::Dismiss}};
}

std::optional<StripMessage> OfFiles(const StripFacts &facts) {
    if (facts.notSaved) {
        return StripMessage{Kind::NotSaved,
                            Severity::Warning,
                            QStringLiteral("%1 wasn't saved").arg(QFileInfo(facts.notSaved->name).fileName()),
                            facts.notSaved->reason,
                            {StripAction::SaveAs}};
    }
    if (facts.notOpened) {
        return StripMessage{
            Kind::NotOpened,
            Severity::Warning,
            QStringLiteral("%1 couldn't be opened").arg(QFileInfo(facts.notOpened->name).fileName()),
            facts.notOpened->reason,
            {StripAction::OpenFile}};
    }
    if (!facts.notBackedUp.isEmpty()) {
        return StripMessage{Kind::NotBackedUp,
                            Severity::Warning,
                            QStringLiteral("No backup of the sensor's values"),
                            facts.notBackedUp,
                            {}};
    }
    return std::nullopt;
}

std::optional<StripMessage> OfState(const StripFacts &facts) {
    if (!facts.isOnline) {
        return StripMessage{Kind::NotConnected,
                            Severity::Note,
                            QStringLiteral("Not connected"),
                            Origin(facts),
                            {StripAction::Online}};
    }
    if (!facts.echoIsReceived) {
        return StripMessage{Kind::NoEcho,
                            Severity::Warning,
                            QStringLiteral("No echo"),
                            QStringLiteral("The sensor finds no target: distance and output say nothing"),
                            {StripAction::Help}};
    }
    return std::nullopt;
}

} // namespace

std::optional<StripMessage> WorstMessage(const StripFacts &facts) {
    for (const auto message : {OfCounters, OfLink, OfWizard, OfFiles, OfState}) {
        if (std::optional<StripMessage> found = message(facts)) {
            return found;
        }
    }
    return std::nullopt;
}

} // namespace ztv
