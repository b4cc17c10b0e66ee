#pragma once

#include <cstdint>

namespace ztv {

// The parameter numbers that the program itself uses. All other rows are described by the presets alone.
namespace ParamDefines {

inline constexpr std::int16_t SaveCommand = 1;
inline constexpr std::int16_t ReinitCommand = 3;
inline constexpr std::int16_t ProcessorId = 6;
inline constexpr std::int16_t ProcessorRevision = 7;
inline constexpr std::int16_t FirmwareVersion = 8;
inline constexpr std::int16_t BootVersion = 9;
inline constexpr std::int16_t BoardRevision = 11;
inline constexpr std::int16_t ParameterCount = 12;
inline constexpr std::int16_t TeachInput = 18;
inline constexpr std::int16_t ExternalClockInput = 19;
inline constexpr std::int16_t ClockSelect = 20;
inline constexpr std::int16_t TransmitDelayLow = 21;
inline constexpr std::int16_t TransmitDelayHigh = 22;
inline constexpr std::int16_t ClockOut = 23;
inline constexpr std::int16_t MinRange = 24;
inline constexpr std::int16_t MaxRange = 25;
inline constexpr std::int16_t NearDistance = 28;
inline constexpr std::int16_t FarDistance = 29;
inline constexpr std::int16_t ActualDistance = 32;
inline constexpr std::int16_t CoreDiameter = 33;
inline constexpr std::int16_t MaxDiameter = 34;
inline constexpr std::int16_t NearVoltage = 36;
inline constexpr std::int16_t FarVoltage = 37;
inline constexpr std::int16_t EchoReceived = 38;
inline constexpr std::int16_t AnalogOutputMode = 39;
inline constexpr std::int16_t ManualOutput = 40;
inline constexpr std::int16_t OutputVoltage = 46;
inline constexpr std::int16_t AnalogInputVoltage = 48;
inline constexpr std::int16_t Relay1Output = 54; // relay 2: the next number
inline constexpr std::int16_t Relay1OnThreshold = 56;
inline constexpr std::int16_t Relay2OnThreshold = 57;
inline constexpr std::int16_t Relay1OffThreshold = 58;
inline constexpr std::int16_t Relay2OffThreshold = 59;
inline constexpr std::int16_t Relay1State = 60; // relay 2: the next number
inline constexpr std::int16_t NetworkAddress = 65;
inline constexpr std::int16_t BaudRateCode = 66;
inline constexpr std::int16_t ParityStopCode = 67;
inline constexpr std::int16_t AddressingMode = 68;
inline constexpr std::int16_t FirstRawOutput = 81; // raw values of the output stage
inline constexpr std::int16_t LastRawOutput = 90;

// Values with a special meaning.
inline constexpr std::int32_t NoCommand = 0;        // of SaveCommand and ReinitCommand
inline constexpr std::int32_t StoreSettings = 1;    // of SaveCommand
inline constexpr std::int32_t FactoryDefaults = 1;  // of ReinitCommand
inline constexpr std::int32_t EnterBootLoader = 99; // of ReinitCommand
inline constexpr std::int32_t EchoPresent = 1;      // of EchoReceived
inline constexpr std::int32_t ManualMode = 0;       // of AnalogOutputMode
inline constexpr std::int32_t LinearMode = 1;       // of AnalogOutputMode
inline constexpr std::int32_t HyperbolicMode = 2;   // of AnalogOutputMode

} // namespace ParamDefines

} // namespace ztv
