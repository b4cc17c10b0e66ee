#pragma once

#include <QString>
#include <QTemporaryDir>

namespace sim {

namespace test {

// A small presets database in a temporary folder.
class TestPresets {
public:
    static constexpr int count = 91;
    static constexpr int marker = 0x5555;

    TestPresets();
    QString Path() const;
    QString Folder() const { return folder_.path(); }
    // Runs SQL on the database.
    void Change(const char *sql) const;

private:
    QTemporaryDir folder_;
};

} // namespace test

} // namespace sim
