#pragma once

#include <cstddef>
#include <cstdint>

namespace ztv {

// The request of a transfer call. The layout is fixed; both numbers of more than a byte are little-endian.
struct TransferRecord {
    std::uint8_t Command = 0;    // a BootCommand
    std::uint8_t DataLength = 0; // data bytes of this call
    std::uint16_t reserved = 0;
    std::uint32_t Address = 0;   // in address units: the byte address divided by BytesPerAddress
    std::uint8_t BlockBytes = 0; // bytes per block of the operation
    std::uint8_t BytesPerAddress = 0;
    std::uint16_t Retries = 0; // how often the call is tried in all
};
static_assert(sizeof(TransferRecord) == 12);
static_assert(offsetof(TransferRecord, DataLength) == 1);
static_assert(offsetof(TransferRecord, Address) == 4);
static_assert(offsetof(TransferRecord, BlockBytes) == 8);
static_assert(offsetof(TransferRecord, BytesPerAddress) == 9);
static_assert(offsetof(TransferRecord, Retries) == 10);

// The first byte of each packet to the boot loader.
namespace BootCommand {

inline constexpr std::uint8_t VersionOrReset = 0; // by the second byte: 2 asks for the version, 0 resets
inline constexpr std::uint8_t ReadProgram = 1;    // also the configuration and id areas
inline constexpr std::uint8_t WriteProgram = 2;
inline constexpr std::uint8_t EraseProgram = 3;
inline constexpr std::uint8_t ReadEeprom = 4;
inline constexpr std::uint8_t WriteEeprom = 5;

} // namespace BootCommand

} // namespace ztv
