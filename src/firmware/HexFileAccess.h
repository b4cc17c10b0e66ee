#pragma once

#include "firmware/BootSettings.h"

#include <cstdint>

// Converts INHEX32 files to the memory images and back, line by line. What isn't told by a code is a Fault
// (file) that names the file: one that can't be opened, created, read or written in full.
namespace HexFileAccess {

// The results of CheckHexFile. One code, -2, has a word on the upgrade console but never occurs.
constexpr std::int16_t goodFile = 1;
constexpr std::int16_t emptyFile = -1;
constexpr std::int16_t fileNotPadded = -2;
constexpr std::int16_t wrongChecksum = -3;
constexpr std::int16_t wrongCharacter = -4; // a line starts with something else than ":" or white space
constexpr std::int16_t noEndRecord = -5;
constexpr std::int16_t failure = -6; // a sum past 32767, or the file can't be read any further

// Judges the file up to its first end record, by the first fault. Makes the program folder the current one
// before, so that a relative path starts there.
std::int16_t CheckHexFile(const QString &path);

// Checks the file and, if it is good, makes all images anew from it, also with nothing. Each record gives
// whole lines of 16 bytes from the 16-byte boundary on, what it doesn't reach being 0xFF. Answers with the
// code of the check. A record of more than 240 data bytes is a Fault.
std::int16_t ImportHexFile(const BootSettings &settings, const QString &path);

// Makes the file anew from all images, with records of 16 bytes.
void ExportHexFile(const BootSettings &settings, const QString &path);

// The pair for the other device family, which has a program and an EEPROM image only.
std::int16_t ImportHexFileOfOtherFamily(const BootSettings &settings, const QString &path);
void ExportHexFileOfOtherFamily(const BootSettings &settings, const QString &path);

// True for the path of a memory image, which can't become a hex file: it is what that is made from.
bool IsMemoryImage(const BootSettings &settings, const QString &path);

// The pair that settings.DeviceFamily selects.
std::int16_t ImportForDeviceFamily(const BootSettings &settings, const QString &path);
void ExportForDeviceFamily(const BootSettings &settings, const QString &path);

} // namespace HexFileAccess
