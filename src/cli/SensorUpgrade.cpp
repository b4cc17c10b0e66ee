#include "cli/SensorUpgrade.h"

#include "cli/Interruption.h"
#include "firmware/MemoryImageLine.h"
#include "firmware/SerialBootLine.h"
#include "firmware/TextFileReader.h"
#include "firmware/TimeLeft.h"
#include "link/LineCodes.h"
#include "model/ParamDefines.h"
#include "support/Fault.h"

namespace ztv {

namespace {

using TransferKind = UpgradeConsole::TransferKind;

constexpr double percent = 100;

OpenBootLine OpenerOf(const CommandRun &run) {
    return SerialBootLine::Opener([device = run.Device()](std::int16_t) { return device; });
}

CommSettings CommOf(const CommandRun &run, std::int16_t address) {
    CommSettings comm = run.Comm();
    comm.address = address;
    return comm;
}

// Deliberate: the file lists every line that differed, while the outcome of a write is that of its last line.
QStringList LinesOf(const QString &file) {
    QStringList lines;
    TextFileReader reader(file, MemoryImageLine::textLength);
    while (!reader.AtEnd()) {
        lines.append(QString::fromLatin1(reader.ReadLine()).trimmed());
    }
    return lines;
}

} // namespace

SensorUpgrade::SensorUpgrade(CommandRun &run, std::int16_t address, bool isRunning)
    : run_(run),
      isRunning_(isRunning),
      prefix_(run.Addresses().size() > 1 ? QStringLiteral("address %1: ").arg(address) : QString()),
      link_(run.Zentrova(), {.deviceOfPort = [&run](std::int16_t) { return run.Device(); },
                             .askDirection = [] { return ConnectChoice::Read; }}),
      boot_(OpenerOf(run), &link_.Mbaxp1().Tap()),
      console_(boot_, {.showInEditor = [](const QString &, const QString &) { return true; }}),
      upgrade_(console_, link_, run.Zentrova()) {
    const CommSettings comm = CommOf(run, address);
    link_.Comm(comm);
    link_.SetMbaxp1CommProperties(comm.port, comm.baud, comm.parityStop,
                                  static_cast<std::int16_t>(run.Given().timeoutMs));
    console_.Load(comm.port, BitsPerSecondOfIndex(comm.baud), folder_.Path());
    run.Watch(link_.Mbaxp1().Tap());
    FollowLink();
    FollowConsole();
    upgrade_.StopWhen(
        [this] { return Interruption::Signal() != 0 || result_.otherLoader || isUnconfirmed_; });
    if (const Interruption *interruption = Interruption::Present()) {
        connect(interruption, &Interruption::Wanted, &console_, &UpgradeConsole::Abort);
    }
}

void SensorUpgrade::FollowLink() {
    connect(&link_, &LinkSession::AboutToWrite, this, [this] {
        isCommanded_ = true;
        result_.state = SensorState::MayBeInLoader;
    });
    connect(&link_, &LinkSession::WriteEnded, this, [this](std::int16_t tag, LinkStatus status) {
        if (run_.Zentrova().SentValue(tag) != ParamDefines::EnterBootLoader) {
            return; // the clearing of an earlier command
        }
        isUnconfirmed_ = status != LinkStatus::NoError;
        result_.refused = isUnconfirmed_ && status <= LastException;
        result_.state = result_.refused  ? SensorState::Unchanged
                        : isUnconfirmed_ ? SensorState::MayBeInLoader
                                         : SensorState::InLoader;
    });
}

void SensorUpgrade::FollowConsole() {
    connect(&console_, &UpgradeConsole::ConnectedChanged, this, [this](bool connected) {
        if (connected) {
            OnConnected();
        }
    });
    connect(&console_, &UpgradeConsole::TransferStarted, this, [this](const QString &, TransferKind kind) {
        result_.transfer = kind;
        result_.transferDone = 0;
        result_.state = SensorState::Incomplete;
        StartStep(kind == TransferKind::Erase ? QStringLiteral("Erasing")
                                              : QStringLiteral("Writing and verifying"));
    });
    connect(&console_, &UpgradeConsole::TransferAdvanced, this, &SensorUpgrade::Advance);
    connect(&console_, &UpgradeConsole::TransferEnded, this, [this](const ImageWritten &image) {
        result_.transferResult = image.result;
        if (result_.transfer == TransferKind::Write) {
            OnWritten(image);
        }
    });
}

// A loader that answers although the sensor runs is another sensor's: a loader has no address.
void SensorUpgrade::OnConnected() {
    if (isRunning_ && !isCommanded_) {
        result_.otherLoader = true;
    } else {
        result_.state = SensorState::InLoader;
    }
}

void SensorUpgrade::OnWritten(const ImageWritten &image) {
    if (image.result == TransferResult::Finished) {
        result_.state = image.differingLines == 0 ? SensorState::Written : SensorState::Incomplete;
        StartStep(QStringLiteral("Restarting"));
    }
}

UpgradeResult SensorUpgrade::Run(const QString &firmwareFile) {
    result_.state = isRunning_ ? SensorState::Unchanged : SensorState::InLoader;
    if (isRunning_) {
        StartStep(QStringLiteral("Entering the boot loader"));
    }
    try {
        result_.outcome = upgrade_.Run(firmwareFile);
        if (result_.transfer == TransferKind::Write) {
            result_.differing = LinesOf(boot_.Settings().ErrorFile);
        }
    } catch (const Fault &fault) {
        result_.fault = fault.Description().simplified();
    }
    if (result_.outcome == UpgradeOutcome::Upgraded) {
        result_.state = SensorState::Restarted;
    } else if (result_.outcome ==
               UpgradeOutcome::LoaderNotFound) { // the sensor's word alone doesn't prove it
        result_.state = SensorState::MayBeInLoader;
    }
    boot_.ClosePort();
    return result_;
}

bool SensorUpgrade::LoaderAnswers(CommandRun &run) {
    LineTap tap;
    run.Watch(tap);
    BootComm boot(OpenerOf(run), &tap);
    boot.Settings().PortName = QStringLiteral("COM%1").arg(run.Comm().port);
    boot.Settings().BitRate = BitsPerSecondOfIndex(run.Comm().baud);
    if (!boot.OpenPort()) {
        throw Failure(ExitStatus::NoConnection,
                      QStringLiteral("%1 can't be opened for the boot loader").arg(run.Device()));
    }
    const bool answers = !boot.ReadBootVersion().isEmpty();
    boot.ClosePort();
    return answers;
}

void SensorUpgrade::StartStep(const QString &name) {
    step_ = name;
    stepTime_.start();
    if (run_.Person().ShowsProgress()) {
        Show(prefix_ + name);
    } else {
        run_.Person().Remark(prefix_ + name);
    }
}

void SensorUpgrade::Advance(double done) {
    result_.transferDone = done;
    QString text = QStringLiteral("%1  %2 %").arg(prefix_ + step_).arg(static_cast<int>(done * percent));
    const QString left = TimeLeft(stepTime_.elapsed(), done);
    if (!left.isEmpty()) {
        text += QStringLiteral(", ") + left;
    }
    Show(text);
}

// A terminal needn't print the same again for each block.
void SensorUpgrade::Show(const QString &progress) {
    if (progress != shown_) {
        shown_ = progress;
        run_.Person().Progress(progress);
    }
}

} // namespace ztv
