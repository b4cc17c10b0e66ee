#pragma once

#include <cstdint>

namespace ztv {

// The direction of a connect.
enum class ConnectChoice : std::int16_t { Read = 0, Write = 1, Cancel = 2 };

// Whether a connect asks the user for its direction.
enum class ConnectPrompt : std::int16_t { Ask = 0, Skip = 1 };

} // namespace ztv
