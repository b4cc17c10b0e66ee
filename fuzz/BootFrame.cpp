// Fuzzes the frames of the boot line. An input is a payload, the place where it is cut, and the bytes before
// it. The whole input is also used as what the line receives.

#include "firmware/BootFrame.h"

#include "fuzz/Harness.h"
#include "sim/BootFrame.h"

namespace ztv {

using BootFrame::Reader;
using State = BootFrame::Reader::State;

namespace {

// Feeds the bytes and returns the state. `taken` receives how many bytes were used until it was decided.
State TakeAll(Reader &reader, const QByteArray &bytes, qsizetype *taken = nullptr) {
    State state = State::Open;
    qsizetype count = 0;
    while (count < bytes.size() && state == State::Open) {
        state = reader.Take(bytes[count++]);
    }
    if (taken != nullptr) {
        *taken = count;
    }
    return state;
}

void CheckPayload(const QByteArray &payload, qsizetype most, const QByteArray &front) {
    const QByteArray frame = BootFrame::Encode(payload);
    REQUIRE(frame.size() <= BootFrame::LongestOf(payload.size()));
    REQUIRE(frame == sim::BootFrame(payload));

    Reader reader(most);
    REQUIRE(TakeAll(reader, front) == State::Open);
    qsizetype taken = 0;
    const State state = TakeAll(reader, frame, &taken);
    if (payload.size() > most) {
        REQUIRE(state == State::TooLong);
        return;
    }
    REQUIRE(taken == frame.size());
    REQUIRE(state == (payload.isEmpty() ? State::Damaged : State::Complete));
    if (state == State::Complete) {
        REQUIRE(reader.Payload() == payload);
        REQUIRE(reader.Take(0x0F) == State::Complete); // bytes after the frame are ignored
        REQUIRE(reader.Payload() == payload);
    }
}

// The simulated loader must find the frame too, wherever the bytes are cut.
void CheckFarEnd(const QByteArray &payload, qsizetype cut) {
    if (payload.size() >= sim::BootFrameReader::longest) {
        return;
    }
    const QByteArray frame = BootFrame::Encode(payload);
    sim::BootFrameReader reader;
    std::vector<sim::HeardFrame> frames = reader.Append(frame.left(cut));
    for (const sim::HeardFrame &late : reader.Append(frame.mid(std::min(cut, frame.size())))) {
        frames.push_back(late);
    }
    REQUIRE(payload.isEmpty() || (frames.size() == 1 && frames.front().payload == payload));
}

void CheckStream(const QByteArray &bytes, qsizetype most) {
    for (qsizetype start = 0; start < bytes.size();) {
        Reader reader(most);
        qsizetype taken = 0;
        const State state = TakeAll(reader, bytes.mid(start), &taken);
        if (state == State::Complete) {
            const QByteArray payload = reader.Payload();
            REQUIRE(!payload.isEmpty() && payload.size() <= most);
            Reader again(most);
            REQUIRE(TakeAll(again, BootFrame::Encode(payload)) == State::Complete);
            REQUIRE(again.Payload() == payload);
        }
        REQUIRE(taken > 0);
        start += taken;
    }
}

// Makes noise that can't hide the frame after it: no end mark, and no escape that affects the next byte.
QByteArray Harmless(QByteArray bytes) {
    return bytes.replace('\x05', '\x0F').replace('\x04', '\x0F');
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Fuzz::Input input(data, size);
    const qsizetype most = 1 + input.Byte();
    const qsizetype cut = input.Byte();
    const QByteArray front = Harmless(input.Take(input.Below(32))).left(most + 1);
    const QByteArray payload = input.Rest();
    CheckPayload(payload, most, front);
    CheckFarEnd(payload, cut);
    CheckStream(payload, most);
    CheckStream(Fuzz::Bytes(data, size), most);
    return 0;
}

} // namespace ztv
