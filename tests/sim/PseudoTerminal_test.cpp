#include "sim/PseudoTerminal.h"
#include "tests/sim/TestHost.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace sim {
namespace {

class SimPseudoTerminal : public testing::Test {
protected:
    QTemporaryDir folder_;
    const QString link_ = folder_.filePath("port");
    PseudoTerminal terminal_;
};

TEST_F(SimPseudoTerminal, CarriesBytesUnchanged) {
    ASSERT_EQ(terminal_.Open({}).toStdString(), "");
    const test::TestHost host(terminal_.Path());
    QByteArray all;
    for (int i = 0; i < 256; ++i) {
        all.append(static_cast<char>(i));
    }
    terminal_.Write(all);
    EXPECT_EQ(host.Await(256), all);
}

TEST_F(SimPseudoTerminal, SeesTheSettingsOfTheOtherEnd) {
    ASSERT_EQ(terminal_.Open({}).toStdString(), "");
    const test::TestHost host(terminal_.Path(), B4800, CSTOPB);
    termios settings{};
    ASSERT_TRUE(terminal_.Settings(settings));
    EXPECT_EQ(cfgetospeed(&settings), static_cast<speed_t>(B4800));
    EXPECT_TRUE(settings.c_cflag & CSTOPB);
}

TEST_F(SimPseudoTerminal, MakesAndRemovesItsLink) {
    ASSERT_EQ(terminal_.Open(link_).toStdString(), "");
    EXPECT_EQ(terminal_.Path(), link_);
    EXPECT_TRUE(test::TestHost(link_).IsOpen());
    terminal_.Close();
    EXPECT_FALSE(QFileInfo(link_).isSymLink());
    EXPECT_TRUE(terminal_.Path().isEmpty());
}

TEST_F(SimPseudoTerminal, ReplacesAStaleLink) {
    ASSERT_TRUE(QFile::link("/dev/pts/99999", link_));
    ASSERT_EQ(terminal_.Open(link_).toStdString(), "");
    EXPECT_TRUE(test::TestHost(link_).IsOpen());
}

TEST_F(SimPseudoTerminal, LeavesForeignFilesAlone) {
    QFile file(link_);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(terminal_.Open(link_).contains("exists"));
    EXPECT_FALSE(terminal_.IsOpen());
    EXPECT_TRUE(file.remove());

    ASSERT_TRUE(QFile::link("/nowhere", link_));
    EXPECT_TRUE(terminal_.Open(link_).contains("exists"));
    EXPECT_TRUE(QFileInfo(link_).isSymLink());
}

TEST_F(SimPseudoTerminal, LeavesALinkThatHasGoneToAnotherTerminal) {
    ASSERT_EQ(terminal_.Open(link_).toStdString(), "");
    PseudoTerminal other;
    ASSERT_EQ(other.Open(link_).toStdString(), "");
    terminal_.Close();
    EXPECT_TRUE(QFileInfo(link_).isSymLink());
}

TEST_F(SimPseudoTerminal, SaysWhyThereIsNoLink) {
    EXPECT_TRUE(terminal_.Open(folder_.filePath("none/port")).contains("none/port"));
    EXPECT_FALSE(terminal_.IsOpen());
}

TEST_F(SimPseudoTerminal, HangsUpWhenItCloses) {
    ASSERT_EQ(terminal_.Open({}).toStdString(), "");
    const test::TestHost host(terminal_.Path());
    EXPECT_FALSE(host.HangsUp());
    terminal_.Close();
    EXPECT_TRUE(host.HangsUp());
}

TEST_F(SimPseudoTerminal, LosesWhatNobodyReads) {
    ASSERT_EQ(terminal_.Open({}).toStdString(), "");
    for (int i = 0; i < 100; ++i) {
        terminal_.Write(QByteArray(1000, 'x'));
    }
    EXPECT_TRUE(terminal_.IsOpen());
}

} // namespace
} // namespace sim
