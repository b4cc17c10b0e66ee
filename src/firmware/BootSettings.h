#pragma once

#include <QString>
#include <cstdint>

namespace ztv {

// The settings of the boot link: one record for the whole program, reset each time the upgrade console opens.
struct BootSettings {
    std::int32_t PortHandle = 0; // greater than 0: the port is open
    std::int32_t BitRate = 38400;
    QString PortName; // "COM" and the port's number
    std::int32_t TimeoutMs = 1000;
    std::uint8_t MaxPacketBytes = 128; // most bytes in one ReadPIC
    std::uint16_t Retries = 3;
    std::uint8_t DeviceMode = 0;
    std::uint8_t DeviceFamily = 1; // selects the pair of hex conversions
    QString DeviceName = QStringLiteral("PIC18F2525");
    QString DeviceCode = QStringLiteral("102");
    std::uint8_t WriteBlockBytes = 8;
    std::uint8_t WordBytes = 1;
    std::uint8_t EraseBlockBytes = 64;
    std::uint8_t AddressBytes = 1; // bytes per address unit
    std::int32_t SpareCount = 0;

    // Device addresses, the last one included. The boot block is below ProgramStart.
    std::int32_t ProgramStart = 0x000800;
    std::int32_t ProgramEnd = 0x00BFFF;
    std::int32_t EepromStart = 0x000000;
    std::int32_t EepromEnd = 0x0003FF;
    std::int32_t ConfigStart = 0x300000;
    std::int32_t ConfigEnd = 0x30000F;
    std::int32_t UserIdStart = 0x200000;
    std::int32_t UserIdEnd = 0x20000F;

    std::uint8_t ContinueFlag = 0; // 0 aborts the running loop

    // Full paths of the memory images, and of the list of lines that failed verification.
    QString ProgramFile;
    QString EepromFile;
    QString UserIdFile;
    QString ConfigFile;
    QString ErrorFile;
    QString HexInputPath;  // the last file imported
    QString HexOutputPath; // the last file exported
    QString EditorCommand = QStringLiteral("notepad.exe");
};

} // namespace ztv
