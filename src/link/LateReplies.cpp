#include "link/LateReplies.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace ztv {

namespace {

constexpr int owedForTimeouts = 5;          // no reply is expected later than this
constexpr qint64 owedForAtMostUs = 500'000; // beyond one timeout
constexpr qint64 unusualDelayUs =
    40'000;                          // beyond the usual delay: adapters delay bytes by up to 16 ms, twice
constexpr qint64 tellingUs = 10'000; // two explanations whose errors differ by less fit alike
constexpr int mostSilentRuns = 2;    // after which an old doubt decides nothing
constexpr int mostUndecided = 3;     // doubtful runs of a cycle whose period leaves no room to move a round

// Returns whether the reply to one request could be mistaken for the reply to the other. Only reads count:
// the reply to a write repeats what was written, so that accepting it for the same write does no harm.
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

// Until the sensor's usual delay is known, a reply counts as owed only while it is likely.
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
        return true; // later than a late reply is likely to be
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

} // namespace ztv
