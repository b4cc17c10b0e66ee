#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>
#include <chrono>
#include <deque>
#include <memory>
#include <vector>

namespace ztv {

// The far end of a serial line on a pseudo terminal, which answers each request as a script says.
class ScriptedLine {
public:
    struct Chunk {
        QByteArray bytes;
        int afterMs = 0; // behind the chunk before it, or the request
    };

    ScriptedLine();
    ~ScriptedLine();
    ScriptedLine(const ScriptedLine &) = delete;
    ScriptedLine &operator=(const ScriptedLine &) = delete;

    // The device to open.
    QString Path() const { return path_; }

    // What the next request that no answer was given for gets. An empty list: nothing at all.
    void Answer(std::vector<Chunk> chunks);
    void Answer(const QByteArray &bytes) { Answer(std::vector<Chunk>{{bytes, 0}}); }
    void AnswerNothing() { Answer(std::vector<Chunk>{}); }

    // The answer for every request behind the script's end.
    void AnswerAlways(const QByteArray &bytes) { always_ = bytes; }

    // The adapter gives back what is sent through it, before any answer.
    void GiveBack(bool given) { givesBack_ = given; }

    void Send(const QByteArray &bytes);
    void HangUp();

    // What came in, a request an entry.
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
