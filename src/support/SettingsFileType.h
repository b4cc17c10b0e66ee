#pragma once

#include "support/ApplicationTitle.h"

#include <QString>
#include <cstdint>

namespace ztv {

// The type of the settings files.
namespace SettingsFileType {

// The application_id of the database that a settings file is: "ZTV1". It identifies the type of a file
// whatever its name.
inline constexpr std::int32_t ApplicationId = 0x5A545631;

inline QString Extension() {
    return QStringLiteral(".ztv");
}
inline QString ClassName() {
    return ApplicationTitle();
}
inline QString Description() {
    return QStringLiteral("Zentrova File");
}
inline QString MimeType() {
    return QStringLiteral("application/x-ztv-link-settings");
}

} // namespace SettingsFileType

} // namespace ztv
