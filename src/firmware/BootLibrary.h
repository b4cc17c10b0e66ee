#pragma once

#include "firmware/BootEcho.h"
#include "firmware/BootFrame.h"
#include "firmware/BootLine.h"
#include "firmware/TransferRecord.h"
#include "link/LineTap.h"

#include <QByteArray>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace ztv {

// The negative results of the boot library.
namespace BootResult {

inline constexpr std::int32_t NotOpen = -1;
inline constexpr std::int32_t WriteError = -2;
inline constexpr std::int32_t NoAnswer = -3;
inline constexpr std::int32_t DamagedAnswer = -4;
inline constexpr std::int32_t AnswerTooLong = -5;
inline constexpr std::int32_t UnexpectedAnswer = -6;
inline constexpr std::int32_t BytesDiffer = -12;

} // namespace BootResult

// Exchanges packets with the sensor's boot loader over a serial line, which it owns while the line is open.
// Every call blocks until it is answered or all tries have failed. Calls return a negative result on failure.
// An echo on the line makes no difference, except for packets that could be their own answer while the echo
// isn't known yet.
class BootLibrary {
public:
    // Reports every frame to the tap, if there is one. The tap outlives the library.
    explicit BootLibrary(OpenBootLine openLine, LineTap *tap = nullptr)
        : openLine_(std::move(openLine)),
          tap_(tap) {}
    virtual ~BootLibrary() = default;
    BootLibrary(const BootLibrary &) = delete;
    BootLibrary &operator=(const BootLibrary &) = delete;

    // Returns the handle of the port, greater than 0, or NotOpen. Each try of a later call waits `TimeoutMs`
    // for its answer, plus the time that packet and answer take on the line. Closes a port that was open.
    // When the device goes away, the call that detects it fails, and the next call tries to open the device
    // again.
    std::int32_t OpenPIC(const QByteArray &PortName, std::int32_t BitRate, std::int32_t TimeoutMs);
    void ClosePIC(std::int32_t handle);

    // Sends the first `bytesToSend` bytes of the buffer. Returns the size of the answer and writes the answer
    // to the buffer. A reset has no answer, is sent once and returns 0.
    std::int32_t SendGetPacket(std::int32_t handle, std::span<std::uint8_t> buffer, std::int32_t bytesToSend,
                               std::int32_t largestReply, std::int32_t tries);

    // Returns the number of bytes read into the buffer.
    // REQUIRES: the buffer has room for `DataLength` bytes.
    virtual std::int32_t ReadPIC(std::int32_t handle, const TransferRecord &record,
                                 std::span<std::uint8_t> buffer);

    // Writes `DataLength` bytes of the buffer and returns their number.
    virtual std::int32_t WritePIC(std::int32_t handle, const TransferRecord &record,
                                  std::span<const std::uint8_t> buffer);

    // Reads with the record's command and compares. Returns BytesDiffer, or the number of bytes compared.
    std::int32_t VerifyPIC(std::int32_t handle, const TransferRecord &record,
                           std::span<const std::uint8_t> buffer);

private:
    struct Answer {
        std::int32_t result; // the size of the payload, or a BootResult
        QByteArray payload;
    };
    struct Expected {
        QByteArray beginning;
        qsizetype size;

        bool Accepts(const QByteArray &payload) const {
            return payload.startsWith(beginning) && payload.size() == size;
        }
    };

    struct Heard {
        BootFrame::Reader reader;
        std::int32_t ifNoMoreComes; // a BootResult
        QByteArray bytes = {};      // all input without the echo
    };

    bool OpenLine();
    BootLine *LineOf(std::int32_t handle);
    Answer Exchange(std::int32_t handle, const QByteArray &packet, const Expected &expected,
                    std::int32_t tries);
    bool Send(const QByteArray &packet);
    Answer Try(const QByteArray &packet, const Expected &expected);
    Answer Listen(int milliseconds, Heard &heard, const Expected &expected);
    BootFrame::Reader NewReader(const Expected &expected) const;
    // Returns the result of the try if that byte ends it.
    std::optional<Answer> Take(char byte, Heard &heard, const Expected &expected);
    static Answer Judge(BootFrame::Reader::State state, const QByteArray &payload, const Expected &expected);
    void TakeEcho(const QByteArray &packet, Heard &heard);
    void LetLineFallSilent();
    void Report(LineFrame::Kind kind, const QByteArray &bytes, std::int32_t result = 0);
    int LineTimeMs(qsizetype bytes) const;

    OpenBootLine openLine_;
    LineTap *tap_;
    bool portIsOpen_ = false;
    std::int32_t handle_ = 0;
    std::unique_ptr<BootLine> line_; // null while the port is open: the device is gone
    BootEcho echo_;
    QByteArray portName_;
    std::int32_t bitRate_ = 0;
    std::int32_t timeoutMs_ = 0;
};

} // namespace ztv
