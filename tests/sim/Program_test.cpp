#include "sim/DeviceMemory.h"
#include "sim/FirmwareImage.h"
#include "tests/sim/TestPresets.h"

#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace sim {
namespace {

// Runs ztv-sim as a shell does.
class SimProgram : public testing::Test {
protected:
    void Run(const QStringList &arguments, const QByteArray &commands = {}) {
        QProcess program;
        program.start(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"), arguments);
        ASSERT_TRUE(program.waitForStarted());
        program.write(commands);
        program.closeWriteChannel();
        ASSERT_TRUE(program.waitForFinished());
        status_ = program.exitCode();
        out_ = program.readAllStandardOutput();
        error_ = program.readAllStandardError();
    }
    static QByteArray Content(const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }

    test::TestPresets presets_;
    QStringList sensor_{"--presets", presets_.Path()};
    QString file_ = presets_.Folder() + "/file";
    int status_ = -1;
    QByteArray out_;
    QByteArray error_;
};

TEST_F(SimProgram, WritesAFirmwareAndEnds) {
    Run({"--make-firmware", file_});
    EXPECT_EQ(status_, 0);
    EXPECT_EQ(out_, "wrote " + file_.toUtf8() + ", firmware version 3.00\n");
    EXPECT_EQ(Content(file_), HexFile(DeviceMemory::applicationStart,
                                      Application(upgradeVersion, DeviceMemory::applicationSize)));
    Run({"--make-firmware", "/nowhere/file"});
    EXPECT_EQ(status_, 1);
    EXPECT_TRUE(error_.startsWith("ztv-sim: /nowhere/file: "));
}

TEST_F(SimProgram, StartsInTheLoader) {
    Run(sensor_ + QStringList{"--boot"}, "stats\nmark\nquit\n");
    EXPECT_EQ(status_, 0);
    EXPECT_TRUE(out_.contains("boot on exchanges 0\nmark 255\n"));
}

TEST_F(SimProgram, KeepsItsFlash) {
    QByteArray flash = DeviceMemory(1).Read(0, DeviceMemory::programSize);
    QFile file(file_);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(flash);
    file.close();
    Run(sensor_ + QStringList{"--flash", file_}, "get 8\nquit\n");
    EXPECT_EQ(status_, 0);
    EXPECT_TRUE(out_.endsWith("8 1\n"));
    EXPECT_EQ(Content(file_), flash);
}

TEST_F(SimProgram, WritesItsFlashAtTheEnd) {
    const QString moved = file_ + ".moved";
    Run(sensor_ + QStringList{"--flash", file_}, "dump " + moved.toUtf8() + "\nquit\n");
    EXPECT_EQ(status_, 0);
    EXPECT_EQ(Content(file_), Content(moved));
    EXPECT_EQ(Content(file_).size(), DeviceMemory::programSize);
}

TEST_F(SimProgram, RefusesAFlashOfTheWrongSizeAndLeavesIt) {
    const QByteArray before = Content(presets_.Path());
    Run(sensor_ + QStringList{"--flash", presets_.Path()});
    EXPECT_EQ(status_, 1);
    EXPECT_EQ(error_, "ztv-sim: " + presets_.Path().toUtf8() + " is no flash: it hasn't 49152 bytes\n");
    EXPECT_EQ(Content(presets_.Path()), before);
}

TEST_F(SimProgram, RefusesAWrongOption) {
    Run({"--flash", ""});
    EXPECT_EQ(status_, 2);
}

} // namespace
} // namespace sim
