#pragma once

#include "firmware/BootLibrary.h"
#include "firmware/BootSettings.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

// How a loop of BootComm ended. Any other value is the BootResult that ended it.
enum class TransferResult : std::int32_t {
    Finished = 1,
    Aborted = -100,
    VerifyFailed = -101, // of the line that was written last
    ImageChanged = -102, // by something else, while it was read or written
};

// How the write of an image ended. Counts every line that failed verification, also those that `result`
// doesn't show.
struct ImageWritten {
    TransferResult result = TransferResult::Finished;
    int differingLines = 0;
};

// The call-backs of BootComm's loops, called once a round.
struct TransferEvents {
    std::function<void()> yield = [] {}; // lets pending events run, among them one that aborts
    std::function<void(const QString &)> status = [](const QString &) {};
    std::function<void(double)> progress = [](double) {}; // what is done of the whole, 0 to 1
};

// The boot link: its settings, the small operations on the device, and the loops that move its memories to
// and from the memory images. Everything blocks; a loop yields once a round.
class BootComm {
public:
    // Every frame on the line is reported to the tap, if there is one. It outlives the boot link.
    explicit BootComm(OpenBootLine open, LineTap *tap = nullptr)
        : BootComm(std::make_unique<BootLibrary>(std::move(open), tap)) {}
    explicit BootComm(std::unique_ptr<BootLibrary> library) : library_(std::move(library)) {}

    BootSettings &Settings() { return settings_; }
    void OnTransfer(TransferEvents events) { events_ = std::move(events); }

    // Opens the port of the settings unless it is held already. False when it can't be opened.
    bool OpenPort();
    // Closes the port if it is held.
    void ClosePort();

    // "V", major, ".", minor; empty when no boot loader answers.
    QString ReadBootVersion();
    // Asks for the version once. False as well where nobody could be asked: the device may have gone away.
    bool LoaderIsSilent();
    // Always empty, which means success: a reset has no answer.
    QString ResetProcessor();
    // Tells the boot loader to start the application at the next reset. Exactly 1 is success.
    std::int16_t SetRunMode();
    // The byte, or -1.
    std::int16_t ReadEepromByte(std::int16_t address);

    // Reads a region into a memory image. Multiplies both addresses by `bytesPerAddress`. A command that
    // changes the image meanwhile ends it and has its way. Fault when the file can't be written.
    TransferResult ReadRegion(std::int32_t &start, std::int32_t &end, std::uint8_t bytesPerAddress,
                              std::uint8_t command, const QString &fileName);
    TransferResult EraseRegion(std::int32_t start, std::int32_t end);
    // How often an erase was begun.
    int Erases() const { return erases_; }
    // Writes and verifies a memory image line by line, wherever its addresses lie. A line that differs goes
    // to ErrorFile and the loop on to the next, whose result replaces that one's. Fault when a file can't be
    // opened or written.
    ImageWritten WriteProgramImage(std::uint8_t blockBytes, std::uint8_t bytesPerAddress,
                                   std::uint8_t writeCommand, const QString &fileName);

private:
    bool GoesOn();
    TransferRecord NewRecord(std::uint8_t command, std::uint8_t length, std::uint32_t address) const;

    std::unique_ptr<BootLibrary> library_;
    BootSettings settings_;
    TransferEvents events_;
    int erases_ = 0;
};
