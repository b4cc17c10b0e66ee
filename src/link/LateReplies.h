#pragma once

#include "link/ModbusFrame.h"

#include <QByteArray>
#include <QtGlobal>
#include <optional>
#include <vector>

// Keeps the reply to a request that timed out from being taken for the reply to the next. Pure: the caller
// tells what happens and when. Times are microseconds, of any one clock; a delay is from a request's end to
// the first byte of its reply.
class LateReplies {
public:
    // Nothing is owed, and how soon the sensor answers isn't known.
    void Clear();

    // How long the line must stay quiet before a run of that request: as long as a late reply is likely that
    // would pass for its own. A cycle has that much time between its rounds, and keeps its period, unless one
    // doubtful reply follows the other.
    qint64 QuietUntilUs(const ModbusFrame::Request &request, bool runsOnce) const;

    // Takes what has come between two runs for the late replies that it is, away from `received`.
    void TakeFrom(QByteArray &received);

    void RunBegins(qint64 nowUs);

    // A reply with that delay comes later than this sensor's usually do. `slackUs`: what the line adds. False
    // while their pace isn't known.
    bool IsUnusual(qint64 delayUs, qint64 slackUs) const;

    bool IsOwed(const ModbusFrame::Request &request) const;

    // The run's first reply counts as a late one, and its own may follow.
    void PassOver(const ModbusFrame::Request &request);
    bool HasPassedOver() const { return passedOver_; }

    // How the run ends: with its reply, of which the delay may not be known; with nothing that is the reply,
    // which may then still come; or with a reply that was no good.
    void Answered(const ModbusFrame::Request &request, std::optional<qint64> delayUs);
    void NotAnswered(const ModbusFrame::Request &request, qint64 nowUs, qint64 timeoutUs);
    void FailedOtherwise() { doubtfulRuns_ = 0; }

private:
    // Until it has come, or time has passed, a reply that looks like it may be the late one.
    struct OwedReply {
        ModbusFrame::Request request;
        qint64 likelyUntilUs = 0;
        qint64 possibleUntilUs = 0;
    };

    std::vector<OwedReply> owed_;        // in the order of the requests, in which a sensor answers
    bool passedOver_ = false;            // in this run
    int doubtfulRuns_ = 0;               // in a row, that got no reply but one that was passed over
    std::optional<qint64> usualDelayUs_; // once known
};
