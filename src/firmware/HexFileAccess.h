#pragma once

#include "firmware/BootSettings.h"

#include <cstdint>

namespace ztv {

// Converts INHEX32 files to the memory images and back, line by line. An error without a code is a Fault
// (file) that names the file: one that can't be opened, created, read or written in full.
namespace HexFileAccess {

// The result of CheckHexFile.
enum class Result : std::int16_t {
    Good = 1,
    Empty = -1,
    NotPadded = -2, // Deliberate: never occurs, although the upgrade console has a word for it
    WrongChecksum = -3,
    WrongCharacter = -4, // a line starts with another character than ":" or white space
    NoEndRecord = -5,
    Failed = -6 // a sum past 32767, or the file can't be read any further
};

// Validates the file up to its first end record. Returns Good or the first error.
Result CheckContent(const QString &path);

// The same, but first makes the program folder the current one, so that a relative path starts there.
Result CheckHexFile(const QString &path);

// Checks the file and, if it is good, replaces all images, also with empty ones. Each record gives whole
// lines of 16 bytes that start at a 16-byte boundary; bytes outside the record are 0xFF. Returns the result
// of the check. A record of more than 240 data bytes is a Fault.
Result ImportHexFile(const BootSettings &settings, const QString &path);

// Replaces the file with the content of all images, in records of 16 bytes.
void ExportHexFile(const BootSettings &settings, const QString &path);

// Import and export for the other device family, which has a program and an EEPROM image only.
Result ImportHexFileOfOtherFamily(const BootSettings &settings, const QString &path);
void ExportHexFileOfOtherFamily(const BootSettings &settings, const QString &path);

// Returns true for the path of a memory image, which can't be the target of an export: the export reads it.
bool IsMemoryImage(const BootSettings &settings, const QString &path);

// Import and export for the family that settings.DeviceFamily selects.
Result ImportForDeviceFamily(const BootSettings &settings, const QString &path);
void ExportForDeviceFamily(const BootSettings &settings, const QString &path);

} // namespace HexFileAccess

} // namespace ztv
