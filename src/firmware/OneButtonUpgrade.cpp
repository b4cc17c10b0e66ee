#include "firmware/OneButtonUpgrade.h"

#include "firmware/TextFileReader.h"
#include "model/ParamDefines.h"
#include "support/ApplicationTitle.h"

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

} // namespace

OneButtonUpgrade::OneButtonUpgrade(UpgradeConsole &console, LinkSession &link, ClassZentrova &zentrova,
                                   UserDialogs &dialogs, QObject *parent)
    : QObject(parent),
      console_(console),
      link_(link),
      zentrova_(zentrova),
      dialogs_(dialogs),
      timerTimeout_(new QTimer(this)) {
    timerTimeout_->setObjectName(QStringLiteral("TimerTimeout"));
    timerTimeout_->setSingleShot(true);
    timerTimeout_->setTimerType(Qt::PreciseTimer); // or a wait lasts half a second more, or less
}

void OneButtonUpgrade::Run(const QString &firmwareFile) {
    if (running_ || dialogs_.OwnedMessageBox(
                        QStringLiteral("This utility will upgrade the ZTV500-100 firmware.\n\nContinue?"),
                        {.icon = BoxIcon::Question, .buttons = BoxButtons::YesNo},
                        ApplicationTitle()) != BoxAnswer::Yes) {
        return;
    }
    running_ = true;
    Q_EMIT RunningChanged(true);
    const auto done = qScopeGuard([this] {
        timerTimeout_->stop();
        link_.GoOffline();
        running_ = false;
        Q_EMIT RunningChanged(false);
    });
    Upgrade(firmwareFile);
}

void OneButtonUpgrade::Upgrade(const QString &firmwareFile) {
    if (!console_.ConnectBootloader() && !EnterBootLoader(firmwareFile)) {
        return;
    }
    console_.Boot().ReadEepromByte(eepromByteAsked); // whatever comes of it
    if (!console_.OpenHexFile(firmwareFile)) {
        return;
    }
    const TextFileReader image(console_.Boot().Settings().ProgramFile, 0);
    if (!console_.EraseDevice()) {
        return;
    }
    // The commands that came meanwhile may have left another image than the firmware, or erased again what
    // was written of it. Such a sensor mustn't be told to run.
    const int erases = console_.Boot().Erases();
    if (!image.HasChanged() && !console_.WriteDevice()) {
        return;
    }
    if (image.HasChanged() || console_.Boot().Erases() != erases) {
        console_.SetStatus(QStringLiteral("Failed to write device..."));
        return;
    }
    if (!console_.RunModeCommand()) {
        return;
    }
    if (!Restart()) {
        console_.SetStatus(QStringLiteral("Reset Processor Failed!"));
        return;
    }
    dialogs_.OwnedMessageBox(QStringLiteral("Firmware has been sucessfully upgraded!"),
                             {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok}, ApplicationTitle());
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
bool OneButtonUpgrade::EnterBootLoader(const QString &firmwareFile) {
    if (console_.PortWasOpened() && !console_.CheckHexFile(firmwareFile)) {
        return false;
    }
    console_.SetStatus(QStringLiteral("Placing in boot mode..."));
    link_.ReadOnConnect(); // an earlier connect may have left the wish to download
    link_.GoOnline(1);
    // A port that has only now come free. Nothing was sent yet: that takes the event loop.
    if (!console_.PortWasOpened() && link_.PortIsOpen() && !console_.CheckHexFile(firmwareFile)) {
        return false;
    }
    if (!WaitWhile([this] { return !link_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); })) {
        ShowFailure(1);
        return false;
    }
    // Only a change goes to the sensor: what the table holds must not be the command already.
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::NoCommand);
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader);
    if (!WaitWhile([this] { return link_.Mbaxp1().TransactionBusy(LinkTransaction::SingleWrite); })) {
        ShowFailure(2);
        return false;
    }
    if (!WaitWhile([this] { return link_.PortIsOpen(); })) {
        ShowFailure(3);
        return false;
    }
    // Confirmed, so that it must not stay: a file or a download would carry it to the next sensor. Not as the
    // user's write: that would count as a change of the file.
    zentrova_.ParamUpdate(ParamDefines::ReinitCommand, ParamDefines::NoCommand);
    if (!console_.ConnectBootloader()) {
        ShowFailure(4);
        return false;
    }
    return true;
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

void OneButtonUpgrade::ShowFailure(int step) {
    dialogs_.OwnedMessageBox(QStringLiteral("Error Connecting to ZTV500-100. (MSG#%1)").arg(step),
                             {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok}, ApplicationTitle());
    console_.SetStatus(QStringLiteral("Failed to put in Boot mode"));
}
