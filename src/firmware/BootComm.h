#pragma once

#include "firmware/BootLibrary.h"
#include "firmware/BootSettings.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace ztv {

// The result of a loop of BootComm. Any other value is the BootResult that ended it.
enum class TransferResult : std::int32_t {
    Finished = 1,
    Aborted = -100,
    VerifyFailed = -101, // for the line written last
    ImageChanged = -102, // by another command while it was read or written
};

// The result of writing an image. Counts every line that failed verification, including those that `result`
// doesn't show.
struct ImageWritten {
    TransferResult result = TransferResult::Finished;
    int differingLines = 0;
};

// The call-backs of BootComm's loops, called once a round.
struct TransferEvents {
    std::function<void()> yield = [] {}; // processes pending events, which may abort the loop
    std::function<void(const QString &)> status = [](const QString &) {};
    std::function<void(double)> progress = [](double) {}; // the fraction done, 0 to 1
};

// The boot link: its settings, the small operations on the device, and the loops that transfer its memories
// to and from the memory images. Every call blocks; a loop yields once a round.
class BootComm {
public:
    // Reports every frame on the line to the tap, if there is one. The tap outlives the boot link.
    explicit BootComm(OpenBootLine open, LineTap *tap = nullptr)
        : BootComm(std::make_unique<BootLibrary>(std::move(open), tap)) {}
    explicit BootComm(std::unique_ptr<BootLibrary> library) : library_(std::move(library)) {}

    BootSettings &Settings() { return settings_; }
    void OnTransfer(TransferEvents events) { events_ = std::move(events); }

    // Opens the port of the settings unless it is open already. Returns false when it can't be opened.
    bool OpenPort();
    // Closes the port if it is open.
    void ClosePort();

    // Returns "V", major, ".", minor; empty when no boot loader answers.
    QString ReadBootVersion();
    // Asks for the version once. Returns true only when nothing answers. Returns false also when nothing
    // could be sent: the device may have gone away.
    bool LoaderIsSilent();
    // Always returns an empty text, which means success: a reset has no answer.
    QString ResetProcessor();
    // Makes the boot loader start the application at the next reset. Exactly 1 is success.
    std::int16_t SetRunMode();
    // Returns the byte, or -1 on failure.
    std::int16_t ReadEepromByte(std::int16_t address);

    // Reads a region into a memory image. Multiplies both addresses by `bytesPerAddress`. Ends early when a
    // command changes the image meanwhile, and leaves the changed image as it is. Fault when the file can't
    // be written.
    TransferResult ReadRegion(std::int32_t &start, std::int32_t &end, std::uint8_t bytesPerAddress,
                              std::uint8_t command, const QString &fileName);
    TransferResult EraseRegion(std::int32_t start, std::int32_t end);
    // The number of erases begun.
    int Erases() const { return erases_; }
    // Writes and verifies a memory image line by line, wherever its addresses are. Records a line that
    // differs in ErrorFile and continues with the next, whose result replaces the earlier one. Fault when a
    // file can't be opened or written.
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

} // namespace ztv
