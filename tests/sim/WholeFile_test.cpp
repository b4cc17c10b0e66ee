#include "sim/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace sim {
namespace {

QByteArray Content(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

TEST(SimWholeFile, ReplacesTheFile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("file");
    EXPECT_EQ(WriteWholeFile(path, "long content").toStdString(), "");
    EXPECT_EQ(WriteWholeFile(path, "new").toStdString(), "");
    EXPECT_EQ(Content(path), "new");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST(SimWholeFile, SaysWhyItCannot) {
    EXPECT_TRUE(WriteWholeFile("/nowhere/file", "x").startsWith("/nowhere/file: "));
    const QTemporaryDir folder;
    EXPECT_TRUE(WriteWholeFile(folder.path(), "x").startsWith(folder.path() + ": "));
}

} // namespace
} // namespace sim
