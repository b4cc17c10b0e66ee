#include "cli/SensorLine.h"

#include "cli/Interruption.h"
#include "link/LineCodes.h"
#include "link/ParameterWord.h"
#include "model/CheckedAt.h"
#include "model/Global.h"
#include "model/LineTables.h"
#include "model/ParamDefines.h"

#include <QEventLoop>
#include <algorithm>
#include <cstddef>
#include <optional>

namespace ztv {

namespace {

constexpr std::int32_t periodMs = 1000; // of no consequence: each transaction runs once
constexpr int usualTries = 3;

// Reading these few registers takes less time than a second request.
constexpr int mostUnwanted = 8;

// After any of these the same request may mean another thing: a command acts each time, and the others change
// where the sensor, or a register, is.
bool MayBeSentOnce(std::int16_t tag) {
    return ClassZentrova::IsCommand(tag) ||
           (tag >= ParamDefines::NetworkAddress && tag <= ParamDefines::AddressingMode);
}

bool MayHelpToRepeat(LinkStatus status) {
    return status == LinkStatus::Timeout || status == LinkStatus::CrcError ||
           status == LinkStatus::UnexpectedResponse || status == LinkStatus::MissingBytes;
}

Failure FailureAt(std::int16_t address, LinkStatus status) {
    return {status <= LastException ? ExitStatus::Refused : ExitStatus::NoConnection,
            QStringLiteral("address %1: %2").arg(address).arg(MbaxpErrorDesc(status))};
}

void ThrowUnlessDone(std::int16_t address, LinkStatus status) {
    if (status != LinkStatus::NoError) {
        throw FailureAt(address, status);
    }
}

} // namespace

SensorLine::SensorLine(const Place &place, const ClassZentrova &zentrova)
    : zentrova_(zentrova),
      place_(place),
      mbaxp_([device = place.device](std::int16_t) { return device; }) {
    Open();
}

void SensorLine::Open() {
    const LineCodes codes = LineCodesOf(place_.comm.baud, place_.comm.parityStop);
    const int usual = CheckedAt(BaudTable, place_.comm.baud, "ResponseTimeoutByBaud").responseTimeoutMs;
    mbaxp_.BaudCode(codes.baud);
    mbaxp_.ParityCode(static_cast<std::int16_t>(codes.parity));
    mbaxp_.StopBitsCode(static_cast<std::int16_t>(codes.stopBits));
    mbaxp_.ResponseTimeout(
        static_cast<std::int16_t>(place_.responseTimeoutMs != 0 ? place_.responseTimeoutMs : usual));
    if (!mbaxp_.OpenPort()) {
        throw place_.portFailure();
    }
}

void SensorLine::SetLine(const CommSettings &comm) {
    const bool isOpenSo =
        mbaxp_.PortIsOpen() && place_.comm.baud == comm.baud && place_.comm.parityStop == comm.parityStop;
    place_.comm = comm;
    if (!isOpenSo) {
        mbaxp_.ClosePort();
        Open();
    }
}

SensorLine::Values SensorLine::Read(std::int16_t address, const std::vector<std::int16_t> &tags) {
    // Each time: another sensor may answer at an address by now.
    ThrowUnlessDone(address, AskAddressingMode(address, usualTries));
    Values values;
    for (const Span &span : SpansOf(tags)) {
        ThrowUnlessDone(address, ReadSpan(address, span, usualTries, values));
    }
    return values;
}

SensorLine::Values SensorLine::ReadOnce(std::int16_t address, const std::vector<std::int16_t> &tags) {
    Values values;
    ReadOnce(address, tags, values);
    return values;
}

std::vector<SensorLine::Outcome> SensorLine::ReadOnce(std::int16_t address,
                                                      const std::vector<std::int16_t> &tags, Values &values) {
    std::vector<Outcome> outcomes;
    for (const Span &span : SpansOf(tags)) {
        const LinkStatus status = ReadSpan(address, span, 1, values);
        outcomes.push_back({.status = status, .time = std::chrono::system_clock::now()});
    }
    return outcomes;
}

bool SensorLine::IsAnswered(std::int16_t address) {
    const LinkStatus status = RunRead(address, ParamDefines::AddressingMark, 1, usualTries);
    if (status > LastException && !MayHelpToRepeat(status)) {
        throw FailureAt(address, status);
    }
    return status != LinkStatus::Timeout;
}

LinkStatus SensorLine::Write(std::int16_t address, std::int16_t tag, std::int32_t raw) {
    constexpr auto transaction = LinkTransaction::SingleWrite;
    mbaxp_.DefineWriteRegister(transaction, address, tag - addressingMode_, periodMs);
    mbaxp_.RegisterValue(transaction, 0, Global::SignedFromUnsigned(raw));
    return RunWrite(address, transaction, MayBeSentOnce(tag) ? 1 : usualTries);
}

LinkStatus SensorLine::WriteAll(std::int16_t address, const Values &values) {
    constexpr auto transaction = LinkTransaction::Download;
    const std::int16_t count = zentrova_.ParamCount();
    mbaxp_.DefineWriteRegisters(transaction, address, 1 - addressingMode_, count - 1, periodMs);
    for (std::int16_t tag = 1; tag < count; ++tag) {
        const auto found = values.find(tag);
        const std::int32_t raw = found == values.end() ? 0 : found->second;
        mbaxp_.RegisterValue(transaction, tag - 1, Global::SignedFromUnsigned(raw));
    }
    return RunWrite(address, transaction, usualTries);
}

std::vector<SensorLine::Span> SensorLine::SpansOf(std::vector<std::int16_t> tags) {
    std::ranges::sort(tags);
    std::vector<Span> spans;
    for (const std::int16_t tag : tags) {
        if (!spans.empty() && tag - spans.back().last <= mostUnwanted) {
            spans.back().last = tag;
        } else {
            spans.push_back({.first = tag, .last = tag});
        }
    }
    return spans;
}

LinkStatus SensorLine::AskAddressingMode(std::int16_t address, int tries) {
    const LinkStatus status = RunRead(address, ParamDefines::AddressingMark, 1, tries);
    if (status == LinkStatus::NoError) {
        const std::int16_t mark = mbaxp_.RegisterValue(LinkTransaction::Poll, 0);
        addressingMode_ = mark == ParamDefines::NumberedLikeParameters ? 0 : 1;
    }
    return status;
}

LinkStatus SensorLine::ReadSpan(std::int16_t address, const Span &span, int tries, Values &values) {
    const LinkStatus status =
        RunRead(address, span.first - addressingMode_, span.last - span.first + 1, tries);
    for (std::int16_t tag = span.first; status == LinkStatus::NoError && tag <= span.last; ++tag) {
        values[tag] =
            ValueOfWord(zentrova_, tag, mbaxp_.RegisterValue(LinkTransaction::Poll, tag - span.first));
    }
    return status;
}

LinkStatus SensorLine::RunRead(std::int16_t address, std::int32_t start, std::int32_t quantity, int tries) {
    mbaxp_.DefineReadRegisters(LinkTransaction::Poll, address, start, quantity, periodMs);
    LinkStatus status = RunOnce(LinkTransaction::Poll);
    for (int count = 1; count < tries && MayHelpToRepeat(status); ++count) {
        status = RunOnce(LinkTransaction::Poll);
    }
    return status;
}

// A lost reply leaves open what the sensor did, whatever becomes of the repetitions. Any other end of the
// first request is the sensor's answer, or the end of the line.
LinkStatus SensorLine::RunWrite(std::int16_t address, LinkTransaction transaction, int tries) {
    LinkStatus status = RunOnce(transaction);
    if (!MayHelpToRepeat(status)) {
        ThrowUnlessDone(address, status);
    }
    for (int count = 1; count < tries && MayHelpToRepeat(status) && Interruption::Signal() == 0; ++count) {
        status = RunOnce(transaction);
    }
    return status;
}

LinkStatus SensorLine::RunOnce(LinkTransaction transaction) {
    QEventLoop loop;
    std::optional<LinkStatus> result;
    connect(&mbaxp_, &Mbaxp::TransactionDone, &loop, [&] {
        result = LinkStatus::NoError;
        loop.quit();
    });
    connect(&mbaxp_, &Mbaxp::TransactionFailed, &loop, [&](LinkTransaction, LinkStatus status) {
        result = status;
        loop.quit();
    });
    const bool reads = transaction == LinkTransaction::Poll;
    if (const Interruption *interruption = Interruption::Present(); interruption != nullptr && reads) {
        connect(interruption, &Interruption::Wanted, &loop, &QEventLoop::quit);
    }
    ThrowIfInterrupted();
    mbaxp_.TriggerOnce(transaction);
    if (!mbaxp_.TransactionBusy(transaction)) {
        return mbaxp_.LastError(); // refused, so that no event comes
    }
    while (!result) {
        loop.exec();
        if (reads) { // the outcome of a write is the caller's to report
            ThrowIfInterrupted();
        }
    }
    hasAnswered_ = hasAnswered_ || *result <= LastException;
    return *result;
}

} // namespace ztv
