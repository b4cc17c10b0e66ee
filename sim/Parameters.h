#pragma once

namespace sim::parameter {

// The parameters that have a meaning for the sensor itself.
enum Number : int {
    Save = 1,
    Reinitialise = 3,
    FirmwareVersion = 8,
    BootVersion = 9,
    TeachInput = 18,
    ExternalClock = 19,
    MinRange = 24,
    MaxRange = 25,
    NearDistance = 28,
    FarDistance = 29,
    Distance = 32,
    CoreDiameter = 33,
    MaxDiameter = 34,
    NearVoltage = 36,
    FarVoltage = 37,
    Echo = 38,
    OutputMode = 39,
    ManualOutput = 40,
    OutputVoltage = 46,
    AnalogInput = 48,
    RelayForced = 54,
    RelayOn = 56,
    RelayOff = 58,
    RelayState = 60,
    Address = 65,
    Baud = 66,
    Parity = 67,
    Addressing = 68,
};

} // namespace sim::parameter
