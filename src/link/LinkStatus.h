#pragma once

#include <QString>
#include <cstdint>

namespace ztv {

// The outcome of a transaction or of a call of the master.
enum class LinkStatus : std::int16_t {
    AnotherSensor = -1, // the session's own: nothing was sent, since another sensor answers on the port
    NoError = 0,

    // Modbus exception codes, passed through unchanged.
    IllegalFunction = 1,
    IllegalDataAddress = 2,
    SlaveDeviceFailure = 3,
    Acknowledge = 4,
    SlaveDeviceBusy = 5,
    NegativeAcknowledge = 6,
    MemoryParityError = 7,

    Timeout = 10,
    CrcError = 11,
    UnexpectedResponse = 12,
    MissingBytes = 13,
    WriteError = 14,
    ReadError = 15,
    HandleError = 20,
    Reserved = 21,
    IndexError = 22,
    DataNotInitialized = 23,
    WsaStartupFailed = 30,
    TcpIpConnectionFailed = 31,
    IpAddressRefused = 32,
    TimeoutRefused = 40,
    ConnectionRefused = 41,
    BaudRateRefused = 42,
    ParityRefused = 43,
    StopBitsRefused = 44,
    DataBitsRefused = 45,
    ProtocolModeRefused = 46,
    OpenFailed = 47,
    AlreadyOpen = 48
};

constexpr LinkStatus LastException = LinkStatus::MemoryParityError;

// The number that the user is shown.
constexpr std::int16_t CodeOf(LinkStatus status) {
    return static_cast<std::int16_t>(status);
}

// True for the status of an adapter that is present but refuses a setting.
constexpr bool IsRefusedSetting(LinkStatus status) {
    return status >= LinkStatus::BaudRateRefused && status <= LinkStatus::DataBitsRefused;
}

// The text of a status; empty for a number that has none.
QString MbaxpErrorDesc(LinkStatus status);

} // namespace ztv
