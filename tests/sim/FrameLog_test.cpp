#include "sim/FrameLog.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace sim {
namespace {

TEST(SimFrameLog, WritesALineAFrame) {
    const QTemporaryDir folder;
    const QString name = folder.filePath("log");
    FrameLog log;
    ASSERT_EQ(log.Open(name).toStdString(), "");
    log.Write(12, "rx", QByteArray("\x01\x03\xff", 3));
    log.Write(13, "tx", QByteArray("\x01", 1));
    log.Write(14, "tx", {});
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "12 rx 01 03 ff\n13 tx 01\n");
}

TEST(SimFrameLog, SaysWhyItCannotWrite) {
    FrameLog log;
    EXPECT_TRUE(log.Open("/nowhere/log").startsWith("/nowhere/log: "));
}

TEST(SimFrameLog, WithoutANameWritesNothing) {
    FrameLog log;
    EXPECT_EQ(log.Open({}).toStdString(), "");
    log.Write(1, "rx", "x");
}

} // namespace
} // namespace sim
