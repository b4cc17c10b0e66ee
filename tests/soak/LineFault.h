#pragma once

#include "link/LinkStatus.h"

#include <QByteArray>
#include <array>
#include <cstdint>
#include <random>

namespace ztv {

// What can become of a request and its reply.
enum class LineFault {
    None,
    LostRequest,
    DamagedRequest,
    LostReply,
    DamagedReply,
    ShortReply,
    ReplyInPieces,
    SlowReply,       // within the time that the host waits
    LateReply,       // beyond it, before the next request
    LateBeforeOwn,   // behind the next request; that one's own reply follows
    LateAlone,       // behind the next request, which gets no reply of its own
    GarbageBefore,   // in front of the reply
    GarbageBehind,   //
    ForeignBefore,   // another slave's frame in front of the reply
    ForeignBehind,   //
    ForeignInstead,  //
    DoubledReply,    //
    Exception,       // with a code that is known
    ExceptionBeyond, // with one that isn't
    HangUp,          // the adapter is pulled before the reply
    HangUpInReply,   // within it
    HangUpBehind     // between two requests
};

// One row a fault, in the order of the codes.
struct LineFaultRow {
    const char *name;
    int weight;         // among the rounds of the poll
    bool strikesWrites; // it is one of a write as well
    LinkStatus status;  // what the host must report of it
};

inline constexpr LinkStatus TheExceptionsCode{-1}; // as a status: the code that the exception had

inline constexpr std::array LineFaultTable = {
    LineFaultRow{"none", 0, true, LinkStatus::NoError},
    LineFaultRow{"request lost", 2, true, LinkStatus::Timeout},
    LineFaultRow{"request damaged", 2, true, LinkStatus::Timeout},
    LineFaultRow{"reply lost", 4, true, LinkStatus::Timeout},
    LineFaultRow{"reply damaged, 1 to 3 bits", 6, true, LinkStatus::CrcError},
    LineFaultRow{"reply cut short", 3, true, LinkStatus::MissingBytes},
    LineFaultRow{"reply in pieces", 4, true, LinkStatus::NoError},
    LineFaultRow{"reply slow", 2, true, LinkStatus::NoError},
    LineFaultRow{"reply late, between two requests", 1, false, LinkStatus::Timeout},
    LineFaultRow{"reply late, in front of the next", 1, false, LinkStatus::Timeout},
    LineFaultRow{"reply late, instead of the next", 1, false, LinkStatus::Timeout},
    LineFaultRow{"garbage in front", 6, true, LinkStatus::NoError},
    LineFaultRow{"garbage behind", 6, true, LinkStatus::NoError},
    LineFaultRow{"foreign frame in front", 6, true, LinkStatus::NoError},
    LineFaultRow{"foreign frame behind", 4, true, LinkStatus::NoError},
    LineFaultRow{"foreign frame instead", 1, true, LinkStatus::UnexpectedResponse},
    LineFaultRow{"reply twice", 6, true, LinkStatus::NoError},
    LineFaultRow{"exception 1 to 7", 4, true, TheExceptionsCode},
    LineFaultRow{"exception above 7", 2, true, LinkStatus::UnexpectedResponse},
    LineFaultRow{"hang-up before the reply", 1, true, LinkStatus::ReadError},
    LineFaultRow{"hang-up within the reply", 1, true, LinkStatus::ReadError},
    LineFaultRow{"hang-up behind the reply", 1, false, LinkStatus::NoError},
};

inline const LineFaultRow &RowOf(LineFault fault) {
    return LineFaultTable.at(static_cast<std::size_t>(fault));
}

// The bytes of the faults.
class Damage {
public:
    explicit Damage(unsigned seed) : random_(seed) {}

    int Between(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }

    // One to three bits are other ones: so few that the checksum tells, always.
    QByteArray WithFlippedBits(QByteArray frame);
    QByteArray CutShort(const QByteArray &frame);
    QByteArray Garbage();
    QByteArray ForeignFrame(); // of a slave that isn't 1, with a good checksum

private:
    std::mt19937 random_;
};

} // namespace ztv
