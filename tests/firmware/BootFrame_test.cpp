#include "firmware/BootFrame.h"

#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

namespace {

QByteArray Bytes(const char *hex) {
    return QByteArray::fromHex(hex);
}

using State = BootFrame::Reader::State;

// Feeds bytes until the frame is decided and returns the state; later bytes aren't fed.
State Feed(BootFrame::Reader &reader, const QByteArray &bytes) {
    State state = State::Open;
    for (const char byte : bytes) {
        state = reader.Take(byte);
    }
    return state;
}

struct KnownFrame {
    const char *what;
    const char *payload;
    const char *frame;
};

// Computed by hand.
constexpr KnownFrame knownFrames[] = {
    {"version read", "00 02", "0F 0F 00 02 FE 04"},
    {"version answer", "00 02 01 03", "0F 0F 00 02 01 03 FA 04"},
    {"reset", "00 00", "0F 0F 00 00 00 04"},
    {"erase of a block", "03 01 00 08 00", "0F 0F 03 01 00 08 00 F4 04"},
    {"answer to an erase", "03", "0F 0F 03 FD 04"},
    {"run mode: an escaped command", "05 01 FF 7F 00 00", "0F 0F 05 05 01 FF 7F 00 00 7C 04"},
    {"read of EEPROM byte 1022: another", "04 01 FE 03 00", "0F 0F 05 04 01 FE 03 00 FA 04"},
    {"escaped counts", "01 0F 00 00 00", "0F 0F 01 05 0F 00 00 00 F0 04"},
    {"escaped count 4", "02 04 00 08 00", "0F 0F 02 05 04 00 08 00 F2 04"},
    {"escaped count 5", "02 05 00 08 00", "0F 0F 02 05 05 00 08 00 F1 04"},
    {"each byte of an address", "01 10 04 05 0F", "0F 0F 01 10 05 04 05 05 05 0F D7 04"},
    {"data", "02 02 10 08 00 04 05 0F 06", "0F 0F 02 02 10 08 00 05 04 05 05 05 0F 06 C6 04"},
    {"checksum 04", "FC", "0F 0F FC 05 04 04"},
    {"checksum 05", "01 FA", "0F 0F 01 FA 05 05 04"},
    {"checksum 0F", "F0 01", "0F 0F F0 01 05 0F 04"},
    {"escapes in a row", "05 05 05", "0F 0F 05 05 05 05 05 05 F1 04"},
};

} // namespace

TEST(BootFrameTest, EncodesKnownFrames) {
    for (const KnownFrame &known : knownFrames) {
        EXPECT_EQ(BootFrame::Encode(Bytes(known.payload)), Bytes(known.frame)) << known.what;
    }
}

TEST(BootFrameTest, ReadsKnownFrames) {
    for (const KnownFrame &known : knownFrames) {
        BootFrame::Reader reader(32);
        EXPECT_EQ(Feed(reader, Bytes(known.frame)), State::Complete) << known.what;
        EXPECT_EQ(reader.Payload(), Bytes(known.payload)) << known.what;
    }
}

TEST(BootFrameTest, ReadsWhatItEncodesForEachByteInEachPlace) {
    for (int value = 0; value < 256; ++value) {
        QByteArray payload(3, '\x55');
        for (qsizetype place = 0; place < payload.size(); ++place) {
            payload[place] = static_cast<char>(value);
            const QByteArray frame = BootFrame::Encode(payload);
            EXPECT_LE(frame.size(), BootFrame::LongestOf(payload.size()));
            BootFrame::Reader reader(payload.size());
            ASSERT_EQ(Feed(reader, frame), State::Complete) << value;
            EXPECT_EQ(reader.Payload(), payload);
        }
    }
}

TEST(BootFrameTest, TheLongestFrameHasEachByteEscaped) {
    // Five times 05 and a checksum of 0F makes six escaped bytes.
    EXPECT_EQ(BootFrame::Encode(Bytes("05 05 05 E2")).size(), BootFrame::LongestOf(4) - 1);
    EXPECT_EQ(BootFrame::LongestOf(4), 13);
}

TEST(BootFrameTest, NeedsEveryByteOfAFrame) {
    const QByteArray frame = Bytes("0F 0F 05 05 01 FF 7F 00 00 7C 04");
    for (qsizetype length = 0; length < frame.size(); ++length) {
        BootFrame::Reader reader(32);
        EXPECT_EQ(Feed(reader, frame.first(length)), State::Open) << length;
    }
}

TEST(BootFrameTest, JudgesDamage) {
    struct Row {
        const char *what;
        const char *bytes;
        State state;
    };
    const Row rows[] = {
        {"wrong checksum", "0F 0F 03 FC 04", State::Damaged},
        {"nothing within", "0F 0F 04", State::Damaged},
        {"a checksum of nothing", "0F 0F 00 04", State::Damaged},
        {"an end outside", "04 03 FD 04", State::Open},
        {"one start mark", "0F 03 FD 04", State::Open},
        {"an escaped end", "0F 0F 03 FD 05 04", State::Open},
        {"garbage in front", "AA 0F 12 0F 0F 03 FD 04", State::Complete},
        {"three start marks", "0F 0F 0F 03 FD 04", State::Complete},
        {"four start marks", "0F 0F 0F 0F 03 FD 04", State::Complete},
        {"a frame that broke off, then a whole one", "0F 0F 11 22 0F 0F 03 FD 04", State::Complete},
        {"a start mark in the middle", "0F 0F 11 0F 22 03 FD 04", State::Open},
        {"bytes behind the end", "0F 0F 03 FD 04 0F 0F 55", State::Complete},
    };
    for (const Row &row : rows) {
        BootFrame::Reader reader(32);
        EXPECT_EQ(Feed(reader, Bytes(row.bytes)), row.state) << row.what;
        if (row.state == State::Complete) {
            EXPECT_EQ(reader.Payload(), Bytes("03")) << row.what;
        }
    }
}

TEST(BootFrameTest, TakesNoMoreThanItMay) {
    BootFrame::Reader fits(4);
    EXPECT_EQ(Feed(fits, BootFrame::Encode(Bytes("00 02 01 03"))), State::Complete);
    BootFrame::Reader tooLong(3);
    EXPECT_EQ(Feed(tooLong, BootFrame::Encode(Bytes("00 02 01 03"))), State::TooLong);
    BootFrame::Reader endless(3);
    EXPECT_EQ(Feed(endless, Bytes("0F 0F") + QByteArray(100000, 'x')), State::TooLong);
}

} // namespace ztv
