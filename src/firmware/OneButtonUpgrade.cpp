#include "firmware/OneButtonUpgrade.h"

#include "firmware/TextFileReader.h"
#include "model/ParamDefines.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QScopeGuard>
#include <chrono>

namespace {

constexpr int longestWaitMs = 10000;
constexpr std::int16_t eepromByteAsked = 1022;

constexpr int mostResets = 3;
constexpr std::chrono::milliseconds restartTime{300}; // after which the loader doesn't answer any more

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
    timerTimeout_->setTimerType(Qt::PreciseTimer); // or a wait lasts half a second more, or less
}

UpgradeOutcome OneButtonUpgrade::Run(const QString &firmwareFile) {
    if (running_) {
        return UpgradeOutcome::AlreadyRunning;
    }
    running_ = true;
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
    console_.Boot().ReadEepromByte(eepromByteAsked); // whatever comes of it
    if (console_.OpenHexFile(firmwareFile) != UpgradeConsole::HexFileOutcome::Good) {
        return UpgradeOutcome::BadFirmware;
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
    // The commands that came meanwhile may have left another image than the firmware, or erased again what
    // was written of it. Such a sensor mustn't be told to run.
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

// A reset has no answer, and may be lost: the loader that still answers tells so. A device that went away may
// have taken the reset along.
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

// A running sensor restarts into its boot loader when it is told so over Modbus, and the link closes by
// itself once it has confirmed that. Without a good file it would stay there: nothing is sent to it then.
OneButtonUpgrade::Failure OneButtonUpgrade::EnterBootLoader(const QString &firmwareFile) {
    const auto firmwareIsBad = [&] {
        return console_.CheckHexFile(firmwareFile) != UpgradeConsole::HexFileOutcome::Good;
    };
    if (console_.PortWasOpened() && firmwareIsBad()) {
        return UpgradeOutcome::BadFirmware;
    }
    console_.SetStatus(QStringLiteral("Placing in boot mode..."));
    link_.ReadOnConnect(); // an earlier connect may have left the wish to download
    link_.GoOnline(1);
    // A port that has only now come free. Nothing was sent yet: that takes the event loop.
    if (!console_.PortWasOpened() && link_.PortIsOpen() && firmwareIsBad()) {
        return UpgradeOutcome::BadFirmware;
    }
    if (!WaitWhile([this] { return !link_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); })) {
        return UpgradeOutcome::NotPolled;
    }
    // Only a change goes to the sensor: what the table holds must not be the command already.
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::NoCommand);
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader);
    if (!WaitWhile([this] { return link_.Mbaxp1().TransactionBusy(LinkTransaction::SingleWrite); })) {
        return UpgradeOutcome::CommandUnanswered;
    }
    if (!WaitWhile([this] { return link_.PortIsOpen(); })) {
        return UpgradeOutcome::PortNotReleased;
    }
    // Confirmed, so that it must not stay: a file or a download would carry it to the next sensor. Not as the
    // user's write: that would count as a change of the file.
    zentrova_.ParamUpdate(ParamDefines::ReinitCommand, ParamDefines::NoCommand);
    if (console_.ConnectBootloader() != UpgradeConsole::ConnectOutcome::Connected) {
        return UpgradeOutcome::LoaderNotFound;
    }
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
