#include "firmware/BootFrameText.h"

#include "firmware/BootFrame.h"
#include "firmware/BootLibrary.h"
#include "firmware/TransferRecord.h"

#include <array>
#include <optional>

namespace ztv {

namespace BootFrameText {
namespace {

constexpr qsizetype mostPayloadBytes = 1024;
constexpr qsizetype headBytes = 5; // command, count, address
constexpr char asksForVersion = 2;

struct Command {
    std::uint8_t byte;
    const char *text;
    bool carriesData;    // behind the head of the request
    bool bringsData;     // behind the head of the reply
    const char *counted; // by the second byte
};

constexpr std::array commands = {
    Command{BootCommand::ReadProgram, "read program memory", false, true, "byte"},
    Command{BootCommand::WriteProgram, "write program memory", true, false, "block"},
    Command{BootCommand::EraseProgram, "erase program memory", false, false, "block"},
    Command{BootCommand::ReadEeprom, "read EEPROM", false, true, "byte"},
    Command{BootCommand::WriteEeprom, "write EEPROM", true, false, "block"},
};

struct ResultText {
    std::int32_t result;
    const char *text;
};

constexpr std::array resultTexts = {
    ResultText{BootResult::NotOpen, "port not open"},
    ResultText{BootResult::WriteError, "write error"},
    ResultText{BootResult::NoAnswer, "no reply"},
    ResultText{BootResult::DamagedAnswer, "checksum error"},
    ResultText{BootResult::AnswerTooLong, "reply too long"},
    ResultText{BootResult::UnexpectedAnswer, "not the expected reply"},
};

QString NotUnderstood() {
    return QStringLiteral("not understood");
}

// Returns the first whole payload; empty where there is none.
QByteArray PayloadOf(const QByteArray &bytes) {
    BootFrame::Reader reader(mostPayloadBytes);
    for (const char byte : bytes) {
        switch (reader.Take(byte)) {
        case BootFrame::Reader::State::Open:
            break;
        case BootFrame::Reader::State::Complete:
            return reader.Payload();
        case BootFrame::Reader::State::Damaged:
        case BootFrame::Reader::State::TooLong:
            return {};
        }
    }
    return {};
}

const Command *CommandOf(const QByteArray &payload) {
    for (const Command &command : commands) {
        if (payload.size() >= headBytes && static_cast<std::uint8_t>(payload[0]) == command.byte) {
            return &command;
        }
    }
    return nullptr;
}

bool IsVersionOrReset(const QByteArray &payload) {
    return payload.size() == 2 && payload[0] == BootCommand::VersionOrReset;
}

QString Counted(qsizetype count, const char *what) {
    return QStringLiteral("%1 %2%3").arg(count).arg(QString::fromLatin1(what),
                                                    count == 1 ? QString() : QStringLiteral("s"));
}

QString AddressText(const QByteArray &payload) {
    const auto byte = [&](qsizetype index) {
        return static_cast<std::uint32_t>(static_cast<std::uint8_t>(payload[index]));
    };
    constexpr int digits = 6;
    return QStringLiteral("0x") +
           QString::number(byte(2) | byte(3) << 8 | byte(4) << 16, 16).toUpper().rightJustified(digits, u'0');
}

QString FailureText(std::int32_t result) {
    for (const ResultText &row : resultTexts) {
        if (row.result == result) {
            return QString::fromLatin1(row.text);
        }
    }
    return QStringLiteral("error %1").arg(result);
}

} // namespace

QString OfRequest(const QByteArray &frame) {
    const QByteArray payload = PayloadOf(frame);
    if (IsVersionOrReset(payload)) {
        return payload[1] == asksForVersion ? QStringLiteral("read version")
               : payload[1] == 0            ? QStringLiteral("reset")
                                            : NotUnderstood();
    }
    const Command *command = CommandOf(payload);
    if (command == nullptr) {
        return NotUnderstood();
    }
    const QString what = command->carriesData
                             ? Counted(payload.size() - headBytes, "byte")
                             : Counted(static_cast<std::uint8_t>(payload[1]), command->counted);
    return QStringLiteral("%1: %2 from %3")
        .arg(QString::fromLatin1(command->text), what, AddressText(payload));
}

QString OfReply(const QByteArray &request, const QByteArray &received, std::int32_t result) {
    if (result < 0) {
        return FailureText(result);
    }
    const QByteArray asked = PayloadOf(request);
    const QByteArray payload = PayloadOf(received);
    constexpr qsizetype versionBytes = 4;
    if (asked.isEmpty() || payload.isEmpty() || payload[0] != asked[0]) {
        return NotUnderstood();
    }
    if (IsVersionOrReset(asked)) {
        return payload.size() == versionBytes ? QStringLiteral("version %1.%2")
                                                    .arg(static_cast<std::uint8_t>(payload[3]))
                                                    .arg(static_cast<std::uint8_t>(payload[2]))
                                              : NotUnderstood();
    }
    const Command *command = CommandOf(asked);
    if (command == nullptr || (command->bringsData && payload.size() < headBytes)) {
        return NotUnderstood();
    }
    return command->bringsData ? Counted(payload.size() - headBytes, "byte") : QStringLiteral("done");
}

} // namespace BootFrameText

} // namespace ztv
