#include "cli/SensorLine.h"

#include "cli/Failure.h"
#include "link/LineCodes.h"
#include "link/ParameterWord.h"
#include "link/SerialPorts.h"
#include "model/CheckedAt.h"
#include "model/LineTables.h"
#include "model/ParamDefines.h"

#include <QEventLoop>
#include <algorithm>
#include <cstddef>

namespace ztv {

namespace {

constexpr auto transaction = LinkTransaction::Poll;
constexpr std::int32_t periodMs = 1000; // of no consequence: each read runs once
constexpr int tries = 3;

// Reading these few registers takes less time than a second request.
constexpr int mostUnwanted = 8;

bool MayHelpToRepeat(LinkStatus status) {
    return status == LinkStatus::Timeout || status == LinkStatus::CrcError ||
           status == LinkStatus::UnexpectedResponse || status == LinkStatus::MissingBytes;
}

} // namespace

SensorLine::SensorLine(const Place &place, const ClassZentrova &zentrova)
    : zentrova_(zentrova),
      mbaxp_([device = place.device](std::int16_t) { return device; }) {
    const LineCodes codes = LineCodesOf(place.comm.baud, place.comm.parityStop);
    const int usual = CheckedAt(BaudTable, place.comm.baud, "ResponseTimeoutByBaud").responseTimeoutMs;
    mbaxp_.BaudCode(codes.baud);
    mbaxp_.ParityCode(static_cast<std::int16_t>(codes.parity));
    mbaxp_.StopBitsCode(static_cast<std::int16_t>(codes.stopBits));
    mbaxp_.ResponseTimeout(
        static_cast<std::int16_t>(place.responseTimeoutMs != 0 ? place.responseTimeoutMs : usual));
    if (!mbaxp_.OpenPort()) {
        const QString advice = SerialPorts::PermissionAdvice(place.device).simplified();
        throw Failure(ExitStatus::NoConnection,
                      QStringLiteral("%1: %2 %3")
                          .arg(place.device, MbaxpErrorDesc(mbaxp_.LastError()), advice)
                          .trimmed());
    }
}

SensorLine::Values SensorLine::Read(std::int16_t address, const std::vector<std::int16_t> &tags) {
    std::vector<std::int16_t> wanted = tags;
    std::ranges::sort(wanted);
    FindAddressingMode(address);
    Values values;
    for (std::size_t begin = 0; begin < wanted.size();) {
        std::size_t end = begin + 1;
        while (end < wanted.size() && wanted[end] - wanted[end - 1] <= mostUnwanted) {
            ++end;
        }
        ReadSpan(address, wanted[begin], wanted[end - 1], values);
        begin = end;
    }
    return values;
}

// Asks each time: another sensor may answer at an address by now.
void SensorLine::FindAddressingMode(std::int16_t address) {
    Run(address, ParamDefines::AddressingMark, 1);
    addressingMode_ = mbaxp_.RegisterValue(transaction, 0) == ParamDefines::NumberedLikeParameters ? 0 : 1;
}

void SensorLine::ReadSpan(std::int16_t address, std::int16_t first, std::int16_t last, Values &values) {
    Run(address, first - addressingMode_, last - first + 1);
    for (std::int16_t tag = first; tag <= last; ++tag) {
        values[tag] = ValueOfWord(zentrova_, tag, mbaxp_.RegisterValue(transaction, tag - first));
    }
}

void SensorLine::Run(std::int16_t address, std::int32_t start, std::int32_t quantity) {
    mbaxp_.DefineReadRegisters(transaction, address, start, quantity, periodMs);
    LinkStatus status = RunOnce();
    for (int count = 1; count < tries && MayHelpToRepeat(status); ++count) {
        status = RunOnce();
    }
    if (status != LinkStatus::NoError) {
        throw Failure(status <= LastException ? ExitStatus::Refused : ExitStatus::NoConnection,
                      QStringLiteral("address %1: %2").arg(address).arg(MbaxpErrorDesc(status)));
    }
}

LinkStatus SensorLine::RunOnce() {
    QEventLoop loop;
    LinkStatus result = LinkStatus::NoError;
    connect(&mbaxp_, &Mbaxp::TransactionDone, &loop, &QEventLoop::quit);
    connect(&mbaxp_, &Mbaxp::TransactionFailed, &loop, [&](LinkTransaction, LinkStatus status) {
        result = status;
        loop.quit();
    });
    mbaxp_.TriggerOnce(transaction);
    if (!mbaxp_.TransactionBusy(transaction)) {
        return mbaxp_.LastError(); // refused, so that no event comes
    }
    loop.exec();
    return result;
}

} // namespace ztv
