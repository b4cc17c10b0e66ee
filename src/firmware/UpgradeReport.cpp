#include "firmware/UpgradeReport.h"

#include <algorithm>

namespace ztv {

namespace {

using Tone = UpgradeNotice::Tone;
using TransferKind = UpgradeConsole::TransferKind;

constexpr double percent = 100;

UpgradeNotice WhileWriting() {
    return {.tone = Tone::Caution, .text = QStringLiteral("Don't cut the power, and don't pull the cable.")};
}

UpgradeNotice LeftAlone() {
    return {.tone = Tone::Caution,
            .text = QStringLiteral("The sensor wasn't changed. Choose a firmware file, then press Upgrade "
                                   "Firmware again.")};
}

QString PressAgain() {
    return QStringLiteral("The boot loader is safe: press Upgrade Firmware again.");
}

// The sensor confirmed the command that restarts it, or may have received it.
UpgradeNotice OfLoaderThatDidntAnswer(const char *where) {
    return {.tone = Tone::Failure,
            .text = QString::fromLatin1(where) +
                    QStringLiteral(" Press Upgrade Firmware again, or Start Sensor to leave it as it was."),
            .offersStart = true};
}

} // namespace

UpgradeReport::UpgradeReport(const UpgradeConsole &console, const OneButtonUpgrade &upgrade,
                             UpgradeVersions &versions, QObject *parent)
    : QObject(parent),
      upgrade_(upgrade),
      versions_(versions) {
    if (!versions_.Change().isEmpty()) {
        notice_ = {.tone = Tone::Success,
                   .text = QStringLiteral("The last upgrade: %1").arg(versions_.Change())};
    }
    connect(&console, &UpgradeConsole::ConnectedChanged, this, &UpgradeReport::OnConnectedChanged);
    connect(&console, &UpgradeConsole::TransferStarted, this,
            [this](const QString &, TransferKind kind) { OnTransferStarted(kind); });
    connect(&console, &UpgradeConsole::TransferAdvanced, this, [this](double done) { done_ = done; });
    connect(&console, &UpgradeConsole::TransferEnded, this, &UpgradeReport::OnTransferEnded);
    connect(&console, &UpgradeConsole::RunAppEnded, this, &UpgradeReport::OnRunAppEnded);
    connect(&upgrade, &OneButtonUpgrade::RunningChanged, this, &UpgradeReport::OnRunningChanged);
    connect(&upgrade, &OneButtonUpgrade::Ended, this, &UpgradeReport::OnRunEnded);
}

// A sensor whose boot loader answers doesn't run.
void UpgradeReport::OnConnectedChanged(bool connected) {
    connected_ = connected;
    if (connected && notice_.tone == Tone::Success) {
        Show({});
    }
}

void UpgradeReport::OnRunningChanged(bool running) {
    if (running) {
        versions_.UpgradeStarted();
        Show({});
    }
}

void UpgradeReport::OnTransferStarted(TransferKind kind) {
    transfers_.push_back({.kind = kind, .erasesBefore = erases_});
    done_ = 0;
    if (kind == TransferKind::Erase) {
        ++erases_;
        incomplete_ = true;
    }
    Show(DeviceIsBeingWritten() ? WhileWriting() : UpgradeNotice());
}

void UpgradeReport::OnTransferEnded(const ImageWritten &image) {
    const Transfer transfer = transfers_.back();
    transfers_.pop_back();
    if (transfer.kind == TransferKind::Write) {
        differingLines_ = image.differingLines;
        const bool isWritten = image.result == TransferResult::Finished && differingLines_ == 0;
        incomplete_ = !isWritten || (incomplete_ && erases_ != transfer.erasesBefore);
    }
    if (image.result != TransferResult::Finished) {
        Show(OfFailedTransfer(transfer.kind, image.result));
    } else if (!upgrade_.Running() && !DeviceIsBeingWritten() && notice_ == WhileWriting()) {
        Show({});
    }
}

bool UpgradeReport::DeviceIsBeingWritten() const {
    return std::any_of(transfers_.begin(), transfers_.end(),
                       [](const Transfer &transfer) { return transfer.kind != TransferKind::Read; });
}

void UpgradeReport::OnRunEnded(UpgradeOutcome outcome) {
    // A sensor that ran until this run has the firmware that it ran.
    const bool isUntouched = outcome == UpgradeOutcome::BadFirmware && upgrade_.SensorWasRunning();
    const bool imageChanged = outcome == UpgradeOutcome::WriteFailed;
    incomplete_ = (incomplete_ && !isUntouched) || imageChanged;
    versions_.UpgradeEnded(outcome == UpgradeOutcome::Upgraded);
    Show(OfOutcome(outcome));
}

UpgradeNotice UpgradeReport::OfOutcome(UpgradeOutcome outcome) const {
    switch (outcome) {
    case UpgradeOutcome::NotPolled:
        return {.tone = Tone::Failure,
                .text = QStringLiteral("The sensor didn't answer and wasn't changed. Make sure that you can "
                                       "go online, then press Upgrade Firmware again.")};
    case UpgradeOutcome::CommandUnanswered:
    case UpgradeOutcome::PortNotReleased:
        return OfLoaderThatDidntAnswer("The sensor may wait in its boot loader.");
    case UpgradeOutcome::LoaderNotFound:
        return OfLoaderThatDidntAnswer("The sensor should be in its boot loader, which didn't answer.");
    case UpgradeOutcome::BadFirmware:
        return OfBadFirmware();
    case UpgradeOutcome::RunModeFailed:
        return {.tone = Tone::Failure,
                .text = QStringLiteral("The new firmware is written. The sensor waits in its boot loader."),
                .offersStart = true};
    case UpgradeOutcome::StillInLoader:
        return {.tone = Tone::Failure,
                .text =
                    QStringLiteral("The new firmware is written. The sensor waits in its boot loader, or "
                                   "the adapter is gone. Start Sensor, or cut its power for some seconds."),
                .offersStart = true};
    case UpgradeOutcome::Upgraded:
        return OfSuccess();
    default: // a transfer failed, and has its notice unless the image changed between two transfers
        return notice_.tone == Tone::Failure
                   ? notice_
                   : UpgradeNotice{.tone = Tone::Failure,
                                   .text = QStringLiteral("Stopped: another command changed the files or the "
                                                          "sensor. ") +
                                           PressAgain()};
    }
}

UpgradeNotice UpgradeReport::OfSuccess() const {
    if (differingLines_ > 0) {
        return {.tone = Tone::Failure,
                .text = QStringLiteral("The sensor was restarted, but %1 of the lines written to it differed "
                                       "from the firmware. Press Upgrade Firmware again.")
                            .arg(differingLines_)};
    }
    return {.tone = Tone::Success, .text = QStringLiteral("The sensor was restarted with the new firmware.")};
}

UpgradeNotice UpgradeReport::OfBadFirmware() const {
    if (!connected_) {
        return {.tone = Tone::Caution,
                .text =
                    QStringLiteral("The sensor wasn't changed. Choose a firmware file, then press Upgrade "
                                   "Firmware again.")};
    }
    const QString waits = QStringLiteral("The sensor waits in its boot loader. ");
    if (incomplete_) {
        return {.tone = Tone::Failure,
                .text = waits + QStringLiteral("It has no complete firmware: choose a firmware file, then "
                                               "press Upgrade Firmware again.")};
    }
    return {.tone = Tone::Caution,
            .text = waits + (upgrade_.SensorWasRunning()
                                 ? QStringLiteral("Start Sensor to go on with its old firmware.")
                                 : QStringLiteral("It was there before: Start Sensor if its firmware is "
                                                  "complete.")),
            .offersStart = true};
}

UpgradeNotice UpgradeReport::OfFailedTransfer(TransferKind kind, TransferResult result) const {
    QString text = QStringLiteral("Stopped at %1 %. ").arg(static_cast<int>(done_ * percent));
    if (kind == TransferKind::Read) {
        return {.tone = Tone::Failure, .text = text + QStringLiteral("The sensor wasn't changed.")};
    }
    if (result == TransferResult::VerifyFailed) {
        text = QStringLiteral("The sensor's memory differs from the firmware. ");
    }
    return {.tone = Tone::Failure, .text = text + PressAgain()};
}

void UpgradeReport::OnRunAppEnded(UpgradeConsole::RunOutcome outcome) {
    if (outcome != UpgradeConsole::RunOutcome::Started) {
        Show(
            {.tone = Tone::Failure,
             .text = QStringLiteral("The sensor waits in its boot loader and didn't confirm the start. Check "
                                    "the cable, then try again."),
             .offersStart = !incomplete_});
    } else if (incomplete_) {
        Show({.tone = Tone::Failure,
              .text =
                  QStringLiteral("The sensor was restarted, but has no complete firmware. ") + PressAgain()});
    } else {
        Show({.tone = Tone::Success,
              .text = QStringLiteral("The sensor was restarted. Go online to see whether it measures.")});
    }
}

UpgradeNotice UpgradeReport::WithoutFirmware() {
    return {.tone = Tone::Caution,
            .text =
                QStringLiteral("An upgrade would stop before it changes anything: a running sensor goes on "
                               "measuring, one in its boot loader stays there.")};
}

void UpgradeReport::FirmwareIsThere() {
    if (notice_ == LeftAlone()) {
        Show({});
    }
}

void UpgradeReport::NoLoaderToStart() {
    Show({.tone = Tone::Caution,
          .text = QStringLiteral("No boot loader answered. Check the cable, and go online to see whether the "
                                 "sensor runs already."),
          .offersStart = !incomplete_});
}

void UpgradeReport::Show(const UpgradeNotice &notice) {
    if (notice != notice_) {
        notice_ = notice;
        Q_EMIT NoticeChanged();
    }
}

} // namespace ztv
