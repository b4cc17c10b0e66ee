#pragma once

#include "firmware/BootSettings.h"

#include <cstdint>

namespace ztv {

// Converts INHEX32 files to the memory images and back, line by line. An error without a code is a Fault
// (file) that names the file: one that can't be opened, created, read or written in full.
namespace HexFileAccess {

// The results of CheckHexFile. The upgrade console has a word for one code, -2, that never occurs.
constexpr std::int16_t goodFile = 1;
constexpr std::int16_t emptyFile = -1;
constexpr std::int16_t fileNotPadded = -2;
constexpr std::int16_t wrongChecksum = -3;
constexpr std::int16_t wrongCharacter = -4; // a line starts with another character than ":" or white space
constexpr std::int16_t noEndRecord = -5;
constexpr std::int16_t failure = -6; // a sum past 32767, or the file can't be read any further

// Validates the file up to its first end record. Returns goodFile or the first error. First makes the program
// folder the current one, so that a relative path starts there.
std::int16_t CheckHexFile(const QString &path);

// Checks the file and, if it is good, replaces all images, also with empty ones. Each record gives whole
// lines of 16 bytes that start at a 16-byte boundary; bytes outside the record are 0xFF. Returns the code of
// the check. A record of more than 240 data bytes is a Fault.
std::int16_t ImportHexFile(const BootSettings &settings, const QString &path);

// Replaces the file with the content of all images, in records of 16 bytes.
void ExportHexFile(const BootSettings &settings, const QString &path);

// Import and export for the other device family, which has a program and an EEPROM image only.
std::int16_t ImportHexFileOfOtherFamily(const BootSettings &settings, const QString &path);
void ExportHexFileOfOtherFamily(const BootSettings &settings, const QString &path);

// Returns true for the path of a memory image, which can't be the target of an export: the export reads it.
bool IsMemoryImage(const BootSettings &settings, const QString &path);

// Import and export for the family that settings.DeviceFamily selects.
std::int16_t ImportForDeviceFamily(const BootSettings &settings, const QString &path);
void ExportForDeviceFamily(const BootSettings &settings, const QString &path);

} // namespace HexFileAccess

} // namespace ztv
