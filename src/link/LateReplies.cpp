#include "link/LateReplies.h"

#include <algorithm>

namespace {

constexpr int owedForTimeouts = 5;          // one that is later than this comes no more
constexpr qint64 owedForAtMostUs = 500'000; // beyond one timeout
constexpr qint64 unusualDelayUs = 15'000;   // beyond the usual delay; adapters vary by about as much
constexpr int mostDoubtfulRuns = 2;         // then the line is given time until nothing is owed any more

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

qint64 LateReplies::QuietUntilUs(const ModbusFrame::Request &request, bool runsOnce) const {
    qint64 until = 0;
    for (const OwedReply &owed : owed_) {
        if (!RepliesLookAlike(owed.request, request)) {
            continue;
        }
        if (doubtfulRuns_ >= mostDoubtfulRuns) {
            until = std::max(until, owed.possibleUntilUs);
        } else if (runsOnce || !usualDelayUs_) {
            until = std::max(until, owed.likelyUntilUs);
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

// Before it is known how soon the sensor answers, a run waits until a late reply isn't likely any more, and
// then trusts what comes.
void LateReplies::RunBegins(qint64 nowUs) {
    passedOver_ = false;
    std::erase_if(owed_, [&](const OwedReply &owed) {
        return (usualDelayUs_ ? owed.possibleUntilUs : owed.likelyUntilUs) <= nowUs;
    });
}

bool LateReplies::IsOwed(const ModbusFrame::Request &request) const {
    return std::any_of(owed_.begin(), owed_.end(),
                       [&](const OwedReply &owed) { return RepliesLookAlike(owed.request, request); });
}

bool LateReplies::IsUnusual(qint64 delayUs, qint64 slackUs) const {
    return usualDelayUs_ && delayUs > *usualDelayUs_ + unusualDelayUs + slackUs;
}

void LateReplies::PassOver(const ModbusFrame::Request &request) {
    passedOver_ = true;
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
    doubtfulRuns_ = 0;
    std::erase_if(owed_, [&](const OwedReply &owed) { return RepliesLookAlike(owed.request, request); });
}

void LateReplies::NotAnswered(const ModbusFrame::Request &request, qint64 nowUs, qint64 timeoutUs) {
    doubtfulRuns_ = passedOver_ ? doubtfulRuns_ + 1 : 0;
    const qint64 likelyUntil = nowUs + timeoutUs;
    owed_.push_back(
        {.request = request,
         .likelyUntilUs = likelyUntil,
         .possibleUntilUs = likelyUntil + std::min((owedForTimeouts - 1) * timeoutUs, owedForAtMostUs)});
}
