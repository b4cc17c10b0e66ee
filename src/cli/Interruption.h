#pragma once

#include <QObject>
#include <exception>

namespace ztv {

// The signals by which a person or a script ends the program early, as an event of the event loop. There is
// one at most in a process. A second signal ends the process at once.
class Interruption : public QObject {
    Q_OBJECT

public:
    Interruption();
    ~Interruption() override;
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    // Returns the process's one; null where there is none.
    static Interruption *Present();

    // Returns the signal that came; 0 if none did.
    static int Signal();

Q_SIGNALS:
    void Wanted();

private:
    friend class ConsoleHandler;

    void Take();
};

// Ends a command whose work a signal interrupted.
class Interrupted : public std::exception {
public:
    const char *what() const noexcept override { return "interrupted"; }
};

// Throws Interrupted if a signal has come.
inline void ThrowIfInterrupted() {
    if (Interruption::Signal() != 0) {
        throw Interrupted();
    }
}

} // namespace ztv
