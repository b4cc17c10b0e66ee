#pragma once

#include "cli/Console.h"
#include "cli/Report.h"
#include "link/FrameText.h"
#include "link/LineTap.h"
#include "link/ModbusPdu.h"
#include "model/ClassZentrova.h"

#include <QByteArray>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <map>
#include <optional>

namespace ztv {

// Prints each frame on a line, decoded, with its time. A register is named only when the sensor has said on
// this line how it numbers its registers.
class Tracer {
public:
    struct Output {
        std::FILE *stream;
        ReportFormat format;
        Console &person; // whose progress stands in the way
    };

    // REQUIRES: `zentrova`, which names the parameters, and the output outlive this.
    Tracer(const ClassZentrova &zentrova, const Output &output) : zentrova_(zentrova), output_(output) {}

    // Prints the frames of a line from now on. REQUIRES: the line is closed before this ends.
    void Watch(LineTap &tap);

    // Throws what kept a frame from being printed. Nothing was printed since.
    void ThrowIfFailed() const;

private:
    using Time = std::chrono::system_clock::time_point;

    void Take(const LineFrame &frame);
    void Print(const LineFrame &frame);
    void Learn(const LineFrame &frame);
    QString Meaning(const LineFrame &frame) const;
    QString MeaningOfRequest(const LineFrame &frame) const;
    QString MeaningOfReply(const LineFrame &frame) const;
    FrameText::Names NamesFor(const ModbusPdu::Request &request) const;
    Report::Row RowOf(const LineFrame &frame) const;
    Report::Cell AddressOf(const LineFrame &frame) const;
    Report::Cell DelayOf(const LineFrame &frame) const;
    QString BytesOf(const QByteArray &bytes) const;
    bool IsForPerson() const { return output_.format == ReportFormat::Text; }

    const ClassZentrova &zentrova_;
    Output output_;
    std::optional<Report> report_;             // begins with the first frame
    std::optional<LineFrame> request_;         // that waits for its reply
    std::map<std::uint8_t, int> addressingOf_; // by slave, as seen on the line
    std::exception_ptr failure_;
};

} // namespace ztv
