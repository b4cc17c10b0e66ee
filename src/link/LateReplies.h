#pragma once

#include "link/ModbusFrame.h"

#include <QByteArray>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace ztv {

// Prevents the reply to a request that timed out from being mistaken for the reply to the next one. Pure: the
// caller reports each event and its time. Times are microseconds of any one clock. A delay runs from the end
// of a request to the first byte of its reply.
class LateReplies {
public:
    // How much early the round after a doubtful one starts; see Doubt.
    static constexpr qint64 MovedByUs = 40'000;

    // Forgets all owed replies and the sensor's usual delay.
    void Clear();

    // Earliest time at which a one-shot `request` may be sent without a late reply being mistaken for its
    // own. A cycle never waits: it keeps its period, and times distinguish its doubtful replies.
    qint64 QuietUntilUs(const ModbusFrame::Request &request) const;

    // True when the next round of a cycle should start MovedByUs early, so that its reply resolves the doubt.
    bool WantsMovedRound() const { return doubt_ && doubt_->silentRuns == 0 && !doubt_->intervalIsOdd; }

    // Removes late replies that arrived between two runs from `received`; they are no longer owed.
    void TakeFrom(QByteArray &received);

    // Records the start of a run. `moved`: the run is a round that starts early.
    void RunBegins(const ModbusFrame::Request &request, qint64 nowUs, bool moved = false);

    bool IsOwed(const ModbusFrame::Request &request) const;

    // Returns true when the run's first reply, with that delay, belongs to the run unless another reply
    // follows; false when it is more likely late or its delay is unknown. `slackUs`: what the line adds to a
    // delay.
    // REQUIRES: IsOwed.
    bool IsLikelyOwn(std::optional<qint64> delayUs, qint64 slackUs) const;

    // Counts the run's first reply as a late one; its own may follow.
    void SetAside(const ModbusFrame::Request &request, std::optional<qint64> delayUs);
    bool HasSetAside() const { return setAside_; }

    // Record the end of the run. Answered: with its reply, whose delay may be unknown. NotAnswered: with
    // nothing that is the reply, which may still arrive. FailedOtherwise: with a bad reply or a failed
    // device.
    void Answered(const ModbusFrame::Request &request, std::optional<qint64> delayUs);
    void NotAnswered(const ModbusFrame::Request &request, qint64 nowUs, qint64 timeoutUs);
    void FailedOtherwise() { doubt_.reset(); }

private:
    // A late reply that may still arrive. Until it arrives or its time has passed, any reply that looks like
    // it may be it.
    struct OwedReply {
        ModbusFrame::Request request;
        qint64 likelyUntilUs = 0;
        qint64 possibleUntilUs = 0;
    };

    // A run received one reply, later than usual, while another was owed. Either the reply is the run's own,
    // and the sensor has become slower; or it belongs to the run before, and the sensor has become later than
    // the period. The next run decides: in the first case the delay since its own request repeats, in the
    // second the delay since the request before it. The two differ where a round starts early.
    struct Doubt {
        qint64 delayUs = 0;
        qint64 intervalUs = 0;      // from the start of the run before to the start of this run
        bool intervalIsOdd = false; // exactly one of the two was moved: the next interval differs anyway
        int silentRuns = 0;         // since this run
        int undecided = 0;          // doubtful runs before this one that decided nothing
    };

    // Returns how much worse a reply with that delay fits its own run than the run before: below 0 where it
    // is the run's own, 0 where the delay doesn't decide.
    qint64 Lateness(qint64 delayUs) const;

    std::vector<OwedReply> owed_; // in the order of the requests, which is that of the answers
    bool setAside_ = false;       // in this run
    bool isMoved_ = false;        // the run
    bool wasMoved_ = false;       // the run before
    std::optional<qint64> setAsideDelayUs_;
    std::optional<Doubt> doubt_;
    std::optional<ModbusFrame::Request> lastRequest_;
    qint64 lastStartUs_ = 0;
    qint64 intervalUs_ = 0;              // from the run before to this one, of requests that look alike
    std::optional<qint64> usualDelayUs_; // if known
};

} // namespace ztv
