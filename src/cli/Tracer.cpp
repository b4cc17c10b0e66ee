#include "cli/Tracer.h"

#include "cli/LocalTime.h"
#include "firmware/BootFrameText.h"
#include "link/LinkStatus.h"
#include "model/ParamDefines.h"

#include <array>
#include <cstddef>

namespace ztv {

namespace {

constexpr qsizetype mostBytesForPerson = 24;
constexpr qsizetype mostWordsForPerson = 8;
constexpr qsizetype timeWidth = 12;
constexpr qsizetype directionWidth = 4;
constexpr qsizetype delayWidth = 6;
constexpr qsizetype bytesWidth = 23; // of a read

struct Direction {
    const char *forPerson;
    const char *name;
};

// By LineFrame::Kind.
constexpr std::array directions = {Direction{"->", "request"}, Direction{"echo", "echo"},
                                   Direction{"late", "late"}, Direction{"<-", "reply"}};

const Direction &DirectionOf(const LineFrame &frame) {
    return directions.at(static_cast<std::size_t>(frame.kind));
}

bool IsOfMaster(const LineFrame &request) {
    return request.transaction.has_value();
}

// Whether a sensor may number its registers in another way after this write.
bool MayRenumber(const ModbusPdu::Request &request, std::optional<int> addressingMode) {
    const auto writes = [&](int tag) {
        const int index = tag - addressingMode.value_or(0) - request.address;
        return index >= 0 && index < request.quantity;
    };
    return request.function != ModbusPdu::ReadHoldingRegisters &&
           (writes(ParamDefines::ReinitCommand) || writes(ParamDefines::AddressingMode));
}

std::vector<Report::Column> Columns() {
    return {{.key = QStringLiteral("time"), .width = timeWidth},
            {.key = QStringLiteral("direction"), .width = directionWidth},
            {.key = QStringLiteral("address"), .isForText = false},
            {.key = QStringLiteral("milliseconds"), .width = delayWidth},
            {.key = QStringLiteral("bytes"), .width = bytesWidth},
            {.key = QStringLiteral("meaning")}};
}

} // namespace

void Tracer::Watch(LineTap &tap) {
    QObject::connect(&tap, &LineTap::FrameSeen, [this](const LineFrame &frame) { Take(frame); });
}

void Tracer::ThrowIfFailed() const {
    if (failure_) {
        std::rethrow_exception(failure_);
    }
}

// No exception may pass through the line's event handlers.
void Tracer::Take(const LineFrame &frame) {
    try {
        Learn(frame);
        Print(frame);
    } catch (...) {
        failure_ = failure_ ? failure_ : std::current_exception();
    }
    if (frame.kind == LineFrame::Kind::Reply) {
        request_.reset();
    }
}

void Tracer::Print(const LineFrame &frame) {
    if (failure_) {
        return;
    }
    if (!report_) {
        report_.emplace(output_.format, Columns(), output_.stream, Report::JsonLayout::Lines);
    }
    output_.person.EndProgress();
    report_->Add(RowOf(frame));
}

void Tracer::Learn(const LineFrame &frame) {
    if (frame.kind == LineFrame::Kind::Request) {
        request_ = frame;
        return;
    }
    if (frame.kind != LineFrame::Kind::Reply) {
        return;
    }
    const auto request = request_ ? FrameText::RequestOf(request_->bytes) : std::nullopt;
    if (!request || !IsOfMaster(*request_)) { // the device is gone, or the loader answers
        addressingOf_.clear();
        return;
    }
    const bool isLost = frame.status > CodeOf(LastException); // by the next reply, another sensor may answer
    const auto mode = isLost ? std::nullopt : FrameText::AddressingModeIn(*request, frame.bytes);
    if (mode) {
        addressingOf_[request->slave] = *mode;
    } else if (isLost || MayRenumber(*request, NamesFor(*request).addressingMode)) {
        addressingOf_.erase(request->slave);
    }
}

Report::Row Tracer::RowOf(const LineFrame &frame) const {
    const Direction &direction = DirectionOf(frame);
    return {CellOf(IsForPerson() ? TimeOfDay(frame.time) : IsoTime(frame.time)),
            CellOf(QString::fromLatin1(IsForPerson() ? direction.forPerson : direction.name)),
            AddressOf(frame),
            DelayOf(frame),
            CellOf(BytesOf(frame.bytes)),
            CellOf(Meaning(frame))};
}

Report::Cell Tracer::AddressOf(const LineFrame &frame) const {
    const bool isKnown = request_ && IsOfMaster(*request_) && !request_->bytes.isEmpty() &&
                         frame.kind != LineFrame::Kind::LateReply;
    return isKnown ? CellOf(static_cast<std::uint8_t>(request_->bytes.front())) : Report::Cell();
}

// The time from the request to its reply.
Report::Cell Tracer::DelayOf(const LineFrame &frame) const {
    if (frame.kind != LineFrame::Kind::Reply || !request_) {
        return {};
    }
    const std::chrono::duration<double, std::milli> delay = frame.time - request_->time;
    const QString text = QString::number(delay.count(), 'f', 1);
    return {.text = text, .value = text.toDouble()};
}

QString Tracer::BytesOf(const QByteArray &bytes) const {
    const bool isCut = IsForPerson() && bytes.size() > mostBytesForPerson;
    const QByteArray shown = isCut ? bytes.first(mostBytesForPerson) : bytes;
    const QString text = QString::fromLatin1(shown.toHex(' ').toUpper());
    return isCut ? text + QStringLiteral(" ... (%1 bytes)").arg(bytes.size()) : text;
}

QString Tracer::Meaning(const LineFrame &frame) const {
    switch (frame.kind) {
    case LineFrame::Kind::Request:
        return MeaningOfRequest(frame);
    case LineFrame::Kind::Echo:
        return QStringLiteral("the adapter's copy of the request");
    case LineFrame::Kind::LateReply:
        return QStringLiteral("reply to an earlier request");
    case LineFrame::Kind::Reply:
        return MeaningOfReply(frame);
    }
    return {};
}

QString Tracer::MeaningOfRequest(const LineFrame &frame) const {
    if (!IsOfMaster(frame)) {
        return BootFrameText::OfRequest(frame.bytes);
    }
    const auto request = FrameText::RequestOf(frame.bytes);
    return request ? FrameText::OfRequest(*request, NamesFor(*request)) : FrameText::NotUnderstood();
}

QString Tracer::MeaningOfReply(const LineFrame &frame) const {
    if (request_ && !IsOfMaster(*request_)) {
        return BootFrameText::OfReply(request_->bytes, frame.bytes, frame.status);
    }
    const auto request = request_ ? FrameText::RequestOf(request_->bytes) : std::nullopt;
    return request ? FrameText::OfReply(*request, frame.bytes, LinkStatus(frame.status), NamesFor(*request))
                   : MbaxpErrorDesc(LinkStatus(frame.status));
}

FrameText::Names Tracer::NamesFor(const ModbusPdu::Request &request) const {
    const auto found = addressingOf_.find(request.slave);
    return {.table = zentrova_,
            .addressingMode = found == addressingOf_.end() ? std::nullopt : std::optional(found->second),
            .mostWords = IsForPerson() ? mostWordsForPerson : ModbusPdu::MostReadRegisters};
}

} // namespace ztv
