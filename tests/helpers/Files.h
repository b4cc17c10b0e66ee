#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace ztv {

// Writes a file, and the folders above it.
inline void WriteFile(const QString &path, const QByteArray &content) {
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    EXPECT_EQ(file.write(content), content.size());
}

// Writes a shell script and makes it executable.
inline void WriteScript(const QString &path, const QByteArray &commands) {
    WriteFile(path, "#!/bin/sh\n" + commands);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// The content of a file; empty if it doesn't exist.
inline QByteArray ReadFile(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace ztv
