#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>
#include <chrono>
#include <deque>
#include <memory>
#include <vector>

namespace ztv {

// The far end of a serial line on a pseudo terminal; answers each request by a script.
class ScriptedLine {
public:
    struct Chunk {
        QByteArray bytes;
        int afterMs = 0; // after the previous chunk, or after the request
    };

    ScriptedLine();
    ~ScriptedLine();
    ScriptedLine(const ScriptedLine &) = delete;
    ScriptedLine &operator=(const ScriptedLine &) = delete;

    // The device to open.
    QString Path() const { return path_; }

    // Adds the answer for the next request without one. An empty list: no answer.
    void Answer(std::vector<Chunk> chunks);
    void Answer(const QByteArray &bytes) { Answer(std::vector<Chunk>{{bytes, 0}}); }
    void AnswerNothing() { Answer(std::vector<Chunk>{}); }

    // Sets the answer for every request after the script's end.
    void AnswerAlways(const QByteArray &bytes) { always_ = bytes; }

    // Simulates an adapter with a local echo, which precedes any answer.
    void GiveBack(bool given) { givesBack_ = given; }

    void Send(const QByteArray &bytes);
    void HangUp();

    // The received requests, one an entry.
    const std::vector<QByteArray> &Requests() const { return requests_; }
    const std::vector<std::chrono::steady_clock::time_point> &Times() const { return times_; }

private:
    void OnReadable();

    int master_ = -1;
    int slave_ = -1;
    QString path_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::deque<std::vector<Chunk>> script_;
    QByteArray always_;
    bool givesBack_ = false;
    std::vector<QByteArray> requests_;
    std::vector<std::chrono::steady_clock::time_point> times_;
};

} // namespace ztv
