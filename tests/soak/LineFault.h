#pragma once

#include "link/LinkStatus.h"

#include <QByteArray>
#include <array>
#include <cstdint>
#include <random>

namespace ztv {

// The faults of a request and its reply.
enum class LineFault {
    None,
    LostRequest,
    DamagedRequest,
    LostReply,
    DamagedReply,
    ShortReply,
    ReplyInPieces,
    SlowReply,       // before the host's timeout
    LateReply,       // after the timeout, before the next request
    LateBeforeOwn,   // after the next request, whose own reply follows
    LateAlone,       // after the next request, which gets no reply of its own
    GarbageBefore,   // before the reply
    GarbageAfter,    //
    ForeignBefore,   // another slave's frame before the reply
    ForeignAfter,    //
    ForeignInstead,  //
    DoubledReply,    //
    Exception,       // with a known code
    ExceptionBeyond, // with an unknown code
    HangUp,          // the adapter is pulled before the reply
    HangUpInReply,   // in the middle of the reply
    HangUpAfter      // between two requests
};

// One row for each fault, in the order of the enumeration.
struct LineFaultRow {
    const char *name;
    int weight;           // relative frequency in the poll
    bool appliesToWrites; // also applied to writes
    LinkStatus status;    // the status that the host must report
};

inline constexpr LinkStatus TheExceptionsCode{-1}; // as a status: the exception's own code

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
    LineFaultRow{"reply late, before the next", 1, false, LinkStatus::Timeout},
    LineFaultRow{"reply late, instead of the next", 1, false, LinkStatus::Timeout},
    LineFaultRow{"garbage before", 6, true, LinkStatus::NoError},
    LineFaultRow{"garbage after", 6, true, LinkStatus::NoError},
    LineFaultRow{"foreign frame before", 6, true, LinkStatus::NoError},
    LineFaultRow{"foreign frame after", 4, true, LinkStatus::NoError},
    LineFaultRow{"foreign frame instead", 1, true, LinkStatus::UnexpectedResponse},
    LineFaultRow{"reply twice", 6, true, LinkStatus::NoError},
    LineFaultRow{"exception 1 to 7", 4, true, TheExceptionsCode},
    LineFaultRow{"exception above 7", 2, true, LinkStatus::UnexpectedResponse},
    LineFaultRow{"hang-up before the reply", 1, true, LinkStatus::ReadError},
    LineFaultRow{"hang-up in the reply", 1, true, LinkStatus::ReadError},
    LineFaultRow{"hang-up after the reply", 1, false, LinkStatus::NoError},
};

inline const LineFaultRow &RowOf(LineFault fault) {
    return LineFaultTable.at(static_cast<std::size_t>(fault));
}

// Makes the bytes of the faults.
class Damage {
public:
    explicit Damage(unsigned seed) : random_(seed) {}

    int Between(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }

    // Changes one to three bits: so few that the CRC always detects it.
    QByteArray WithFlippedBits(QByteArray frame);
    QByteArray CutShort(const QByteArray &frame);
    QByteArray Garbage();
    QByteArray ForeignFrame(); // from another slave than 1, with a good CRC

private:
    std::mt19937 random_;
};

} // namespace ztv
