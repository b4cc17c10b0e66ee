#pragma once

#include <QString>

#include <optional>

namespace sim {

// Parse values as typed on the command line and in commands.
std::optional<int> WholeNumber(const QString &text, int min, int max);
// "0x800" or "2048".
std::optional<int> HexNumber(const QString &text, int max);
std::optional<double> Probability(const QString &text);
std::optional<bool> OnOff(const QString &text);
// "12.5" gives 1250.
std::optional<int> Hundredths(const QString &text, int max);

} // namespace sim
