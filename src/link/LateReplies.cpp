#include "link/LateReplies.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

constexpr int owedForTimeouts = 5;          // a reply later than this comes no more
constexpr qint64 owedForAtMostUs = 500'000; // beyond one timeout
constexpr qint64 unusualDelayUs =
    40'000; // beyond the usual delay: adapters hold bytes back for up to 16 ms, twice
constexpr qint64 tellingUs = 10'000; // two hypotheses that differ by less fit alike
constexpr int mostSilentRuns = 2;    // after which an old doubt tells nothing
constexpr int mostUndecided = 3;     // doubtful runs of a cycle whose period leaves no room to move a round

// The reply to one request could be taken for the reply to the other. The echo of a write names what was
// written: taken for that of the same write, it does no harm.
bool RepliesLookAlike(const ModbusFrame::Request &a, const ModbusFrame::Request &b) {
    return a.function == ModbusFrame::ReadHoldingRegisters && b.function == a.function &&
           a.slave == b.slave && a.quantity == b.quantity;
}

} // namespace

void LateReplies::Clear() {
    *this = {};
}

qint64 LateReplies::QuietUntilUs(const ModbusFrame::Request &request) const {
    qint64 until = 0;
    for (const OwedReply &owed : owed_) {
        if (RepliesLookAlike(owed.request, request)) {
            until = std::max(until, doubt_ ? owed.possibleUntilUs : owed.likelyUntilUs);
        }
    }
    return until;
}

void LateReplies::TakeFrom(QByteArray &received) {
    for (auto owed = owed_.begin(); owed != owed_.end();) {
        const ModbusFrame::Verdict verdict = ModbusFrame::Judge(owed->request, received);
        if (verdict.end > 0) {
            received.remove(0, verdict.end);
            owed = owed_.erase(owed);
        } else {
            ++owed;
        }
    }
}

// Before it is known how soon the sensor answers, only what is likely counts as owed.
void LateReplies::RunBegins(const ModbusFrame::Request &request, qint64 nowUs, bool moved) {
    setAside_ = false;
    setAsideDelayUs_.reset();
    std::erase_if(owed_, [&](const OwedReply &owed) {
        return (usualDelayUs_ ? owed.possibleUntilUs : owed.likelyUntilUs) <= nowUs;
    });
    if (owed_.empty()) {
        doubt_.reset();
    }
    if (request.function == ModbusFrame::ReadHoldingRegisters) {
        wasMoved_ = std::exchange(isMoved_, moved);
        intervalUs_ = lastRequest_ && RepliesLookAlike(*lastRequest_, request) ? nowUs - lastStartUs_ : 0;
        lastRequest_ = request;
        lastStartUs_ = nowUs;
    }
}

bool LateReplies::IsOwed(const ModbusFrame::Request &request) const {
    return std::any_of(owed_.begin(), owed_.end(),
                       [&](const OwedReply &owed) { return RepliesLookAlike(owed.request, request); });
}

qint64 LateReplies::Lateness(qint64 delayUs) const {
    const qint64 asOwn = std::abs(delayUs - doubt_->delayUs);
    const qint64 asLate = std::abs(delayUs + intervalUs_ - doubt_->delayUs - doubt_->intervalUs);
    return std::abs(asOwn - asLate) < tellingUs ? 0 : asOwn - asLate;
}

bool LateReplies::IsLikelyOwn(std::optional<qint64> delayUs, qint64 slackUs) const {
    if (!delayUs) {
        return false;
    }
    if (doubt_) {
        const qint64 lateness = Lateness(*delayUs);
        if (lateness != 0 || doubt_->undecided >= mostUndecided) {
            return lateness <= 0;
        }
    }
    if (!usualDelayUs_ && lastStartUs_ + *delayUs > QuietUntilUs(*lastRequest_)) {
        return true; // later than a late reply is likely
    }
    return *delayUs <= usualDelayUs_.value_or(0) + unusualDelayUs + slackUs;
}

void LateReplies::SetAside(const ModbusFrame::Request &request, std::optional<qint64> delayUs) {
    setAside_ = true;
    setAsideDelayUs_ = delayUs;
    const auto oldest = std::find_if(owed_.begin(), owed_.end(), [&](const OwedReply &owed) {
        return RepliesLookAlike(owed.request, request);
    });
    if (oldest != owed_.end()) {
        owed_.erase(oldest);
    }
}

void LateReplies::Answered(const ModbusFrame::Request &request, std::optional<qint64> delayUs) {
    if (delayUs) {
        const qint64 usual = usualDelayUs_.value_or(0);
        usualDelayUs_ = std::max(*delayUs, usual - usual / 8);
    }
    doubt_.reset();
    std::erase_if(owed_, [&](const OwedReply &owed) { return RepliesLookAlike(owed.request, request); });
}

void LateReplies::NotAnswered(const ModbusFrame::Request &request, qint64 nowUs, qint64 timeoutUs) {
    if (setAside_ && setAsideDelayUs_) {
        const bool told = doubt_ && Lateness(*setAsideDelayUs_) != 0;
        doubt_ = Doubt{.delayUs = *setAsideDelayUs_,
                       .intervalUs = intervalUs_,
                       .intervalIsOdd = isMoved_ != wasMoved_,
                       .silentRuns = 0,
                       .undecided = doubt_ && !told ? doubt_->undecided + 1 : 0};
    } else if (doubt_ && ++doubt_->silentRuns >= mostSilentRuns) {
        doubt_.reset();
    }
    const qint64 likelyUntil = nowUs + timeoutUs;
    owed_.push_back(
        {.request = request,
         .likelyUntilUs = likelyUntil,
         .possibleUntilUs = likelyUntil + std::min((owedForTimeouts - 1) * timeoutUs, owedForAtMostUs)});
}
