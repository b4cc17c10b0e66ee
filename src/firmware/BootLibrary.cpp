#include "firmware/BootLibrary.h"

#include <QElapsedTimer>
#include <algorithm>
#include <utility>

namespace ztv {

namespace {

constexpr int bitsPerCharacter = 10;
constexpr qsizetype mostGarbage = 4096; // from a line that babbles

// After a failed try its answer may still be on its way.
constexpr int silenceMs = 30;
constexpr int mostSilences = 20;

QByteArray HeadOf(const TransferRecord &record, std::uint8_t count) {
    constexpr int bitsPerByte = 8;
    QByteArray head;
    head.append(static_cast<char>(record.Command));
    head.append(static_cast<char>(count));
    for (int byte = 0; byte < 3; ++byte) {
        head.append(static_cast<char>(record.Address >> (byte * bitsPerByte)));
    }
    return head;
}

QByteArray BytesOf(std::span<const std::uint8_t> bytes) {
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size()));
}

// Of the packets of SendGetPacket, the loader leaves only a reset unanswered, and answers only the version
// request with more than its command.
bool IsReset(const QByteArray &packet) {
    return packet == QByteArray(2, '\0');
}
bool AsksForVersion(const QByteArray &packet) {
    return packet == QByteArray("\0\2", 2);
}

} // namespace

std::int32_t BootLibrary::OpenPIC(const QByteArray &PortName, std::int32_t BitRate, std::int32_t TimeoutMs) {
    portName_ = PortName;
    bitRate_ = std::max(BitRate, 1);
    timeoutMs_ = TimeoutMs;
    portIsOpen_ = OpenLine();
    return portIsOpen_ ? ++handle_ : BootResult::NotOpen;
}

// Resets the echo: the line may use another adapter than before.
bool BootLibrary::OpenLine() {
    echo_ = {};
    line_.reset(); // first: a device can't be opened twice
    line_ = openLine_(portName_, bitRate_);
    return line_ != nullptr;
}

void BootLibrary::ClosePIC(std::int32_t handle) {
    if (handle == handle_) {
        portIsOpen_ = false;
        line_.reset();
    }
}

BootLine *BootLibrary::LineOf(std::int32_t handle) {
    if (!portIsOpen_ || handle != handle_) {
        return nullptr;
    }
    if (!line_) {
        OpenLine();
    }
    return line_.get();
}

std::int32_t BootLibrary::SendGetPacket(std::int32_t handle, std::span<std::uint8_t> buffer,
                                        std::int32_t bytesToSend, std::int32_t largestReply,
                                        std::int32_t tries) {
    if (bytesToSend < 1 || static_cast<std::size_t>(bytesToSend) > buffer.size()) {
        return BootResult::WriteError;
    }
    const QByteArray packet = BytesOf(buffer.first(static_cast<std::size_t>(bytesToSend)));
    if (IsReset(packet)) {
        if (LineOf(handle) == nullptr) {
            return BootResult::NotOpen;
        }
        if (!Send(packet)) {
            line_.reset();
            return BootResult::WriteError;
        }
        return 0;
    }
    constexpr qsizetype versionBytes = 4;
    const qsizetype room = std::min<qsizetype>(largestReply, static_cast<qsizetype>(buffer.size()));
    const qsizetype size = AsksForVersion(packet) ? versionBytes : 1;
    if (size > room) {
        return BootResult::AnswerTooLong;
    }
    const Answer answer =
        Exchange(handle, packet,
                 {.beginning = AsksForVersion(packet) ? packet : packet.first(1), .size = size}, tries);
    std::copy(answer.payload.begin(), answer.payload.end(), buffer.begin());
    return answer.result;
}

std::int32_t BootLibrary::ReadPIC(std::int32_t handle, const TransferRecord &record,
                                  std::span<std::uint8_t> buffer) {
    if (record.DataLength > buffer.size()) {
        return BootResult::AnswerTooLong;
    }
    const QByteArray head = HeadOf(record, record.DataLength);
    const qsizetype size = head.size() + record.DataLength;
    const Answer answer = Exchange(handle, head, {.beginning = head, .size = size}, record.Retries);
    if (answer.result < 0) {
        return answer.result;
    }
    std::copy(answer.payload.begin() + head.size(), answer.payload.end(), buffer.begin());
    return record.DataLength;
}

std::int32_t BootLibrary::WritePIC(std::int32_t handle, const TransferRecord &record,
                                   std::span<const std::uint8_t> buffer) {
    if (record.DataLength > buffer.size()) {
        return BootResult::WriteError;
    }
    const auto blocks =
        static_cast<std::uint8_t>(record.DataLength / std::max<std::uint8_t>(record.BlockBytes, 1));
    const QByteArray head = HeadOf(record, blocks);
    const Answer answer = Exchange(handle, head + BytesOf(buffer.first(record.DataLength)),
                                   {.beginning = head.first(1), .size = 1}, record.Retries);
    return answer.result < 0 ? answer.result : record.DataLength;
}

std::int32_t BootLibrary::VerifyPIC(std::int32_t handle, const TransferRecord &record,
                                    std::span<const std::uint8_t> buffer) {
    if (record.DataLength > buffer.size()) {
        return BootResult::WriteError;
    }
    std::array<std::uint8_t, 255> there{};
    const std::int32_t result = ReadPIC(handle, record, there);
    if (result < 0) {
        return result;
    }
    const bool same = std::equal(there.begin(), there.begin() + record.DataLength, buffer.begin());
    return same ? result : BootResult::BytesDiffer;
}

BootLibrary::Answer BootLibrary::Exchange(std::int32_t handle, const QByteArray &packet,
                                          const Expected &expected, std::int32_t tries) {
    Answer answer{BootResult::NotOpen, {}};
    if (LineOf(handle) == nullptr) {
        return answer;
    }
    for (std::int32_t tried = 0; tried == 0 || tried < tries; ++tried) {
        answer = Try(packet, expected);
        if (answer.result >= 0) {
            if (tried > 0) {
                LetLineFallSilent();
            }
            return answer;
        }
        if (answer.result == BootResult::NotOpen || answer.result == BootResult::WriteError) {
            line_.reset();
            return answer;
        }
        LetLineFallSilent();
    }
    return answer;
}

bool BootLibrary::Send(const QByteArray &packet) {
    const QByteArray frame = BootFrame::Encode(packet);
    echo_.Sent(packet);
    if (!line_->Write(frame)) {
        Report(LineFrame::Kind::Reply, {}, BootResult::WriteError);
        return false;
    }
    Report(LineFrame::Kind::Request, frame);
    return true;
}

BootLibrary::Answer BootLibrary::Try(const QByteArray &packet, const Expected &expected) {
    line_->ClearInput();
    if (!Send(packet)) {
        return {BootResult::WriteError, {}};
    }
    const qsizetype onTheLine = BootFrame::Encode(packet).size() + BootFrame::LongestOf(expected.size);
    Heard heard{.reader = NewReader(expected), .ifNoMoreComes = BootResult::NoAnswer};
    Answer answer = Listen(LineTimeMs(onTheLine) + timeoutMs_, heard, expected);
    Report(LineFrame::Kind::Reply, heard.bytes, std::min(answer.result, 0));
    return answer;
}

BootLibrary::Answer BootLibrary::Listen(int milliseconds, Heard &heard, const Expected &expected) {
    QElapsedTimer waited;
    waited.start();
    qsizetype received = 0;
    for (;;) {
        const int left = milliseconds - static_cast<int>(waited.elapsed());
        const auto bytes = left > 0 ? line_->Read(left) : QByteArray();
        if (!bytes) {
            return {BootResult::NotOpen, {}};
        }
        if (bytes->isEmpty() || received > mostGarbage) {
            return {heard.ifNoMoreComes, {}};
        }
        received += bytes->size();
        for (qsizetype index = 0; index < bytes->size(); ++index) {
            heard.bytes.append(bytes->at(index));
            if (std::optional<Answer> answer = Take(bytes->at(index), heard, expected)) {
                heard.bytes.append(bytes->sliced(index + 1));
                return *std::move(answer);
            }
        }
    }
}

// Returns a reader with room for an answer, and for an echo before it.
BootFrame::Reader BootLibrary::NewReader(const Expected &expected) const {
    return BootFrame::Reader(std::max(expected.size, echo_.Longest()));
}

std::optional<BootLibrary::Answer> BootLibrary::Take(char byte, Heard &heard, const Expected &expected) {
    const BootFrame::Reader::State state = heard.reader.Take(byte);
    heard.ifNoMoreComes = BootResult::DamagedAnswer;
    if (state == BootFrame::Reader::State::Open) {
        return std::nullopt;
    }
    const bool isWhole = state == BootFrame::Reader::State::Complete;
    const QByteArray payload = isWhole ? heard.reader.Payload() : QByteArray();
    const bool isEcho = isWhole && echo_.Takes(payload, expected.Accepts(payload));
    heard.reader = NewReader(expected);
    if (isEcho) {
        TakeEcho(payload, heard);
        heard.ifNoMoreComes = BootResult::NoAnswer;
        return std::nullopt;
    }
    Answer answer = Judge(state, payload, expected);
    if (answer.result >= 0) {
        echo_.Settle();
    } else if (echo_.IsAwaited()) { // It is a damaged echo rather than an answer before the echo.
        heard.ifNoMoreComes = answer.result;
        return std::nullopt;
    }
    return answer;
}

BootLibrary::Answer BootLibrary::Judge(BootFrame::Reader::State state, const QByteArray &payload,
                                       const Expected &expected) {
    if (state == BootFrame::Reader::State::Damaged) {
        return {BootResult::DamagedAnswer, {}};
    }
    if (state == BootFrame::Reader::State::TooLong || payload.size() > expected.size) {
        return {BootResult::AnswerTooLong, {}};
    }
    if (!expected.Accepts(payload)) {
        return {BootResult::UnexpectedAnswer, {}};
    }
    return {static_cast<std::int32_t>(payload.size()), payload};
}

// Reports the echo of the packet, which has just arrived, and the late bytes before it.
void BootLibrary::TakeEcho(const QByteArray &packet, Heard &heard) {
    const QByteArray frame = BootFrame::Encode(packet);
    heard.bytes.chop(frame.size());
    if (!heard.bytes.isEmpty()) {
        Report(LineFrame::Kind::LateReply, std::exchange(heard.bytes, {}));
    }
    Report(LineFrame::Kind::Echo, frame);
}

void BootLibrary::LetLineFallSilent() {
    QByteArray late;
    for (int silence = 0; silence < mostSilences; ++silence) {
        const auto bytes = line_->Read(silenceMs);
        if (!bytes || bytes->isEmpty()) {
            break;
        }
        late += *bytes;
    }
    echo_.Settle();
    if (!late.isEmpty()) {
        Report(LineFrame::Kind::LateReply, late);
    }
}

void BootLibrary::Report(LineFrame::Kind kind, const QByteArray &bytes, std::int32_t result) {
    if (tap_ != nullptr) {
        tap_->Report(kind, bytes, result);
    }
}

int BootLibrary::LineTimeMs(qsizetype bytes) const {
    constexpr qsizetype secondMs = 1000;
    return static_cast<int>(bytes * bitsPerCharacter * secondMs / bitRate_);
}

} // namespace ztv
