#include "tests/cli/StartedCtl.h"
#include "tests/helpers/Wait.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>

namespace ztv {

namespace {

// Starts the simulated sensor by the program, and reads it by the program.
class SimulateTest : public testing::Test {
protected:
    void SetUp() override {
        for (StartedCtl *each : {&ctl_, &other_}) {
            each->Environment("PATH", QStringLiteral("/nowhere"));
        }
    }
    void Simulate(const QStringList &words = {}) {
        ctl_.Start(QStringList{QStringLiteral("simulate")} + words);
    }
    // Returns the device that the first line names.
    QString Device() {
        const QRegularExpression line(QStringLiteral("port (/dev/pts/\\d+)\r?\n"));
        QRegularExpressionMatch match;
        EXPECT_TRUE(WaitUntil([&] {
            match = line.match(QString::fromStdString(ctl_.SoFar()));
            return match.hasMatch();
        }));
        return match.captured(1);
    }

    StartedCtl ctl_;
    StartedCtl other_;
};

} // namespace

TEST_F(SimulateTest, NeedsOneCommandAndASecondTerminal) {
    Simulate(
        {QStringLiteral("--address"), QStringLiteral("5"), QStringLiteral("--seed"), QStringLiteral("3")});
    const QString device = Device();
    other_.Start({QStringLiteral("--port"), device, QStringLiteral("--address"), QStringLiteral("5"),
                  QStringLiteral("get"), QStringLiteral("28")});
    EXPECT_EQ(other_.WaitForEnd(), 0);
    EXPECT_EQ(other_.Results(), "28   Near Distance  12.00\"\n");
    ctl_.Signal(SIGTERM);
    EXPECT_EQ(ctl_.WaitForEnd(), 0); // the simulated sensor's own end
    EXPECT_NE(ctl_.Messages().find("ztv-ctl --port /dev/pts/3 get"), std::string::npos) << ctl_.Messages();
}

TEST_F(SimulateTest, TellsAPersonTheWholeCommandToTry) {
    ctl_.OnTerminal("quit\n");
    ctl_.AlsoResultsOnTerminal();
    Simulate({QStringLiteral("--address"), QStringLiteral("5"), QStringLiteral("--baud"),
              QStringLiteral("9600"), QStringLiteral("--parity"), QStringLiteral("E1")});
    EXPECT_EQ(ctl_.WaitForEnd(), 0);
    const QString device = Device();
    EXPECT_NE(ctl_.Messages().find("try: ztv-ctl --port " + device.toStdString() +
                                   " --address 5 --baud 9600 --parity E1 get\r\n"),
              std::string::npos)
        << ctl_.Messages();
}

TEST_F(SimulateTest, LeavesTheStatusToTheSimulatedSensor) {
    Simulate({QStringLiteral("--baud"), QStringLiteral("7")});
    EXPECT_EQ(ctl_.WaitForEnd(), 2);
    EXPECT_NE(ctl_.Messages().find("ztv-sim: --baud can't be \"7\"\n"), std::string::npos) << ctl_.Messages();
    Simulate({QStringLiteral("--version")});
    EXPECT_EQ(ctl_.WaitForEnd(), 0);
    EXPECT_EQ(ctl_.Results().rfind("ztv-sim ", 0), 0U) << ctl_.Results();
}

TEST_F(SimulateTest, LeavesTheInterruptToTheSimulatedSensor) {
    Simulate();
    Device();
    ctl_.Signal(SIGINT);
    EXPECT_EQ(ctl_.WaitForEnd(), 0);
}

TEST_F(SimulateTest, SaysThatThereIsNoSimulatedSensor) {
    const QTemporaryDir folder;
    const auto in = [&](const char *name) { return folder.filePath(QString::fromLatin1(name)); };
    for (const char *name : {"ztv-ctl", "Presets.fil"}) {
        ASSERT_TRUE(QFile::copy(QStringLiteral(ZTV_BIN_DIR "/") + QString::fromLatin1(name), in(name)));
    }
    ctl_.Program(in("ztv-ctl"));
    Simulate();
    EXPECT_EQ(ctl_.WaitForEnd(), 5);
    EXPECT_EQ(ctl_.Messages(), "ztv-ctl: There is no ztv-sim beside ztv-ctl, nor in the folders of PATH\n");
    ctl_.Environment("PATH", QStringLiteral(ZTV_BIN_DIR));
    Simulate({QStringLiteral("--version")});
    EXPECT_EQ(ctl_.WaitForEnd(), 0);
}

TEST_F(SimulateTest, NeverStartsAProgramOfTheCurrentFolder) {
    const QTemporaryDir folder;
    const auto in = [&](const char *name) { return folder.filePath(QString::fromLatin1(name)); };
    for (const char *name : {"ztv-ctl", "Presets.fil"}) {
        ASSERT_TRUE(QFile::copy(QStringLiteral(ZTV_BIN_DIR "/") + QString::fromLatin1(name), in(name)));
    }
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("here")));
    ASSERT_TRUE(QFile::copy(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"), in("here/ztv-sim")));
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(in("here")));
    const auto restore = qScopeGuard([&] { QDir::setCurrent(previous); });
    ctl_.Program(in("ztv-ctl"));
    for (const char *path : {".", "", ":/nowhere", "/nowhere:../here"}) {
        ctl_.Environment("PATH", QString::fromLatin1(path));
        Simulate({QStringLiteral("--version")});
        EXPECT_EQ(ctl_.WaitForEnd(), 5) << path;
        EXPECT_EQ(ctl_.Results(), "") << path;
    }
}

} // namespace ztv
