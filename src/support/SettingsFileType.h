#pragma once

#include <cstdint>

// What the desktop and the program know the files of settings by.
namespace SettingsFileType {

inline constexpr std::int32_t ApplicationId = 0x5A545631; // "ZTV1", in the header of the database

} // namespace SettingsFileType
