#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <vector>

namespace sim {

// A payload as it travels: two start marks, the payload and its checksum with their marks escaped, an end
// mark.
QByteArray BootFrame(const QByteArray &payload);

struct HeardFrame {
    QByteArray payload;
    qsizetype size = 0; // bytes on the line, marks and escapes included
};

// Finds the good frames in the bytes of a line, however they are cut. Everything else is dropped without a
// word. Two start marks always begin a new frame: inside a good one a mark never stands next to another.
class BootFrameReader {
public:
    // The loader's buffer: a frame with more bytes, its checksum included, is dropped.
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
