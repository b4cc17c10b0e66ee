#include "support/Fault.h"

namespace ztv {

Fault::Fault(Kind kind, const QString &description)
    : cause_(kind),
      description_(description),
      utf8_(description.toUtf8()) {}

Fault Fault::Subscript(const QString &what) {
    return Fault(Kind::Subscript, QStringLiteral("Subscript out of range: ") + what);
}

Fault Fault::Overflow(const QString &what) {
    return Fault(Kind::Overflow, QStringLiteral("Overflow: ") + what);
}

Fault Fault::Conversion(const QString &what) {
    return Fault(Kind::Conversion, QStringLiteral("Type mismatch: ") + what);
}

Fault Fault::DivisionByZero(const QString &what) {
    return Fault(Kind::DivisionByZero, QStringLiteral("Division by zero: ") + what);
}

Fault Fault::File(const QString &fileName, const QString &reason) {
    return Fault(Kind::File, QStringLiteral("%1: %2.").arg(fileName, reason));
}

Fault Fault::DuplicateKey(const QString &what) {
    return Fault(Kind::DuplicateKey, QStringLiteral("Key is not unique: ") + what);
}

} // namespace ztv
