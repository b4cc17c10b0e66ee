#pragma once

#include <QByteArray>

#include <optional>

namespace sim {

// Two decimal places; newer than what a simulated sensor starts with.
constexpr int upgradeVersion = 300;

// Bytes that look like code, the same for the same seed.
QByteArray Noise(unsigned seed, int size);

// A firmware that never ran, of at least 0x100 bytes: vectors, the version at a fixed place, and filling.
QByteArray Application(int version, int size);
// The version that such an application carries, none for any other content.
std::optional<int> VersionOf(const QByteArray &application);

// An INHEX32 file of 16-byte records. The bytes lie below address 0x10000.
QByteArray HexFile(int address, const QByteArray &bytes);

} // namespace sim
