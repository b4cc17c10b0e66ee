#include "firmware/BootLibrary.h"

#include "firmware/BootFrame.h"
#include "link/LineTap.h"
#include "tests/helpers/Printers.h"

#include <array>
#include <deque>
#include <functional>
#include <gtest/gtest.h>

namespace ztv {

namespace {

QByteArray Bytes(const char *hex) {
    return QByteArray::fromHex(hex);
}

// A line whose far end answers by a script, in no time.
class FakeLine : public BootLine {
public:
    struct Far {
        std::vector<QByteArray> sent; // frames
        std::deque<QByteArray> answers;
        std::vector<int> waits; // waits for an answer, in milliseconds
        int silences = 0;       // number of waits for silence on the line
        bool refuses = false;   // refuses to send
        bool gone = false;
        QByteArray early;   // received before a frame is sent
        QByteArray babbles; // received again and again
        // The bytes of a frame that the adapter gives back, before the answer.
        std::function<QByteArray(const QByteArray &)> echo = [](auto &) { return QByteArray(); };
        qsizetype piece = 1000; // the most bytes that come at once
    };
    explicit FakeLine(Far &far) : far_(far) {}

    void ClearInput() override {
        input_.clear();
        far_.early.clear();
    }
    bool Write(const QByteArray &bytes) override {
        if (far_.refuses) {
            return false;
        }
        far_.sent.push_back(bytes);
        input_ = far_.echo(bytes);
        if (!far_.answers.empty()) {
            input_ += far_.answers.front();
            far_.answers.pop_front();
        }
        return true;
    }
    std::optional<QByteArray> Read(int milliseconds) override {
        if (far_.gone) {
            return std::nullopt;
        }
        constexpr int silence = 30;
        if (milliseconds == silence) {
            ++far_.silences;
        } else {
            far_.waits.push_back(milliseconds);
        }
        const QByteArray piece = input_.left(far_.piece);
        input_.remove(0, piece.size());
        return far_.early + piece + far_.babbles;
    }

private:
    Far &far_;
    QByteArray input_;
};

class BootLibraryTest : public testing::Test {
protected:
    std::int32_t Open() { return handle_ = library_.OpenPIC("COM3", 38400, 1000); }
    void Answer(const char *payload) { far_.answers.push_back(BootFrame::Encode(Bytes(payload))); }
    QByteArray Payload(std::size_t frame) const {
        BootFrame::Reader reader(300);
        for (const char byte : far_.sent.at(frame)) {
            reader.Take(byte);
        }
        return reader.Payload();
    }

    std::int32_t SendVersionRead(std::int32_t tries = 3, std::int32_t largest = 10) {
        packet_ = {0, 2};
        return library_.SendGetPacket(handle_, packet_, 2, largest, tries);
    }
    std::int32_t SendErase() {
        packet_ = {3, 1, 0x40, 0x08, 0x00};
        return library_.SendGetPacket(handle_, packet_, 5, 255, 5);
    }

    FakeLine::Far far_;
    bool opens_ = true;
    QByteArray openedPort_;
    std::int32_t openedRate_ = 0;
    LineTap tap_;
    BootLibrary library_{[this](const QByteArray &port, std::int32_t rate) -> std::unique_ptr<BootLine> {
                             openedPort_ = port;
                             openedRate_ = rate;
                             return opens_ ? std::make_unique<FakeLine>(far_) : nullptr;
                         },
                         &tap_};
    std::int32_t handle_ = 0;
    std::array<std::uint8_t, 11> packet_{};
    std::array<std::uint8_t, 256> buffer_{};
    TransferRecord record_{.Command = BootCommand::ReadProgram,
                           .DataLength = 16,
                           .Address = 0x0F0504,
                           .BlockBytes = 1,
                           .BytesPerAddress = 1,
                           .Retries = 3};
};

} // namespace

TEST_F(BootLibraryTest, OpensAPortByItsNameAndRate) {
    EXPECT_GT(Open(), 0);
    EXPECT_EQ(openedPort_, QByteArray("COM3"));
    EXPECT_EQ(openedRate_, 38400);
}

TEST_F(BootLibraryTest, GivesANegativeHandleForAPortThatCantBeOpened) {
    opens_ = false;
    EXPECT_EQ(Open(), BootResult::NotOpen);
    EXPECT_EQ(SendVersionRead(), BootResult::NotOpen);
}

TEST_F(BootLibraryTest, NothingWorksOnAClosedPortOrWithAnotherHandle) {
    EXPECT_EQ(SendVersionRead(), BootResult::NotOpen);
    Open();
    library_.ClosePIC(handle_);
    packet_ = {0, 0};
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 2, 10, 3), BootResult::NotOpen);
    EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), BootResult::NotOpen);
    EXPECT_EQ(library_.WritePIC(handle_, record_, buffer_), BootResult::NotOpen);
    EXPECT_EQ(library_.VerifyPIC(handle_, record_, buffer_), BootResult::NotOpen);
    Open();
    EXPECT_EQ(library_.ReadPIC(handle_ - 1, record_, buffer_), BootResult::NotOpen);
    library_.ClosePIC(handle_ - 1); // another handle: closes nothing
    Answer("00 02 05 01");
    EXPECT_EQ(SendVersionRead(), 4);
}

TEST_F(BootLibraryTest, PutsTheAnswerIntoTheBufferFromItsStart) {
    Open();
    Answer("00 02 0F 04");
    EXPECT_EQ(SendVersionRead(), 4);
    EXPECT_EQ(far_.sent, std::vector<QByteArray>{Bytes("0F 0F 00 02 FE 04")});
    EXPECT_EQ(packet_[2], 0x0F);
    EXPECT_EQ(packet_[3], 0x04);
    Answer("03");
    EXPECT_EQ(SendErase(), 1);
    EXPECT_EQ(Payload(1), Bytes("03 01 40 08 00"));
    EXPECT_EQ(far_.silences, 0);
}

TEST_F(BootLibraryTest, SendsAResetOnceAndWaitsForNothing) {
    Open();
    packet_ = {0, 0};
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 2, 10, 3), 0);
    EXPECT_EQ(far_.sent, std::vector<QByteArray>{Bytes("0F 0F 00 00 00 04")});
    EXPECT_TRUE(far_.waits.empty());
    far_.refuses = true;
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 2, 10, 3), BootResult::WriteError);
}

TEST_F(BootLibraryTest, TriesAsOftenAsItMay) {
    Open();
    EXPECT_EQ(SendVersionRead(3), BootResult::NoAnswer);
    EXPECT_EQ(far_.sent.size(), 3u);
    EXPECT_EQ(SendErase(), BootResult::NoAnswer);
    EXPECT_EQ(far_.sent.size(), 8u);
    record_.Retries = 2;
    EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), BootResult::NoAnswer);
    EXPECT_EQ(far_.sent.size(), 10u);
    record_.Retries = 0; // still once
    EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), BootResult::NoAnswer);
    EXPECT_EQ(far_.sent.size(), 11u);
}

TEST_F(BootLibraryTest, WaitsTheTimeoutBeyondTheTimeOnTheLine) {
    Open();
    SendVersionRead(1);
    const int expected = 1000 + (6 + 13) * 10 / 38; // request and longest answer, 10 bits a character
    ASSERT_EQ(far_.waits.size(), 1u);
    EXPECT_NEAR(far_.waits.front(), expected, 2);
    handle_ = library_.OpenPIC("COM3", 1200, 500);
    SendVersionRead(1);
    EXPECT_NEAR(far_.waits.back(), 500 + (6 + 13) * 10 * 1000 / 1200, 2);
}

TEST_F(BootLibraryTest, AGoodAnswerToALaterTryCounts) {
    Open();
    far_.answers.push_back({});
    far_.answers.push_back(Bytes("0F 0F 00 02 00 01 FE 04")); // damaged
    Answer("03");                                             // another's
    EXPECT_EQ(SendVersionRead(3), BootResult::UnexpectedAnswer);
    EXPECT_EQ(far_.silences, 3); // or late answers to these tries would be taken for the next packet's
    far_.answers.push_back({});
    Answer("00 02 00 01");
    EXPECT_EQ(SendVersionRead(3), 4);
    EXPECT_EQ(far_.silences, 5); // also after the try that succeeded
}

TEST_F(BootLibraryTest, TellsFailuresApart) {
    struct Row {
        const char *what;
        QByteArray answer;
        std::int32_t result;
    };
    const Row rows[] = {
        {"nothing", {}, BootResult::NoAnswer},
        {"garbage", Bytes("55 AA 55"), BootResult::DamagedAnswer},
        {"cut off", Bytes("0F 0F 00 02 05 01"), BootResult::DamagedAnswer},
        {"wrong checksum", Bytes("0F 0F 00 02 05 01 00 04"), BootResult::DamagedAnswer},
        {"too long", BootFrame::Encode(Bytes("00 02 05 01 00 00 00 00 00 00 00")), BootResult::AnswerTooLong},
        {"too short", BootFrame::Encode(Bytes("00 02 05")), BootResult::UnexpectedAnswer},
        {"another command", BootFrame::Encode(Bytes("01 02 05 01")), BootResult::UnexpectedAnswer},
        {"a reset's", BootFrame::Encode(Bytes("00 00 05 01")), BootResult::UnexpectedAnswer},
    };
    for (const Row &row : rows) {
        Open();
        far_.answers = {row.answer};
        EXPECT_EQ(SendVersionRead(1), row.result) << row.what;
    }
}

TEST_F(BootLibraryTest, DropsWhatCameBeforeItAsked) {
    Open();
    far_.early = BootFrame::Encode(Bytes("00 02 09 09"));
    Answer("00 02 05 01");
    EXPECT_EQ(SendVersionRead(1), 4);
    EXPECT_EQ(packet_[2], 5);
}

TEST_F(BootLibraryTest, ALineThatBabblesHoldsNothingUp) {
    Open();
    far_.babbles = QByteArray(64, 'x');
    EXPECT_EQ(SendVersionRead(2), BootResult::DamagedAnswer);
    EXPECT_EQ(far_.sent.size(), 2u);
    EXPECT_LE(far_.waits.size(), 2u * 70u);
    EXPECT_EQ(far_.silences, 2 * 20);
}

TEST_F(BootLibraryTest, DoesntTryAgainOnALineThatIsGoneButLooksForItNextTime) {
    Open();
    far_.gone = true;
    EXPECT_EQ(SendVersionRead(), BootResult::NotOpen);
    EXPECT_EQ(far_.sent.size(), 1u);
    opens_ = false;
    EXPECT_EQ(SendVersionRead(), BootResult::NotOpen);
    EXPECT_EQ(far_.sent.size(), 1u);
    opens_ = true;
    far_.refuses = true;
    EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), BootResult::WriteError);
    far_.gone = far_.refuses = false;
    openedRate_ = 0;
    Answer("00 02 05 01");
    EXPECT_EQ(SendVersionRead(), 4); // with the old handle
    EXPECT_EQ(openedPort_, QByteArray("COM3"));
    EXPECT_EQ(openedRate_, 38400);
    library_.ClosePIC(handle_);
    EXPECT_EQ(SendVersionRead(), BootResult::NotOpen);
}

TEST_F(BootLibraryTest, RefusesWhatABufferDoesntHold) {
    Open();
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 12, 10, 3), BootResult::WriteError);
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 0, 10, 3), BootResult::WriteError);
    EXPECT_EQ(SendVersionRead(3, 3), BootResult::AnswerTooLong); // no room for a version
    std::array<std::uint8_t, 15> small{};
    EXPECT_EQ(library_.ReadPIC(handle_, record_, small), BootResult::AnswerTooLong);
    EXPECT_EQ(library_.WritePIC(handle_, record_, small), BootResult::WriteError);
    EXPECT_EQ(library_.VerifyPIC(handle_, record_, small), BootResult::WriteError);
    EXPECT_TRUE(far_.sent.empty());
}

TEST_F(BootLibraryTest, TakesAnAnswerThatJustFits) {
    Open();
    Answer("00 02 05 01");
    EXPECT_EQ(SendVersionRead(1, 4), 4);
    packet_ = {3, 1, 0x40, 0x08, 0x00};
    Answer("03");
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 5, 1, 1), 1);
    std::array<std::uint8_t, 16> whole{};
    far_.answers.push_back(BootFrame::Encode(Bytes("01 10 04 05 0F") + QByteArray(16, 'x')));
    EXPECT_EQ(library_.ReadPIC(handle_, record_, whole), 16);
}

TEST_F(BootLibraryTest, ReadsWithTheCountOfBytesAndTheAddressInThreeBytes) {
    Open();
    const QByteArray data = Bytes("04 05 0F 00 11 22 33 44 55 66 77 88 99 AA BB FF");
    far_.answers.push_back(BootFrame::Encode(Bytes("01 10 04 05 0F") + data));
    EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), 16);
    EXPECT_EQ(Payload(0), Bytes("01 10 04 05 0F"));
    EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(buffer_.data()), 16), data);
}

TEST_F(BootLibraryTest, TakesNoReadOfAnotherAddressOrSize) {
    for (const char *head : {"01 10 05 05 0F", "01 10 04 05 0E", "04 10 04 05 0F"}) {
        Open();
        far_.answers = {BootFrame::Encode(Bytes(head) + QByteArray(16, 'x'))};
        record_.Retries = 1;
        EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), BootResult::UnexpectedAnswer) << head;
    }
    far_.answers = {BootFrame::Encode(Bytes("01 10 04 05 0F") + QByteArray(15, 'x'))};
    EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), BootResult::UnexpectedAnswer);
    far_.answers = {BootFrame::Encode(Bytes("01 10 04 05 0F") + QByteArray(17, 'x'))};
    EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), BootResult::AnswerTooLong);
}

TEST_F(BootLibraryTest, WritesWithTheCountOfBlocks) {
    Open();
    buffer_.fill(0x0F);
    record_.Command = BootCommand::WriteProgram;
    record_.Address = 0x000800;
    record_.BlockBytes = 8;
    Answer("02");
    EXPECT_EQ(library_.WritePIC(handle_, record_, buffer_), 16);
    EXPECT_EQ(Payload(0), Bytes("02 02 00 08 00") + QByteArray(16, 0x0F));
    record_.BlockBytes = 0; // can't be divided by
    Answer("02");
    EXPECT_EQ(library_.WritePIC(handle_, record_, buffer_), 16);
    EXPECT_EQ(Payload(1).at(1), 16);
}

TEST_F(BootLibraryTest, AWriteIsAnsweredByItsCommandAlone) {
    Open();
    record_.Command = BootCommand::WriteEeprom;
    record_.Retries = 1;
    Answer("05 01");
    EXPECT_EQ(library_.WritePIC(handle_, record_, buffer_), BootResult::AnswerTooLong);
    Answer("02");
    EXPECT_EQ(library_.WritePIC(handle_, record_, buffer_), BootResult::UnexpectedAnswer);
}

TEST_F(BootLibraryTest, VerifiesByReadingWithTheRecordsCommandWhateverItsBlocks) {
    Open();
    buffer_.fill(0x5A);
    record_.BlockBytes = 8;
    const QByteArray head = Bytes("01 10 04 05 0F");
    far_.answers.push_back(BootFrame::Encode(head + QByteArray(16, 0x5A)));
    EXPECT_GE(library_.VerifyPIC(handle_, record_, buffer_), 0);
    EXPECT_EQ(Payload(0), head);
    far_.answers.push_back(BootFrame::Encode(head + QByteArray(15, 0x5A) + '\x5B'));
    EXPECT_EQ(library_.VerifyPIC(handle_, record_, buffer_), -12);
    EXPECT_EQ(far_.sent.size(), 2u); // a difference isn't tried again
    record_.Retries = 1;
    EXPECT_EQ(library_.VerifyPIC(handle_, record_, buffer_), BootResult::NoAnswer);
}

namespace {

QByteArray Copy(const QByteArray &frame) {
    return frame;
}

} // namespace

// A line with a local echo, as a two-wire adapter may have.
class BootLibraryEchoTest : public BootLibraryTest {
protected:
    BootLibraryEchoTest() {
        far_.echo = Copy;
        Open();
        buffer_.fill(0x5A);
    }
    // Lets the library detect the echo.
    void ShowEcho() {
        Answer("00 02 05 01");
        ASSERT_EQ(SendVersionRead(1), 4);
        far_.sent.clear();
    }
    std::int32_t Write(std::uint16_t tries = 3) {
        TransferRecord write = record_;
        write.Command = BootCommand::WriteProgram;
        write.BlockBytes = 8;
        write.Retries = tries;
        return library_.WritePIC(handle_, write, buffer_);
    }
    void AnswerRead() {
        far_.answers.push_back(BootFrame::Encode(Bytes("01 10 04 05 0F") + QByteArray(16, 0x5A)));
    }
    std::int32_t Verify(std::uint16_t tries = 3) {
        record_.Retries = tries;
        return library_.VerifyPIC(handle_, record_, buffer_);
    }
    // Each command needs one try; its answer follows the echo.
    void ExpectAllWork() {
        ShowEcho();
        Answer("03");
        EXPECT_EQ(SendErase(), 1);
        Answer("02");
        EXPECT_EQ(Write(), 16);
        AnswerRead();
        EXPECT_EQ(Verify(), 16);
        EXPECT_EQ(far_.sent.size(), 3u);
        EXPECT_EQ(far_.silences, 0);
    }
};

TEST_F(BootLibraryEchoTest, FindsTheAnswerBehindTheEcho) {
    ExpectAllWork();
}

TEST_F(BootLibraryEchoTest, FindsItInWhateverPiecesBothCome) {
    for (const qsizetype piece : {1, 2, 3, 5, 7, 8, 11}) {
        Open();
        far_.piece = piece;
        ExpectAllWork();
    }
}

TEST_F(BootLibraryEchoTest, TakesNoEchoForAnAnswer) {
    EXPECT_EQ(SendVersionRead(3), BootResult::NoAnswer);
    EXPECT_EQ(far_.sent.size(), 3u);
    EXPECT_EQ(SendErase(), BootResult::NoAnswer);
    EXPECT_EQ(Write(), BootResult::NoAnswer);
    EXPECT_EQ(Verify(), BootResult::NoAnswer);
    record_.Command = BootCommand::WriteEeprom;
    record_.DataLength = 1;
    EXPECT_EQ(library_.WritePIC(handle_, record_, buffer_), BootResult::NoAnswer);
}

TEST_F(BootLibraryEchoTest, SeesItAtAnyFirstExchange) {
    Answer("02");
    EXPECT_EQ(Write(), 16);
    Open();
    AnswerRead();
    EXPECT_EQ(Verify(), 16);
    Open();
    Answer("03");
    EXPECT_EQ(SendErase(), 1);
    EXPECT_EQ(far_.sent.size(), 3u);
}

// An answer may equal what was sent. Then only the second copy can be the answer.
TEST_F(BootLibraryEchoTest, TakesOutOneCopyAndNoMore) {
    ShowEcho();
    packet_ = {3};
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 1, 10, 2), BootResult::NoAnswer);
    Answer("03");
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 1, 10, 1), 1);
    record_.DataLength = 0;
    record_.Retries = 1;
    EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), BootResult::NoAnswer);
    Answer("01 00 04 05 0F");
    EXPECT_EQ(library_.ReadPIC(handle_, record_, buffer_), 0);
}

TEST_F(BootLibraryEchoTest, TakesAnAnswerThatIsThePacketWhereNoLineGivesBack) {
    far_.echo = [](auto &) { return QByteArray(); };
    packet_ = {3};
    Answer("03");
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 1, 10, 1), 1);
}

TEST_F(BootLibraryEchoTest, ForgetsItWithThePort) {
    for (const bool goesAway : {false, true}) {
        far_.echo = Copy;
        Open();
        ShowEcho();
        far_.echo = [](auto &) { return QByteArray(); };
        far_.gone = goesAway;
        if (goesAway) {
            EXPECT_EQ(SendVersionRead(1), BootResult::NotOpen);
            far_.gone = false;
        } else {
            library_.ClosePIC(handle_);
            Open();
        }
        packet_ = {3};
        Answer("03");
        EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 1, 10, 1), 1);
    }
}

TEST_F(BootLibraryEchoTest, AnAnswerWhoseEchoIsLostCounts) {
    ShowEcho();
    int sent = 0;
    far_.echo = [&sent](const QByteArray &frame) { return ++sent == 1 ? QByteArray() : frame; };
    Answer("02");
    EXPECT_EQ(Write(1), 16);
    AnswerRead();
    EXPECT_EQ(Verify(1), 16);
    packet_ = {3};
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 1, 10, 1), BootResult::NoAnswer);
}

TEST_F(BootLibraryEchoTest, ADamagedAnswerBehindALostEchoIsAskedForAgain) {
    ShowEcho();
    far_.echo = [](auto &) { return QByteArray(); };
    far_.answers = {Bytes("0F 0F 02 FD 04")};
    EXPECT_EQ(Write(1), BootResult::DamagedAnswer);
    far_.answers = {Bytes("0F 0F 02 FD 04")};
    Answer("02");
    EXPECT_EQ(Write(2), 16);
}

// Damages each bit of the echo in turn. The answer must be found, by the next try at the latest, and none may
// be invented.
TEST_F(BootLibraryEchoTest, ADamagedEchoIsNoAnswerAndHidesNoneForLong) {
    ShowEcho();
    const qsizetype bits = BootFrame::Encode(Bytes("02 02 04 05 0F") + QByteArray(16, 0x5A)).size() * 8;
    for (qsizetype bit = 0; bit < bits; ++bit) {
        int sent = 0;
        far_.echo = [&sent, bit](QByteArray frame) {
            if (++sent == 1) {
                const qsizetype spoilt = bit % (frame.size() * 8);
                frame[spoilt / 8] = static_cast<char>(frame.at(spoilt / 8) ^ (1 << spoilt % 8));
            }
            return frame;
        };
        far_.answers.clear();
        EXPECT_LT(Write(1), 0) << bit;
        sent = 0;
        EXPECT_LT(Verify(1), 0) << bit;
        sent = 0;
        Answer("02");
        Answer("02");
        EXPECT_EQ(Write(2), 16) << bit;
        far_.answers.clear();
        sent = 0;
        AnswerRead();
        AnswerRead();
        EXPECT_EQ(Verify(2), 16) << bit;
    }
}

TEST_F(BootLibraryEchoTest, MostDamagedEchoesCostNoTry) {
    ShowEcho();
    far_.echo = [](QByteArray frame) {
        frame[8] = static_cast<char>(frame.at(8) ^ 1);
        return frame;
    };
    Answer("02");
    EXPECT_EQ(Write(1), 16);
    far_.echo = [](const QByteArray &frame) { return frame.chopped(1); }; // without its end mark
    Answer("02");
    EXPECT_EQ(Write(1), 16);
    far_.echo = [](const QByteArray &frame) { return Bytes("FF 0F 55") + frame; };
    Answer("02");
    EXPECT_EQ(Write(1), 16);
}

TEST_F(BootLibraryEchoTest, TheFirstEchoMayBeDamaged) {
    int sent = 0;
    far_.echo = [&sent](QByteArray frame) {
        if (++sent == 1) {
            frame[3] = static_cast<char>(frame.at(3) ^ 8);
        }
        return frame;
    };
    Answer("00 02 05 01");
    Answer("00 02 05 01");
    EXPECT_EQ(SendVersionRead(2), 4);
}

TEST_F(BootLibraryEchoTest, TheEchoOfAResetMayComeBehindTheNextPacket) {
    packet_ = {0, 0};
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 2, 10, 3), 0);
    far_.echo = [](const QByteArray &frame) { return BootFrame::Encode(Bytes("00 00")) + frame; };
    Answer("00 02 05 01");
    EXPECT_EQ(SendVersionRead(1), 4);
    EXPECT_EQ(far_.sent.size(), 2u);
}

TEST_F(BootLibraryEchoTest, TellsADamagedOrForeignAnswerBehindTheEcho) {
    ShowEcho();
    far_.answers = {Bytes("0F 0F 02 FD 04")};
    EXPECT_EQ(Write(1), BootResult::DamagedAnswer);
    Answer("03");
    EXPECT_EQ(Write(1), BootResult::UnexpectedAnswer);
    Answer("02 02");
    EXPECT_EQ(Write(1), BootResult::AnswerTooLong);
    far_.answers = {Bytes("0F 0F 02")};
    EXPECT_EQ(Write(1), BootResult::DamagedAnswer);
}

TEST(TransferRecordTest, HasItsFieldsInTheirPlaces) {
    const TransferRecord record{.Command = 0x11,
                                .DataLength = 0x22,
                                .reserved = 0,
                                .Address = 0x33445566,
                                .BlockBytes = 0x77,
                                .BytesPerAddress = 0x88,
                                .Retries = 0x99AA};
    EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(&record), sizeof record),
              Bytes("11 22 00 00 66 55 44 33 77 88 AA 99"));
}

// The tap. ------------------------------------------------------------------------------------------

namespace {

class BootLibraryTapTest : public BootLibraryEchoTest {
protected:
    using Kind = LineFrame::Kind;
    using Seen = std::tuple<Kind, QByteArray, int>; // kind, bytes, status

    BootLibraryTapTest() {
        far_.echo = [](auto &) { return QByteArray(); };
        QObject::connect(&tap_, &LineTap::FrameSeen, [this](const LineFrame &frame) {
            EXPECT_FALSE(frame.transaction);
            seen_.emplace_back(frame.kind, frame.bytes, frame.status);
        });
    }

    const QByteArray versionRead_ = BootFrame::Encode(Bytes("00 02"));
    const QByteArray version_ = BootFrame::Encode(Bytes("00 02 05 01"));
    std::vector<Seen> seen_;
};

} // namespace

TEST_F(BootLibraryTapTest, ReportsARequestAndItsAnswer) {
    Answer("00 02 05 01");
    EXPECT_EQ(SendVersionRead(), 4);
    EXPECT_EQ(seen_, (std::vector<Seen>{{Kind::Request, versionRead_, 0}, {Kind::Reply, version_, 0}}));
}

TEST_F(BootLibraryTapTest, ReportsEachTryWithItsResult) {
    const QByteArray damaged = Bytes("0F 0F 00 02 05 01 00 04");
    const QByteArray foreign = BootFrame::Encode(Bytes("01 02 05 01"));
    far_.answers = {{}, damaged, foreign, version_};
    EXPECT_EQ(SendVersionRead(4), 4);
    EXPECT_EQ(seen_, (std::vector<Seen>{{Kind::Request, versionRead_, 0},
                                        {Kind::Reply, {}, BootResult::NoAnswer},
                                        {Kind::Request, versionRead_, 0},
                                        {Kind::Reply, damaged, BootResult::DamagedAnswer},
                                        {Kind::Request, versionRead_, 0},
                                        {Kind::Reply, foreign, BootResult::UnexpectedAnswer},
                                        {Kind::Request, versionRead_, 0},
                                        {Kind::Reply, version_, 0}}));
}

TEST_F(BootLibraryTapTest, ReportsAnAnswerWholeThatComesInPieces) {
    for (const qsizetype piece : {1, 2, 3, 7}) {
        Open();
        seen_.clear();
        far_.piece = piece;
        far_.answers = {Bytes("55 AA") + version_};
        EXPECT_EQ(SendVersionRead(1), 4);
        EXPECT_EQ(seen_.back(), Seen(Kind::Reply, Bytes("55 AA") + version_, 0)) << piece;
    }
}

TEST_F(BootLibraryTapTest, ReportsTheAdaptersCopyApart) {
    for (const qsizetype piece : {1, 5, 1000}) {
        Open();
        seen_.clear();
        far_.echo = Copy;
        far_.piece = piece;
        far_.answers = {version_, {}};
        EXPECT_EQ(SendVersionRead(), 4);
        EXPECT_EQ(SendVersionRead(1), BootResult::NoAnswer);
        EXPECT_EQ(seen_, (std::vector<Seen>{{Kind::Request, versionRead_, 0},
                                            {Kind::Echo, versionRead_, 0},
                                            {Kind::Reply, version_, 0},
                                            {Kind::Request, versionRead_, 0},
                                            {Kind::Echo, versionRead_, 0},
                                            {Kind::Reply, {}, BootResult::NoAnswer}}))
            << piece;
    }
}

TEST_F(BootLibraryTapTest, ReportsWhatCameBeforeTheAdaptersCopyAsLate) {
    far_.echo = [](const QByteArray &frame) { return Bytes("55 AA") + frame; };
    far_.answers = {version_};
    EXPECT_EQ(SendVersionRead(), 4);
    EXPECT_EQ(seen_, (std::vector<Seen>{{Kind::Request, versionRead_, 0},
                                        {Kind::LateReply, Bytes("55 AA"), 0},
                                        {Kind::Echo, versionRead_, 0},
                                        {Kind::Reply, version_, 0}}));
}

TEST_F(BootLibraryTapTest, ReportsWhatStillComesAfterAFailedTryAsLate) {
    far_.piece = version_.size();
    far_.answers = {BootFrame::Encode(Bytes("03 02 05 01")) + version_};
    EXPECT_EQ(SendVersionRead(1), BootResult::UnexpectedAnswer);
    ASSERT_EQ(seen_.size(), 3u);
    EXPECT_EQ(std::get<Kind>(seen_[1]), Kind::Reply);
    EXPECT_EQ(seen_[2], Seen(Kind::LateReply, version_, 0));
}

TEST_F(BootLibraryTapTest, ReportsAResetThatHasNoAnswer) {
    packet_ = {0, 0};
    EXPECT_EQ(library_.SendGetPacket(handle_, packet_, 2, 10, 3), 0);
    EXPECT_EQ(seen_, (std::vector<Seen>{{Kind::Request, BootFrame::Encode(Bytes("00 00")), 0}}));
}

TEST_F(BootLibraryTapTest, ReportsALineThatFailsAsAnEmptyAnswer) {
    far_.refuses = true;
    EXPECT_EQ(SendVersionRead(), BootResult::WriteError);
    EXPECT_EQ(seen_, (std::vector<Seen>{{Kind::Reply, {}, BootResult::WriteError}}));
    far_.refuses = false;
    far_.gone = true;
    seen_.clear();
    EXPECT_EQ(SendVersionRead(), BootResult::NotOpen);
    EXPECT_EQ(seen_,
              (std::vector<Seen>{{Kind::Request, versionRead_, 0}, {Kind::Reply, {}, BootResult::NotOpen}}));
}

TEST_F(BootLibraryTapTest, WorksTheSameWithoutATap) {
    BootLibrary library{[this](auto &, auto) { return std::make_unique<FakeLine>(far_); }};
    handle_ = library.OpenPIC("COM3", 38400, 1000);
    Answer("00 02 05 01");
    packet_ = {0, 2};
    EXPECT_EQ(library.SendGetPacket(handle_, packet_, 2, 10, 3), 4);
    EXPECT_TRUE(seen_.empty());
}

} // namespace ztv
