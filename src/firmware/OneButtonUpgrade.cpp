#include "firmware/OneButtonUpgrade.h"

#include "firmware/TextFileReader.h"
#include "model/ParamDefines.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QScopeGuard>
#include <chrono>

namespace ztv {

namespace {

constexpr int longestWaitMs = 10000;
constexpr std::int16_t eepromByteAsked = 1022;

constexpr int mostResets = 3;
constexpr std::chrono::milliseconds restartTime{300}; // after which the loader no longer answers

void TurnEventLoopFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

UpgradeOutcome FailureOf(TransferResult result, UpgradeOutcome failed) {
    return result == TransferResult::Aborted ? UpgradeOutcome::Aborted : failed;
}

} // namespace

OneButtonUpgrade::OneButtonUpgrade(UpgradeConsole &console, LinkSession &link, ClassZentrova &zentrova,
                                   QObject *parent)
    : QObject(parent),
      console_(console),
      link_(link),
      zentrova_(zentrova),
      timerTimeout_(new QTimer(this)) {
    timerTimeout_->setObjectName(QStringLiteral("TimerTimeout"));
    timerTimeout_->setSingleShot(true);
    timerTimeout_->setTimerType(Qt::PreciseTimer); // a coarse timer may be off by half a second
}

UpgradeOutcome OneButtonUpgrade::Run(const QString &firmwareFile) {
    if (running_) {
        return UpgradeOutcome::AlreadyRunning;
    }
    running_ = true;
    sensorWasRunning_ = false;
    Q_EMIT RunningChanged(true);
    const auto done = qScopeGuard([this] {
        timerTimeout_->stop();
        link_.GoOffline();
        running_ = false;
        Q_EMIT RunningChanged(false);
    });
    const UpgradeOutcome outcome = Upgrade(firmwareFile);
    Q_EMIT Ended(outcome);
    if (outcome >= UpgradeOutcome::NotPolled && outcome <= UpgradeOutcome::LoaderNotFound) {
        console_.SetStatus(QStringLiteral("Failed to put in Boot mode"));
    }
    return outcome;
}

UpgradeOutcome OneButtonUpgrade::Upgrade(const QString &firmwareFile) {
    if (console_.ConnectBootloader() != UpgradeConsole::ConnectOutcome::Connected) {
        if (const Failure failure = EnterBootLoader(firmwareFile)) {
            return *failure;
        }
    }
    console_.Boot().ReadEepromByte(eepromByteAsked); // the result doesn't matter
    if (console_.OpenHexFile(firmwareFile) != UpgradeConsole::HexFileOutcome::Good) {
        return UpgradeOutcome::BadFirmware;
    }
    if (stopIsWanted_()) {
        return UpgradeOutcome::Aborted;
    }
    if (const Failure failure = ReplaceProgram()) {
        return *failure;
    }
    if (!console_.RunModeCommand()) {
        return UpgradeOutcome::RunModeFailed;
    }
    if (!Restart()) {
        console_.SetStatus(QStringLiteral("Reset Processor Failed!"));
        return UpgradeOutcome::StillInLoader;
    }
    return UpgradeOutcome::Upgraded;
}

OneButtonUpgrade::Failure OneButtonUpgrade::ReplaceProgram() {
    const TextFileReader image(console_.Boot().Settings().ProgramFile, 0);
    const TransferResult erased = console_.EraseDevice();
    if (erased != TransferResult::Finished) {
        return FailureOf(erased, UpgradeOutcome::EraseFailed);
    }
    // Commands that ran meanwhile may have replaced the image by another one than the firmware, or erased
    // part of what was written. Such a sensor must not be started.
    const int erases = console_.Boot().Erases();
    if (!image.HasChanged()) {
        const TransferResult written = console_.WriteDevice().result;
        if (written != TransferResult::Finished) {
            return FailureOf(written, UpgradeOutcome::WriteFailed);
        }
    }
    if (image.HasChanged() || console_.Boot().Erases() != erases) {
        console_.SetStatus(QStringLiteral("Failed to write device..."));
        return UpgradeOutcome::WriteFailed;
    }
    return std::nullopt;
}

// Resets the sensor until the loader is silent: a reset has no answer and may be lost, and a loader that
// still answers shows that. A device that went away may have lost the reset too.
bool OneButtonUpgrade::Restart() {
    for (int reset = 0; reset < mostResets; ++reset) {
        console_.Boot().ResetProcessor();
        TurnEventLoopFor(restartTime);
        if (console_.Boot().LoaderIsSilent()) {
            return true;
        }
    }
    return false;
}

// Makes a running sensor restart into its boot loader over Modbus; the link closes by itself once the sensor
// has confirmed that. Sends nothing to the sensor without a good file: the sensor would stay in its boot
// loader.
OneButtonUpgrade::Failure OneButtonUpgrade::EnterBootLoader(const QString &firmwareFile) {
    const auto firmwareIsBad = [&] {
        return console_.CheckHexFile(firmwareFile) != UpgradeConsole::HexFileOutcome::Good;
    };
    if (console_.PortWasOpened() && firmwareIsBad()) {
        return UpgradeOutcome::BadFirmware;
    }
    if (stopIsWanted_()) {
        return UpgradeOutcome::Aborted;
    }
    console_.SetStatus(QStringLiteral("Placing in boot mode..."));
    link_.ReadOnConnect(); // an earlier connect may have left a download pending
    link_.GoOnline(ConnectPrompt::Skip);
    // The port may have become free only now. Nothing was sent yet: sending needs the event loop.
    if (!console_.PortWasOpened() && link_.PortIsOpen() && firmwareIsBad()) {
        return UpgradeOutcome::BadFirmware;
    }
    const auto isPolled = [this] { return link_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); };
    if (!WaitWhile([&] { return !isPolled() && !stopIsWanted_(); })) {
        return UpgradeOutcome::NotPolled;
    }
    if (stopIsWanted_()) {
        return UpgradeOutcome::Aborted;
    }
    // Only a changed value is sent to the sensor, so the table must not contain the command already.
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::NoCommand);
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader);
    if (!WaitWhile([this] { return zentrova_.WritesWait() || link_.WriteIsUnderWay(); })) {
        return UpgradeOutcome::CommandUnanswered;
    }
    if (!WaitWhile([this] { return link_.PortIsOpen() && !stopIsWanted_(); }) || link_.PortIsOpen()) {
        return UpgradeOutcome::PortNotReleased;
    }
    // Clears the confirmed command: a file or a download would carry it to the next sensor. Not as the user's
    // write, which would count as a change of the file.
    zentrova_.ParamUpdate(ParamDefines::ReinitCommand, ParamDefines::NoCommand);
    if (console_.ConnectBootloader() != UpgradeConsole::ConnectOutcome::Connected) {
        return UpgradeOutcome::LoaderNotFound;
    }
    sensorWasRunning_ = true;
    return std::nullopt;
}

bool OneButtonUpgrade::WaitWhile(const std::function<bool()> &condition) {
    timerTimeout_->stop();
    timerTimeout_->setInterval(longestWaitMs);
    timerTimeout_->start();
    while (condition()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        if (!timerTimeout_->isActive()) {
            return false;
        }
    }
    return true;
}

} // namespace ztv
