#include "link/LinkStatus.h"

#include <algorithm>
#include <array>

namespace ztv {

namespace {

struct StatusText {
    LinkStatus status;
    const char *text;
};

constexpr std::array statusTexts = {
    StatusText{LinkStatus::NoError, "No Error"},
    StatusText{LinkStatus::IllegalFunction, "Illegal Function"},
    StatusText{LinkStatus::IllegalDataAddress, "Illegal Data Address"},
    StatusText{LinkStatus::SlaveDeviceFailure, "Slave Device Failure"},
    StatusText{LinkStatus::Acknowledge, "Acknowledge"},
    StatusText{LinkStatus::SlaveDeviceBusy, "Slave Device Busy"},
    StatusText{LinkStatus::NegativeAcknowledge, "Negative Acknowledge"},
    StatusText{LinkStatus::MemoryParityError, "Memory Parity Error"},
    StatusText{LinkStatus::Timeout, "Timeout"},
    StatusText{LinkStatus::CrcError, "CRC Error"},
    StatusText{LinkStatus::UnexpectedResponse, "Not the expected response received"},
    StatusText{LinkStatus::MissingBytes, "Expected amount of bytes not received"},
    StatusText{LinkStatus::WriteError, "Write error"},
    StatusText{LinkStatus::ReadError, "Read Error"},
    StatusText{LinkStatus::HandleError, "Handle Error"},
    StatusText{LinkStatus::Reserved, "Reserved"},
    StatusText{LinkStatus::IndexError, "Index Error"},
    StatusText{LinkStatus::DataNotInitialized, "Data Not initialized"},
    StatusText{LinkStatus::WsaStartupFailed, "WSA Startup error"},
    StatusText{LinkStatus::TcpIpConnectionFailed, "TCP/IP Conection failed"}, // Deliberate: spelled so
    StatusText{LinkStatus::IpAddressRefused, "Set IP Address error"},
    StatusText{LinkStatus::TimeoutRefused, "Set timeout error"},
    StatusText{LinkStatus::ConnectionRefused, "Set connection error"},
    StatusText{LinkStatus::BaudRateRefused, "Set baud rate error"},
    StatusText{LinkStatus::ParityRefused, "Set parity error"},
    StatusText{LinkStatus::StopBitsRefused, "Set stop bits error"},
    StatusText{LinkStatus::DataBitsRefused, "Set data bits error"},
    StatusText{LinkStatus::ProtocolModeRefused, "Set protocol mode error"},
    StatusText{LinkStatus::OpenFailed,
               "The com port could not be opened.  The port does not exist or is in use by another "
               "application."},
    StatusText{LinkStatus::AlreadyOpen, "Connection already open"},
};

} // namespace

QString MbaxpErrorDesc(LinkStatus status) {
    const auto found = std::find_if(statusTexts.begin(), statusTexts.end(),
                                    [status](const StatusText &row) { return row.status == status; });
    return found == statusTexts.end() ? QString() : QString::fromLatin1(found->text);
}

} // namespace ztv
