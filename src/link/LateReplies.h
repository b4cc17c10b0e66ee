#pragma once

#include "link/ModbusFrame.h"

#include <QByteArray>
#include <QtGlobal>
#include <optional>
#include <vector>

// Keeps the reply to a request that timed out from being taken for the reply to the next. Pure: the caller
// reports what happens and when. Times are microseconds of any one clock; a delay is from the end of a
// request to the first byte of its reply.
class LateReplies {
public:
    // A round of a cycle that follows a doubtful one starts this much early; see Doubt.
    static constexpr qint64 MovedByUs = 40'000;

    // Nothing is owed, and how soon the sensor answers isn't known.
    void Clear();

    // Earliest time at which a one-shot `request` may be sent without a late reply being mistaken for its
    // own. A cycle never waits: it keeps its period, and its doubtful replies are told apart by their times.
    qint64 QuietUntilUs(const ModbusFrame::Request &request) const;

    // The next round of a cycle is to start MovedByUs early, so that its reply resolves the doubt.
    bool WantsMovedRound() const { return doubt_ && doubt_->silentRuns == 0 && !doubt_->intervalIsOdd; }

    // Removes late replies that arrived between two runs from `received`; they are no longer owed.
    void TakeFrom(QByteArray &received);

    // A run starts. `moved`: it is a round that starts early.
    void RunBegins(const ModbusFrame::Request &request, qint64 nowUs, bool moved = false);

    bool IsOwed(const ModbusFrame::Request &request) const;

    // The run's first reply, with that delay if it is known, is its own unless another one follows it. False
    // where it is more likely late. `slackUs`: what the line adds to a delay.
    // REQUIRES: IsOwed.
    bool IsLikelyOwn(std::optional<qint64> delayUs, qint64 slackUs) const;

    // Counts the run's first reply as a late one; its own may follow.
    void SetAside(const ModbusFrame::Request &request, std::optional<qint64> delayUs);
    bool HasSetAside() const { return setAside_; }

    // How the run ends: with its reply, of which the delay may not be known; with nothing that is the reply,
    // which may then still come; or with a reply that was no good.
    void Answered(const ModbusFrame::Request &request, std::optional<qint64> delayUs);
    void NotAnswered(const ModbusFrame::Request &request, qint64 nowUs, qint64 timeoutUs);
    void FailedOtherwise() { doubt_.reset(); }

private:
    // A reply that looks like it may be the late one until it has come or time has passed.
    struct OwedReply {
        ModbusFrame::Request request;
        qint64 likelyUntilUs = 0;
        qint64 possibleUntilUs = 0;
    };

    // A run got one reply, later than usual, while another was owed. It was the run's own from a sensor that
    // has become slower, or that of the run before from a sensor that has become later than the period. The
    // next run tells: its delay repeats itself in the first case, in the second the time since the run before
    // it does. With a round that starts early the two differ.
    struct Doubt {
        qint64 delayUs = 0;
        qint64 intervalUs = 0;      // from the start of the run before to that of the run
        bool intervalIsOdd = false; // one of the two was moved: the next interval differs by itself
        int silentRuns = 0;         // since then
        int undecided = 0;          // doubtful runs before it that told nothing
    };

    // How much worse a reply with that delay fits its own run than the run before: below 0 it is the run's
    // own, 0 where it can't be told.
    qint64 Lateness(qint64 delayUs) const;

    std::vector<OwedReply> owed_; // in the order of the requests, in which a sensor answers
    bool setAside_ = false;       // in this run
    bool isMoved_ = false;        // the run
    bool wasMoved_ = false;       // the run before
    std::optional<qint64> setAsideDelayUs_;
    std::optional<Doubt> doubt_;
    std::optional<ModbusFrame::Request> lastRequest_;
    qint64 lastStartUs_ = 0;
    qint64 intervalUs_ = 0;              // from the run before to this one, of requests that look alike
    std::optional<qint64> usualDelayUs_; // once known
};
