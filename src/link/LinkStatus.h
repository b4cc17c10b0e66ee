#pragma once

#include <QString>
#include <cstdint>

namespace ztv {

// The master's status codes that the program itself uses. 1 to 7 are Modbus exception codes, passed through
// unchanged.
namespace LinkStatus {

inline constexpr std::int16_t NoError = 0;
inline constexpr std::int16_t LastException = 7;
inline constexpr std::int16_t Timeout = 10;
inline constexpr std::int16_t CrcError = 11;
inline constexpr std::int16_t UnexpectedResponse = 12;
inline constexpr std::int16_t MissingBytes = 13;
inline constexpr std::int16_t WriteError = 14;
inline constexpr std::int16_t ReadError = 15;
inline constexpr std::int16_t HandleError = 20;
inline constexpr std::int16_t IndexError = 22;
inline constexpr std::int16_t DataNotInitialized = 23;
inline constexpr std::int16_t BaudRateRefused = 42;
inline constexpr std::int16_t ParityRefused = 43;
inline constexpr std::int16_t StopBitsRefused = 44;
inline constexpr std::int16_t DataBitsRefused = 45;
inline constexpr std::int16_t ProtocolModeRefused = 46;
inline constexpr std::int16_t OpenFailed = 47;
inline constexpr std::int16_t AlreadyOpen = 48;

// The session's own: nothing was sent, since another sensor answers on the port.
inline constexpr std::int16_t AnotherSensor = -1;

// True for the status of an adapter that is present but refuses a setting.
constexpr bool IsRefusedSetting(std::int16_t status) {
    return status >= BaudRateRefused && status <= DataBitsRefused;
}

} // namespace LinkStatus

// The text of a status code; empty for a code that has none.
QString MbaxpErrorDesc(std::int16_t code);

} // namespace ztv
