#include "cli/AddressList.h"

#include "cli/Failure.h"

#include <QRegularExpression>
#include <QStringList>
#include <algorithm>

namespace ztv {

namespace {

constexpr int lowestAddress = 1;
constexpr int highestAddress = 247;

Failure NoAddress(const QString &text) {
    return {
        ExitStatus::WrongUse,
        QStringLiteral("\"%1\" is no address; use a number from %2 to %3, a list (1,5,9) or a range (1-10)")
            .arg(text, QString::number(lowestAddress), QString::number(highestAddress))};
}

} // namespace

std::vector<std::int16_t> AddressesOf(const QString &text) {
    static const QRegularExpression range(QStringLiteral("^(\\d{1,3})(?:-(\\d{1,3}))?$"));
    std::vector<std::int16_t> addresses;
    for (const QString &part : text.split(u',')) {
        const QRegularExpressionMatch match = range.match(part.trimmed());
        const int first = match.captured(1).toInt();
        const int last = match.captured(2).isEmpty() ? first : match.captured(2).toInt();
        if (!match.hasMatch() || first < lowestAddress || last > highestAddress || first > last) {
            throw NoAddress(text);
        }
        for (int address = first; address <= last; ++address) {
            if (std::ranges::find(addresses, address) == addresses.end()) {
                addresses.push_back(static_cast<std::int16_t>(address));
            }
        }
    }
    return addresses;
}

} // namespace ztv
