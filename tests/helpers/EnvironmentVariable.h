#pragma once

#include <QByteArray>
#include <QString>

namespace ztv {

// Sets an environment variable; the destructor restores it.
class EnvironmentVariable {
public:
    EnvironmentVariable(const char *name, const QString &value)
        : name_(name),
          wasSet_(qEnvironmentVariableIsSet(name)),
          previous_(qgetenv(name)) {
        Set(value);
    }
    ~EnvironmentVariable() {
        if (wasSet_) {
            qputenv(name_, previous_);
        } else {
            qunsetenv(name_);
        }
    }
    EnvironmentVariable(const EnvironmentVariable &) = delete;
    EnvironmentVariable &operator=(const EnvironmentVariable &) = delete;

    void Set(const QString &value) { qputenv(name_, value.toLocal8Bit()); }

private:
    const char *name_;
    bool wasSet_;
    QByteArray previous_;
};

} // namespace ztv
