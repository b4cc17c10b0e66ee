#include "cli/UpgradeWords.h"

namespace ztv {

namespace {

constexpr double percent = 100;

QString ReasonOf(TransferResult result) {
    switch (static_cast<std::int32_t>(result)) {
    case BootResult::NotOpen:
    case BootResult::WriteError:
        return QStringLiteral("the port is gone");
    case BootResult::NoAnswer:
        return QStringLiteral("the boot loader didn't answer");
    case BootResult::DamagedAnswer:
        return QStringLiteral("the boot loader's answer was damaged");
    default:
        return QStringLiteral("the boot loader's answer was unexpected");
    }
}

QString Stopped(const char *what, const UpgradeResult &result) {
    return QStringLiteral("%1 stopped at %2 %: %3")
        .arg(QString::fromLatin1(what))
        .arg(static_cast<int>(result.transferDone * percent))
        .arg(ReasonOf(result.transferResult));
}

QString OfWrite(const UpgradeResult &result) {
    switch (result.transferResult) {
    case TransferResult::VerifyFailed:
        return QStringLiteral("the sensor's memory differs from the firmware");
    case TransferResult::Finished: // of a write that must not be started, or that never began
    case TransferResult::ImageChanged:
        return QStringLiteral("another program changed the temporary files");
    default:
        return Stopped("writing", result);
    }
}

} // namespace

QString WordsOf(SensorState state, const QString &again) {
    switch (state) {
    case SensorState::Unchanged:
        return QStringLiteral("The sensor wasn't changed");
    case SensorState::MayBeInLoader:
        return QStringLiteral("The sensor may wait in its boot loader, with its firmware unchanged: ") +
               again;
    case SensorState::InLoader:
        return QStringLiteral("The sensor waits in its boot loader, with its firmware unchanged: ") + again;
    case SensorState::Incomplete:
        return QStringLiteral("The sensor waits in its boot loader, without complete firmware: ") + again;
    case SensorState::Written:
        return QStringLiteral("The sensor may wait in its boot loader, with the new firmware written: ") +
               again;
    case SensorState::Restarted:
        break;
    }
    return QStringLiteral("The sensor was restarted with the new firmware");
}

UpgradeFailure FailureOf(const UpgradeResult &result) {
    if (!result.fault.isEmpty()) {
        return {ExitStatus::File, result.fault};
    }
    if (result.refused) {
        return {ExitStatus::Refused, QStringLiteral("the sensor refused to start its boot loader")};
    }
    if (result.otherLoader) {
        return {ExitStatus::Refused,
                QStringLiteral("another sensor on the line waits in its boot loader, which has no address; "
                               "flash that one alone first")};
    }
    switch (result.outcome) {
    case UpgradeOutcome::NotPolled:
        return {ExitStatus::NoConnection, QStringLiteral("the sensor stopped answering")};
    case UpgradeOutcome::CommandUnanswered:
    case UpgradeOutcome::PortNotReleased:
        return {ExitStatus::NoConnection,
                QStringLiteral("the sensor didn't confirm the command that starts its boot loader")};
    case UpgradeOutcome::LoaderNotFound:
        return {ExitStatus::NoConnection, QStringLiteral("the boot loader didn't answer")};
    case UpgradeOutcome::BadFirmware:
        return {ExitStatus::File, QStringLiteral("the firmware file isn't good any more")};
    case UpgradeOutcome::EraseFailed:
        return {ExitStatus::Refused, Stopped("erasing", result)};
    case UpgradeOutcome::WriteFailed:
        return {ExitStatus::Refused, OfWrite(result)};
    case UpgradeOutcome::RunModeFailed:
        return {ExitStatus::Refused,
                QStringLiteral("the boot loader didn't confirm the start of the new firmware")};
    case UpgradeOutcome::StillInLoader:
        return {ExitStatus::Refused,
                QStringLiteral("the boot loader still answers after the restart, or the port is gone")};
    default:
        return {ExitStatus::Refused, QStringLiteral("interrupted")};
    }
}

} // namespace ztv
