#include "firmware/HexDigits.h"

namespace ztv {

QString HexDigits(std::int32_t value, int width) {
    const QString digits = QString::number(static_cast<std::uint32_t>(value), 16).toUpper();
    if (digits.size() <= width) {
        return digits.rightJustified(width, u'0');
    }
    return digits.mid(digits.size() - width - 1, width);
}

} // namespace ztv
