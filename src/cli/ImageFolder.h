#pragma once

#include "cli/Failure.h"

#include <QTemporaryDir>

namespace ztv {

// A folder for the memory images of one upgrade, which goes away with it.
class ImageFolder {
public:
    // Throws a Failure (file).
    ImageFolder() {
        if (!folder_.isValid()) {
            throw Failure(ExitStatus::File, QStringLiteral("There can't be a folder for temporary files: ") +
                                                folder_.errorString());
        }
    }

    QString Path() const { return folder_.path(); }
    QString File(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }

private:
    QTemporaryDir folder_;
};

} // namespace ztv
