#pragma once

#include <QDateTime>
#include <QFileDevice>
#include <QString>

namespace ztv {

// The firmware file of an upgrade as it was when it was looked at.
class FirmwareFile {
public:
    enum class State {
        Good,
        Missing, // also a link to nothing
        Folder,
        Special, // a device or the like
        Unreadable,
        Empty,
        Invalid // the content isn't that of a hex file, or a damaged one
    };

    // Reads the whole file. Changes nothing, not even the current folder.
    explicit FirmwareFile(const QString &path);

    const QString &Path() const { return path_; }
    State FileState() const { return state_; }
    bool IsGood() const { return state_ == State::Good; }

    // True when the file is another one now, or has changed. Doesn't read the file.
    bool HasChanged() const;

    // Names the file with its size and date, or its defect.
    QString Description() const;

private:
    // The properties of a file that can be read without opening it.
    struct Look {
        explicit Look(const QString &path);
        bool operator==(const Look &) const = default;

        QString target; // of a link, or the file itself; empty if there is none
        qint64 bytes = 0;
        QDateTime modified;
        QFileDevice::Permissions permissions;
    };

    State Judge() const;

    QString path_;
    Look look_;
    State state_;
};

} // namespace ztv
