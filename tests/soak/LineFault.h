#pragma once

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
    std::int16_t status;  // the status that the host must report; 0: a good transaction
};

inline constexpr std::int16_t TheExceptionsCode = -1; // as a status: the exception's own code

inline constexpr std::array LineFaultTable = {
    LineFaultRow{"none", 0, true, 0},
    LineFaultRow{"request lost", 2, true, 10},
    LineFaultRow{"request damaged", 2, true, 10},
    LineFaultRow{"reply lost", 4, true, 10},
    LineFaultRow{"reply damaged, 1 to 3 bits", 6, true, 11},
    LineFaultRow{"reply cut short", 3, true, 13},
    LineFaultRow{"reply in pieces", 4, true, 0},
    LineFaultRow{"reply slow", 2, true, 0},
    LineFaultRow{"reply late, between two requests", 1, false, 10},
    LineFaultRow{"reply late, before the next", 1, false, 10},
    LineFaultRow{"reply late, instead of the next", 1, false, 10},
    LineFaultRow{"garbage before", 6, true, 0},
    LineFaultRow{"garbage after", 6, true, 0},
    LineFaultRow{"foreign frame before", 6, true, 0},
    LineFaultRow{"foreign frame after", 4, true, 0},
    LineFaultRow{"foreign frame instead", 1, true, 12},
    LineFaultRow{"reply twice", 6, true, 0},
    LineFaultRow{"exception 1 to 7", 4, true, TheExceptionsCode},
    LineFaultRow{"exception above 7", 2, true, 12},
    LineFaultRow{"hang-up before the reply", 1, true, 15},
    LineFaultRow{"hang-up in the reply", 1, true, 15},
    LineFaultRow{"hang-up after the reply", 1, false, 0},
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
