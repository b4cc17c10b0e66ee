#include "firmware/OneButtonUpgrade.h"

#include "firmware/TextFileReader.h"
#include "model/ParamDefines.h"
#include "support/ApplicationTitle.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QScopeGuard>

namespace {

constexpr int longestWaitMs = 10000;
constexpr std::int16_t eepromByteAsked = 1022;

constexpr std::int32_t noCommand = 0;

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
    if (!console_.ConnectBootloader() && !EnterBootLoader()) {
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
    if (console_.Boot().ResetProcessor().isEmpty()) {
        dialogs_.OwnedMessageBox(QStringLiteral("Firmware has been sucessfully upgraded!"),
                                 {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok},
                                 ApplicationTitle());
    }
}

// A running sensor restarts into its boot loader when it is told so over Modbus, and the link closes by
// itself once it has confirmed that.
bool OneButtonUpgrade::EnterBootLoader() {
    console_.SetStatus(QStringLiteral("Placing in boot mode..."));
    link_.GoOnline(1);
    if (!WaitWhile([this] { return !link_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); })) {
        ShowFailure(1);
        return false;
    }
    // Only a change goes to the sensor: what the table holds must not be the command already.
    zentrova_.ParamValue(ParamDefines::ReinitCommand, noCommand);
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader);
    if (!WaitWhile([this] { return link_.Mbaxp1().TransactionBusy(LinkTransaction::SingleWrite); })) {
        ShowFailure(2);
        return false;
    }
    if (!WaitWhile([this] { return link_.PortIsOpen(); })) {
        ShowFailure(3);
        return false;
    }
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
