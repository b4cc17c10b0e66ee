#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <vector>

namespace sim {

// Returns the frame of a payload: two start marks, the payload and its checksum with their marks escaped, an
// end mark.
QByteArray BootFrame(const QByteArray &payload);

struct HeardFrame {
    QByteArray payload;
    qsizetype size = 0; // bytes on the line, marks and escapes included
};

// Finds the good frames in the bytes of a line, however the bytes are split. Drops everything else silently.
// Two start marks always begin a new frame: inside a good frame a mark is never next to another one.
class BootFrameReader {
public:
    // The size of the loader's buffer. A frame with more bytes, checksum included, is dropped.
    static constexpr qsizetype longest = 256;

    std::vector<HeardFrame> Append(QByteArrayView bytes);
    void Discard();

private:
    bool Take(quint8 byte);

    QByteArray payload_;
    qsizetype size_ = 0;
    bool inside_ = false;
    bool escaped_ = false;
    bool afterMark_ = false;
};

} // namespace sim
