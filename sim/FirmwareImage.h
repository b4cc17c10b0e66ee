#pragma once

#include <QByteArray>

#include <optional>

namespace sim {

// In hundredths; newer than the version that a simulated sensor starts with.
constexpr int upgradeVersion = 300;

// Returns bytes that look like code, always the same for a seed.
QByteArray Noise(unsigned seed, int size);

// Returns a firmware that was never run, of at least 0x100 bytes: vectors, the version at a fixed place, and
// filling.
QByteArray Application(int version, int size);
// Returns the version of such an application; none for any other content.
std::optional<int> VersionOf(const QByteArray &application);

// Returns an INHEX32 file of 16-byte records.
// REQUIRES: the bytes are below address 0x10000.
QByteArray HexFile(int address, const QByteArray &bytes);

} // namespace sim
