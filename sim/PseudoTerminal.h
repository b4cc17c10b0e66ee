#pragma once

#include <QByteArrayView>
#include <QString>

struct termios;

namespace sim {

// The sensor's end of a serial line. Closing it hangs up the other end.
class PseudoTerminal {
public:
    PseudoTerminal() = default;
    ~PseudoTerminal() { Close(); }
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    // Opens a terminal, with a link to it unless `link` is empty. Returns a description of the error, or an
    // empty text.
    QString Open(const QString &link);
    void Close();

    bool IsOpen() const { return master_ >= 0; }
    int Descriptor() const { return master_; }
    QString Path() const { return link_.isEmpty() ? name_ : link_; }

    // Reads the settings that the other end has made.
    bool Settings(termios &settings) const;
    // Writes bytes. Bytes that the other end doesn't read in time are lost, as on a line.
    void Write(QByteArrayView bytes) const;

private:
    QString MakeLink(const QString &link);

    int master_ = -1;
    int slave_ = -1; // kept open: otherwise the master reports errors while nobody has the other end open
    QString name_;
    QString link_;
};

} // namespace sim
