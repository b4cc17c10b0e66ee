#pragma once

#include <QString>
#include <exception>

namespace ztv {

// A run-time fault: an error that ends the program with its description unless a caller handles it (see
// shell/Application).
class Fault : public std::exception {
public:
    enum class Kind { Subscript, Overflow, Conversion, DivisionByZero, DuplicateKey, Database, File };

    Fault(Kind kind, const QString &description);

    Kind Cause() const { return cause_; }
    const QString &Description() const { return description_; }
    const char *what() const noexcept override { return utf8_.constData(); }

    static Fault Subscript(const QString &what);
    static Fault Overflow(const QString &what);
    static Fault Conversion(const QString &what);
    static Fault DivisionByZero(const QString &what);
    static Fault DuplicateKey(const QString &what);
    static Fault File(const QString &fileName, const QString &reason); // the reason without its full stop

private:
    Kind cause_;
    QString description_;
    QByteArray utf8_;
};

} // namespace ztv
