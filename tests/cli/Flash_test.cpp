#include "sim/BootLoader.h"
#include "sim/DeviceMemory.h"
#include "sim/FirmwareImage.h"
#include "tests/cli/StartedCtl.h"
#include "tests/helpers/SharedLine.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>
#include <array>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ztv {

namespace {

using sim::BootFault;
using sim::DeviceMemory;
using testing::Test;

constexpr int smallApplication = 0x400;
constexpr int firstVersion = 214;
constexpr int erasures = DeviceMemory::applicationSize / DeviceMemory::eraseBlock;
constexpr int beforeErasing = 2; // the version and a byte of the EEPROM
constexpr int writeEepromFunction = 6;

const QStringList quickly = {QStringLiteral("--yes"), QStringLiteral("--timeout"), QStringLiteral("150")};

// Without its end record.
QByteArray Records(int address, const QByteArray &bytes) {
    const QByteArray file = sim::HexFile(address, bytes);
    return file.first(file.indexOf(":00000001FF"));
}

// The program flashes simulated sensors. A sensor lives in this process, so that each test sees its state
// between two frames. Several benches work at once: an upgrade mostly waits for answers that don't come.
class FlashBench {
public:
    FlashBench() {
        EXPECT_TRUE(QDir(folder_.path()).mkdir(QStringLiteral("tmp")));
        ctl_.Environment("TMPDIR", Path("tmp"));
    }
    FlashBench(const FlashBench &) = delete;
    FlashBench &operator=(const FlashBench &) = delete;
    ~FlashBench() {
        EXPECT_EQ(QDir(Path("tmp")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList())
            << "an upgrade leaves no files";
    }

    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }
    void Make(const QByteArray &content) const {
        QFile file(Path("firmware.hex"));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }
    void MakeFirmware(int size = smallApplication) {
        application_ = sim::Application(sim::upgradeVersion, size);
        Make(sim::HexFile(DeviceMemory::applicationStart, application_));
    }

    sim::SimulatedSensor &StartSensor(const sim::SensorOptions &given = {}) {
        sim::SensorOptions options = given;
        options.presets = ShippedPresetsFolder() + QStringLiteral("/Presets.fil");
        options.link = Path(sensors_.empty() ? "port" : "second");
        sensors_.push_back(std::make_unique<sim::SimulatedSensor>(options));
        EXPECT_EQ(sensors_.back()->Start(), QString());
        return *sensors_.back();
    }
    sim::SimulatedSensor &StartSensorAt(int address) {
        sim::SensorOptions options;
        options.address = address;
        return StartSensor(options);
    }
    sim::SimulatedSensor &StartInLoader(int address = 1) {
        sim::SensorOptions options;
        options.address = address;
        options.boot = true;
        return StartSensor(options);
    }
    sim::SimulatedSensor &Sensor() { return *sensors_.front(); }
    void ShareLine() {
        for (const auto &sensor : sensors_) {
            line_.Join(*sensor);
        }
        device_ = line_.Path();
    }

    // Starts "ztv-ctl flash" with these options.
    void Start(const QStringList &options = {QStringLiteral("--yes")}) {
        const QString device = device_.isEmpty() ? Path("port") : device_;
        ctl_.Start(QStringList{QStringLiteral("--port"), device, QStringLiteral("flash")} + options +
                   QStringList{Path("firmware.hex")});
    }
    int Flash(const QStringList &options = {QStringLiteral("--yes")}) {
        Start(options);
        return ctl_.WaitForEnd();
    }
    int FlashAddress(const char *addresses) {
        return Flash({QStringLiteral("--yes"), QStringLiteral("--address"), QString::fromLatin1(addresses)});
    }
    const std::string &Messages() const { return ctl_.Messages(); }
    const std::string &Results() const { return ctl_.Results(); }
    bool Says(const char *words) const { return Messages().find(words) != std::string::npos; }

    void SignalWhen(int signal, const std::function<bool()> &condition) {
        ASSERT_TRUE(WaitUntil(condition, 60000));
        ctl_.Signal(signal);
    }

    static bool HasOldFirmware(sim::SimulatedSensor &sensor) {
        return sensor.Memory().ApplicationVersion() == firstVersion;
    }
    bool HasNewFirmware(sim::SimulatedSensor &sensor) const {
        QByteArray whole = application_;
        whole.append(DeviceMemory::applicationSize - whole.size(), '\xFF');
        return sensor.Memory().Read(DeviceMemory::applicationStart, DeviceMemory::applicationSize) == whole;
    }
    void ExpectUpgraded(sim::SimulatedSensor &sensor) const {
        EXPECT_FALSE(sensor.InBootMode());
        EXPECT_TRUE(HasNewFirmware(sensor));
    }
    void ExpectUnchanged(sim::SimulatedSensor &sensor) const {
        EXPECT_FALSE(sensor.InBootMode());
        EXPECT_TRUE(HasOldFirmware(sensor));
    }
    // A sensor in its loader doesn't answer, whatever the time for that.
    int FlashQuickly(const QStringList &options = {}) { return Flash(quickly + options); }
    void ExpectSecondRunCompletes() {
        EXPECT_EQ(FlashQuickly(), 0) << Messages();
        ExpectUpgraded(Sensor());
    }
    void Fault(int first, int count, BootFault::Kind kind) {
        for (int exchange = first; exchange < first + count; ++exchange) {
            Sensor().Boot().SetFault(exchange, {.kind = kind});
        }
    }

    QTemporaryDir folder_;
    std::vector<std::unique_ptr<sim::SimulatedSensor>> sensors_;
    SharedLine line_;
    QString device_;
    QByteArray application_;
    StartedCtl ctl_;
    bool isSignalled_ = false;
};

class FlashTest : public Test, public FlashBench {};

} // namespace

TEST_F(FlashTest, ReplacesTheFirmwareAtEachRateAndAddressing) {
    std::array<FlashBench, 4> benches;
    for (int index = 0; index < 4; ++index) {
        FlashBench &bench = benches.at(static_cast<std::size_t>(index));
        sim::SensorOptions options;
        options.address = 7;
        options.baud = index < 2 ? 4 : 2;
        options.addressing = index % 2;
        bench.StartSensor(options);
        bench.MakeFirmware(DeviceMemory::applicationSize);
        bench.Start({QStringLiteral("--yes"), QStringLiteral("--address"), QStringLiteral("7"),
                     QStringLiteral("--baud"), QString::number(bench.Sensor().Line().BitsPerSecond())});
    }
    for (FlashBench &bench : benches) {
        EXPECT_EQ(bench.ctl_.WaitForEnd(), 0);
        bench.ExpectUpgraded(bench.Sensor());
        EXPECT_EQ(bench.Results(), "address  serial  before  after   lines  differing\n"
                                   "7        10427   2.14    3.00    2944   0\n");
        EXPECT_EQ(bench.Messages(), "ztv-ctl: Entering the boot loader\nztv-ctl: Erasing\n"
                                    "ztv-ctl: Writing and verifying\nztv-ctl: Restarting\n");
    }
}

TEST_F(FlashTest, CompletesASensorThatWaitsInItsLoader) {
    StartInLoader();
    MakeFirmware();
    EXPECT_EQ(Flash(), 0);
    ExpectUpgraded(Sensor());
    EXPECT_TRUE(Says("address 1: the sensor waits in its boot loader already\n")) << Messages();
    EXPECT_EQ(Results(), "address  serial  before  after   lines  differing\n"
                         "1        10427           3.00    64     0\n");
}

TEST_F(FlashTest, ReportsToAProgram) {
    FlashBench other;
    for (FlashBench *bench : {static_cast<FlashBench *>(this), &other}) {
        bench->StartSensor();
        bench->MakeFirmware();
    }
    Start({QStringLiteral("--yes"), QStringLiteral("--format"), QStringLiteral("csv")});
    other.Start({QStringLiteral("--yes"), QStringLiteral("--quiet"), QStringLiteral("--format"),
                 QStringLiteral("json")});
    EXPECT_EQ(ctl_.WaitForEnd(), 0);
    EXPECT_EQ(Results(),
              "address,serial,before,after,lines,differing,differences\n1,10427,2.14,3.00,64,0,\n");
    EXPECT_EQ(other.ctl_.WaitForEnd(), 0);
    EXPECT_EQ(other.Messages(), "");
    const QJsonObject row =
        QJsonDocument::fromJson(QByteArray::fromStdString(other.Results())).array()[0].toObject();
    EXPECT_EQ(row[QStringLiteral("serial")], 10427);
    EXPECT_EQ(row[QStringLiteral("after")], QStringLiteral("3.00"));
    EXPECT_EQ(row[QStringLiteral("differences")].toArray(), QJsonArray());
}

TEST_F(FlashTest, SendsNothingForAFileThatIsNotGood) {
    StartSensor();
    EXPECT_EQ(Flash(), 5);
    EXPECT_EQ(Messages(), "ztv-ctl: No firmware file there: " + Path("firmware.hex").toStdString() + "\n");
    for (const char *bad : {"", "hello\n", ":10080000000102030405060708090A0B0C0D0E0F71\n:00000001FF\n",
                            ":10080000000102030405060708090A0B0C0D0E0F70\n", ":00000001FF\n"}) {
        Make(bad);
        EXPECT_EQ(Flash(), 5) << bad;
        EXPECT_EQ(std::ranges::count(Messages(), '\n'), 1) << Messages();
    }
    EXPECT_EQ(Sensor().Stats().requests, 0);
    EXPECT_EQ(Sensor().Stats().discarded, 0);
}

TEST_F(FlashTest, SendsNothingOfAFileThatWouldLoseBytes) {
    StartSensor();
    Make(":10080400000102030405060708090A0B0C0D0E0F6C\n:00000001FF\n");
    EXPECT_EQ(Flash(), 5);
    EXPECT_EQ(Messages(),
              "ztv-ctl: Firmware file with a record that crosses the end of its 16 bytes, at 0x000804; "
              "make one with aligned records: " +
                  Path("firmware.hex").toStdString() + "\n");
    Make(":020000021000EC\n:10080000000102030405060708090A0B0C0D0E0F70\n:00000001FF\n");
    EXPECT_EQ(Flash(), 5);
    EXPECT_EQ(Messages(), "ztv-ctl: Firmware file with segment addresses; make one with linear ones: " +
                              Path("firmware.hex").toStdString() + "\n");
    EXPECT_EQ(Sensor().Stats().requests, 0);
    EXPECT_EQ(Sensor().Stats().discarded, 0);
}

TEST_F(FlashTest, TakesShortRecordsAndOthersThatLoseNothing) {
    StartSensor();
    Make(":020000040000FA\n:0408060001020304E4\n:080808000001020304050607CC\n:00000001FF\n"
         ":10080400000102030405060708090A0B0C0D0E0F6C\n");
    EXPECT_EQ(Flash({QStringLiteral("--dry-run")}), 0) << Messages();
}

TEST_F(FlashTest, NeedsAYesWhereNobodyCanAnswer) {
    StartSensor();
    MakeFirmware();
    EXPECT_EQ(Flash({}), 2);
    EXPECT_EQ(Messages(),
              "ztv-ctl: Replace the firmware of address 1 (serial number 10427, firmware 2.14) by " +
                  Path("firmware.hex").toStdString() + "? Nobody can answer here; give --yes to go on\n");
    EXPECT_EQ(Sensor().Stats().discarded, 0); // no frame of a boot link
    ExpectUnchanged(Sensor());
}

TEST_F(FlashTest, SaysWhatWouldGoOut) {
    StartSensor();
    MakeFirmware();
    EXPECT_EQ(Flash({QStringLiteral("--dry-run")}), 0);
    EXPECT_EQ(Results(), "address  serial  firmware  lines  bytes  first     last\n"
                         "1        10427   2.14      64     1024   0x000800  0x000BFF\n");
    EXPECT_TRUE(Says("Nothing was written")) << Messages();
    EXPECT_TRUE(Sensor().Writes().empty());
    ExpectUnchanged(Sensor());
}

TEST_F(FlashTest, SaysThatNoSensorAndNoLoaderAnswers) {
    StartSensor();
    MakeFirmware();
    EXPECT_EQ(FlashAddress("9"), 3);
    EXPECT_EQ(Messages(), "ztv-ctl: address 9: Timeout, and no boot loader answers either\n");
    Sensor().Unplug();
    EXPECT_EQ(Flash(), 3);
    EXPECT_EQ(std::ranges::count(Messages(), '\n'), 1) << Messages();
}

TEST_F(FlashTest, SaysThatTheSensorRefuses) {
    StartSensor();
    MakeFirmware();
    Sensor().OnRequest([this](const QByteArray &request) {
        if (request.at(1) == writeEepromFunction) {
            Sensor().Faults().exception = 4;
        }
    });
    EXPECT_EQ(Flash(), 4);
    EXPECT_TRUE(Says("address 1: the sensor refused to start its boot loader. The sensor wasn't changed\n"))
        << Messages();
}

TEST_F(FlashTest, NamesALineThatDiffersThoughLaterOnesAreGood) {
    StartInLoader();
    application_ = sim::Application(sim::upgradeVersion, smallApplication);
    Make(Records(0x700, "0123456789ABCDEF") + // protected: it stays as it was
         sim::HexFile(DeviceMemory::applicationStart, application_));
    EXPECT_EQ(FlashQuickly({QStringLiteral("--format"), QStringLiteral("csv")}), 4);
    ExpectUpgraded(Sensor());
    const std::string line = "000700 30 31 32 33 34 35 36 37 38 39 41 42 43 44 45 46";
    EXPECT_TRUE(Says(("address 1: differs: " + line + "\n").c_str())) << Messages();
    EXPECT_TRUE(
        Says("address 1: The sensor was restarted, but 1 of 65 lines differ from the firmware: run the "
             "same command again\n"))
        << Messages();
    EXPECT_EQ(Results(),
              "address,serial,before,after,lines,differing,differences\n1,10427,,3.00,65,1," + line + "\n");
}

TEST_F(FlashTest, LeavesASensorInItsLoaderWhoseLastLineDiffers) {
    StartInLoader();
    Make(Records(DeviceMemory::applicationStart, sim::Application(sim::upgradeVersion, smallApplication)) +
         sim::HexFile(0x700, "0123456789ABCDEF"));
    EXPECT_EQ(FlashQuickly(), 4);
    EXPECT_TRUE(Sensor().InBootMode());
    EXPECT_TRUE(Says("differs: 000700 30 31 ")) << Messages();
    EXPECT_TRUE(Says("address 1: the sensor's memory differs from the firmware. The sensor waits in its boot "
                     "loader, without complete firmware: run the same command again\n"))
        << Messages();
    MakeFirmware();
    ExpectSecondRunCompletes();
}

TEST_F(FlashTest, SaysWhereAFaultOfTheBootLineLeavesTheSensor) {
    struct Case {
        int first;
        int count;
        BootFault::Kind kind;
        int status;
        const char *words;
    };
    constexpr int written = beforeErasing + erasures + 2 * smallApplication / 16;
    constexpr int all = 8;
    const Case cases[] = {
        {beforeErasing + 11, all, BootFault::Corrupt, 4,
         "erasing stopped at 1 %: the boot loader's answer was damaged. The sensor waits in its boot loader, "
         "without complete firmware"},
        {beforeErasing + 11, all, BootFault::Deaf, 4,
         "erasing stopped at 1 %: the boot loader didn't answer. The sensor waits in its boot loader, "
         "without "},
        {beforeErasing + erasures + 65, all, BootFault::Corrupt, 4,
         "writing stopped at 49 %: the boot loader's answer was damaged. The sensor waits in its boot "
         "loader, "
         "without complete firmware"},
        {written + 1, 3, BootFault::Corrupt, 4,
         "the boot loader didn't confirm the start of the new firmware. The sensor may wait in its boot "
         "loader, "
         "with the new firmware written: run the same command again\n"},
    };
    std::array<FlashBench, std::size(cases)> benches;
    for (std::size_t index = 0; index < benches.size(); ++index) {
        const Case &fault = cases[index];
        benches.at(index).MakeFirmware();
        benches.at(index).StartInLoader();
        benches.at(index).Fault(fault.first + 1, fault.count, fault.kind); // the first look for a loader
        benches.at(index).Start(quickly);
    }
    for (std::size_t index = 0; index < benches.size(); ++index) {
        FlashBench &bench = benches.at(index);
        EXPECT_EQ(bench.ctl_.WaitForEnd(), cases[index].status);
        EXPECT_TRUE(bench.Says(cases[index].words)) << bench.Messages();
        EXPECT_TRUE(bench.Sensor().InBootMode());
        bench.Sensor().Boot().Clear();
        bench.Start(quickly);
    }
    for (FlashBench &bench : benches) {
        EXPECT_EQ(bench.ctl_.WaitForEnd(), 0) << bench.Messages();
        bench.ExpectUpgraded(bench.Sensor());
    }
}

TEST_F(FlashTest, SaysThatTheLoaderDoesNotAnswerAfterTheCommand) {
    StartSensor();
    MakeFirmware();
    Fault(1, 3, BootFault::Deaf);
    EXPECT_EQ(Flash(), 3);
    EXPECT_TRUE(
        Says("address 1: the boot loader didn't answer. The sensor may wait in its boot loader, with its "
             "firmware unchanged: run the same command again\n"))
        << Messages();
    EXPECT_TRUE(Sensor().InBootMode());
    ExpectSecondRunCompletes();
}

TEST_F(FlashTest, BearsSingleFaultsOfTheBootLine) {
    const BootFault faults[] = {{.kind = BootFault::Drop},
                                {.kind = BootFault::Deaf},
                                {.kind = BootFault::Corrupt},
                                {.kind = BootFault::Cut},
                                {.kind = BootFault::Delay, .delayMs = 1500}}; // past the time for an answer
    std::array<FlashBench, std::size(faults)> benches;
    for (std::size_t index = 0; index < benches.size(); ++index) {
        FlashBench &bench = benches.at(index);
        bench.StartInLoader();
        bench.MakeFirmware();
        bench.Sensor().Boot().SetFault(8, faults[index]);
        bench.Sensor().Boot().SetFault(11, faults[(index + 1) % benches.size()]);
        bench.Start(quickly);
    }
    for (FlashBench &bench : benches) {
        EXPECT_EQ(bench.ctl_.WaitForEnd(), 0) << bench.Messages();
        bench.ExpectUpgraded(bench.Sensor());
    }
}

TEST_F(FlashTest, SaysThatTheSensorMayWaitInItsLoaderAfterALostConfirmation) {
    StartSensor();
    MakeFirmware();
    Sensor().OnRequest([this](const QByteArray &request) {
        Sensor().Faults().drop = request.at(1) == writeEepromFunction ? 1 : 0;
    });
    EXPECT_EQ(Flash(), 3);
    EXPECT_TRUE(
        Says("address 1: the sensor didn't confirm the command that starts its boot loader. The sensor "
             "may wait in its boot loader, with its firmware unchanged: run the same command again\n"))
        << Messages();
    EXPECT_TRUE(Sensor().InBootMode());
    EXPECT_TRUE(HasOldFirmware(Sensor()));
    Sensor().Faults().drop = 0;
    ExpectSecondRunCompletes();
}

TEST_F(FlashTest, SaysThatThePortIsGone) {
    StartInLoader();
    MakeFirmware();
    Sensor().Boot().SetFault(beforeErasing + 101, {.kind = BootFault::Unplug});
    EXPECT_EQ(FlashQuickly(), 4);
    EXPECT_TRUE(Says("without complete firmware: run the same command again\n")) << Messages();
    EXPECT_TRUE(Says("erasing stopped at 13 %: ")) << Messages();
    ASSERT_EQ(Sensor().Plug(), QString());
    ExpectSecondRunCompletes();
}

TEST_F(FlashTest, GoesOnAfterTheSensorLostItsPower) {
    StartInLoader();
    MakeFirmware();
    Start(quickly);
    ASSERT_TRUE(WaitUntil([this] { return Sensor().Boot().Exchanges() > 300; }, 60000));
    Sensor().Reset();
    EXPECT_EQ(ctl_.WaitForEnd(), 0) << Messages();
    ExpectUpgraded(Sensor());
}

TEST_F(FlashTest, WaitsForASensorThatStartsSlowly) {
    StartInLoader();
    MakeFirmware();
    Start(quickly);
    ASSERT_TRUE(WaitUntil([this] { return !Sensor().InBootMode(); }, 60000));
    Sensor().Faults().mute = true;
    const int ignored = Sensor().Stats().ignored;
    ASSERT_TRUE(WaitUntil([&] { return Sensor().Stats().ignored > ignored + 3; }, 60000));
    Sensor().Faults().mute = false;
    EXPECT_EQ(ctl_.WaitForEnd(), 0) << Messages();
    EXPECT_NE(Results().find("3.00"), std::string::npos);
}

TEST_F(FlashTest, IsNotDoneWhenTheSensorStaysSilentAfterwards) {
    StartSensor();
    MakeFirmware();
    Start({QStringLiteral("--yes"), QStringLiteral("--timeout"), QStringLiteral("60")});
    ASSERT_TRUE(WaitUntil([this] { return Sensor().InBootMode(); }, 60000));
    ASSERT_TRUE(WaitUntil([this] { return !Sensor().InBootMode(); }, 60000));
    Sensor().Faults().mute = true;
    EXPECT_EQ(ctl_.WaitForEnd(), 3);
    EXPECT_TRUE(Says("The sensor was restarted with the new firmware, but doesn't answer\n")) << Messages();
    EXPECT_EQ(Results(), "address  serial  before  after   lines  differing\n"
                         "1        10427   2.14            64     0\n");
}

// A signal at each phase: the sensor is where the message says, and a second run completes.

TEST_F(FlashTest, ASignalBeforeTheLoaderLeavesTheSensorUnchanged) {
    MakeFirmware();
    const std::map<const char *, std::function<bool()>> phases = {
        {"reading the sensor", [this] { return Sensor().Stats().requests > 0; }},
        {"looking for a loader", [this] { return Sensor().Stats().discarded > 0; }},
    };
    for (const auto &[phase, reached] : phases) {
        sensors_.clear();
        StartSensor();
        Start();
        SignalWhen(SIGINT, reached);
        EXPECT_EQ(ctl_.WaitForEnd(), 128 + SIGINT) << phase;
        EXPECT_TRUE(Says("nothing was written\n") || Says("The sensor wasn't changed\n")) << Messages();
        ExpectUnchanged(Sensor());
        EXPECT_TRUE(Sensor().Writes().empty());
    }
}

TEST_F(FlashTest, ASignalBeforeTheCommandLeavesTheSensorUnchanged) {
    StartSensor();
    MakeFirmware();
    Sensor().OnRequest([this](const QByteArray &) {
        if (Sensor().Stats().discarded > 0) { // the search for a loader is over
            Sensor().Faults().mute = true;
        }
    });
    Start();
    SignalWhen(SIGTERM, [this] { return Sensor().Faults().mute; });
    EXPECT_EQ(ctl_.WaitForEnd(), 128 + SIGTERM);
    EXPECT_TRUE(Says("address 1: interrupted. The sensor wasn't changed\n")) << Messages();
    EXPECT_LT(Sensor().Stats().ignored, 5) << "it waits no longer";
    ExpectUnchanged(Sensor());
}

TEST_F(FlashTest, ASignalAfterTheCommandNamesTheLoader) {
    StartSensor();
    MakeFirmware();
    Start();
    SignalWhen(SIGINT, [this] { return Sensor().InBootMode(); });
    EXPECT_EQ(ctl_.WaitForEnd(), 128 + SIGINT);
    EXPECT_TRUE(
        Says("address 1: interrupted. The sensor waits in its boot loader, with its firmware unchanged: "
             "run the same command again\n"))
        << Messages();
    EXPECT_TRUE(Sensor().InBootMode());
    EXPECT_TRUE(HasOldFirmware(Sensor()));
    ExpectSecondRunCompletes();
}

TEST_F(FlashTest, ASignalWhileItErasesOrWritesNamesTheLoader) {
    struct Case {
        int signal;
        int exchanges; // until the signal
    };
    constexpr int erasing = beforeErasing + 50;
    constexpr int writing = beforeErasing + erasures + 500;
    const Case cases[] = {{SIGINT, erasing}, {SIGTERM, erasing}, {SIGHUP, erasing},
                          {SIGINT, writing}, {SIGTERM, writing}, {SIGHUP, writing}};
    std::array<FlashBench, std::size(cases)> benches;
    for (FlashBench &bench : benches) {
        bench.MakeFirmware(DeviceMemory::applicationSize);
        bench.StartInLoader();
        bench.Start(quickly);
    }
    std::size_t signalled = 0;
    EXPECT_TRUE(WaitUntil(
        [&] {
            for (std::size_t index = 0; index < benches.size(); ++index) {
                FlashBench &bench = benches.at(index);
                const int exchanges = bench.Sensor().Boot().Exchanges();
                if (!bench.isSignalled_ && exchanges > cases[index].exchanges) {
                    bench.isSignalled_ = true;
                    bench.ctl_.Signal(cases[index].signal);
                    ++signalled;
                }
            }
            return signalled == benches.size();
        },
        60000));
    for (std::size_t index = 0; index < benches.size(); ++index) {
        FlashBench &bench = benches.at(index);
        EXPECT_EQ(bench.ctl_.WaitForEnd(), 128 + cases[index].signal);
        EXPECT_TRUE(
            bench.Says("address 1: interrupted. The sensor waits in its boot loader, without complete "
                       "firmware: run the same command again\n"))
            << bench.Messages();
        EXPECT_TRUE(bench.Sensor().InBootMode());
        EXPECT_FALSE(bench.HasNewFirmware(bench.Sensor()));
        EXPECT_FALSE(bench.HasOldFirmware(bench.Sensor()));
    }
    benches.back().ExpectSecondRunCompletes();
}

TEST_F(FlashTest, ASignalWhileTheSensorRestartsLetsItRun) {
    StartInLoader();
    MakeFirmware();
    Start(quickly);
    SignalWhen(SIGINT, [this] { return !Sensor().InBootMode(); });
    EXPECT_EQ(ctl_.WaitForEnd(), 128 + SIGINT);
    EXPECT_TRUE(Says("address 1: interrupted. The sensor was restarted with the new firmware; its version "
                     "wasn't read\n"))
        << Messages();
    ExpectUpgraded(Sensor());
}

TEST_F(FlashTest, ASecondSignalEndsAtOnce) {
    StartSensor();
    MakeFirmware();
    Start();
    SignalWhen(SIGINT, [this] { return Sensor().Stats().discarded > 0; }); // it blocks for seconds
    ctl_.WaitUntilTaken(SIGINT);
    ctl_.SignalUntilEnd(SIGTERM);
    EXPECT_EQ(ctl_.WaitForEnd(), -SIGTERM);
    ExpectUnchanged(Sensor());
    EXPECT_TRUE(QDir(Path("tmp")).removeRecursively()); // Deliberate: nothing is tidied then
}

TEST_F(FlashTest, ASignalThatIsSentTwiceCountsOnce) {
    StartSensor();
    MakeFirmware();
    Start();
    SignalWhen(SIGHUP, [this] { return Sensor().Stats().discarded > 0; }); // it blocks for seconds
    ctl_.WaitUntilTaken(SIGHUP);
    ctl_.Signal(SIGHUP);
    ctl_.Signal(SIGTERM);
    EXPECT_EQ(ctl_.WaitForEnd(), 128 + SIGHUP);
    EXPECT_TRUE(Says("address 1: interrupted. The sensor wasn't changed\n")) << Messages();
    ExpectUnchanged(Sensor());
}

TEST_F(FlashTest, AReaderThatIsGoneDoesNotEndTheUpgrade) {
    StartInLoader();
    MakeFirmware();
    ctl_.WithoutReader();
    EXPECT_EQ(FlashQuickly(), -SIGPIPE);
    ExpectUpgraded(Sensor());
}

TEST_F(FlashTest, FlashesSeveralSensorsOneAfterTheOtherButNoneThatIsSilent) {
    FlashBench other;
    for (FlashBench *bench : {static_cast<FlashBench *>(this), &other}) {
        bench->StartSensorAt(3);
        bench->StartSensorAt(5);
        bench->ShareLine();
        bench->MakeFirmware();
    }
    const auto addresses = [](const char *list) {
        return QStringList{QStringLiteral("--yes"), QStringLiteral("--address"), QString::fromLatin1(list)};
    };
    Start(addresses("3,5"));
    other.Start(addresses("2,3"));
    EXPECT_EQ(ctl_.WaitForEnd(), 0) << Messages();
    ExpectUpgraded(*sensors_[0]);
    ExpectUpgraded(*sensors_[1]);
    EXPECT_TRUE(Says("address 5: Erasing\n")) << Messages();
    EXPECT_EQ(Results(), "address  serial  before  after   lines  differing\n"
                         "3        10427   2.14    3.00    64     0\n"
                         "5        10427   2.14    3.00    64     0\n");
    EXPECT_EQ(other.ctl_.WaitForEnd(), 3);
    other.ExpectUpgraded(*other.sensors_[0]);
    other.ExpectUnchanged(*other.sensors_[1]);
    EXPECT_TRUE(other.Says("ztv-ctl: address 2: Timeout\n")) << other.Messages();
}

TEST_F(FlashTest, NeverFlashesAFileThatChangedMeanwhile) {
    StartSensorAt(3);
    StartSensorAt(5);
    ShareLine();
    MakeFirmware();
    Start({QStringLiteral("--yes"), QStringLiteral("--address"), QStringLiteral("3,5")});
    ASSERT_TRUE(WaitUntil([this] { return Sensor().Boot().Exchanges() > beforeErasing + 1; }, 60000));
    Make(":10080400000102030405060708090A0B0C0D0E0F6C\n:00000001FF\n");
    EXPECT_EQ(ctl_.WaitForEnd(), 5);
    EXPECT_TRUE(Says("address 5: the firmware file changed meanwhile. The sensor wasn't changed\n"))
        << Messages();
    ExpectUpgraded(*sensors_[0]);
    ExpectUnchanged(*sensors_[1]);
}

TEST_F(FlashTest, StopsAfterASensorThatMayWaitInItsLoader) {
    StartSensorAt(3);
    StartSensorAt(5);
    ShareLine();
    MakeFirmware();
    Fault(beforeErasing + 11, 8, BootFault::Corrupt);
    EXPECT_EQ(FlashAddress("3,5"), 4);
    EXPECT_TRUE(Says("run the same command again with --address 3\n")) << Messages();
    EXPECT_TRUE(Says("ztv-ctl: Not flashed: address 5\n")) << Messages();
    ExpectUnchanged(*sensors_[1]);
    Sensor().Boot().Clear();
    EXPECT_EQ(FlashAddress("3"), 0) << Messages();
    ExpectUpgraded(Sensor());
}

TEST_F(FlashTest, NamesTheSensorsThatASignalKeepsItFrom) {
    StartSensorAt(3);
    StartSensorAt(5);
    ShareLine();
    MakeFirmware();
    Start({QStringLiteral("--yes"), QStringLiteral("--address"), QStringLiteral("3,5")});
    SignalWhen(SIGINT, [this] { return Sensor().Boot().Exchanges() > 100; });
    EXPECT_EQ(ctl_.WaitForEnd(), 128 + SIGINT);
    EXPECT_TRUE(Says("ztv-ctl: Not flashed: address 5\n")) << Messages();
    ExpectUnchanged(*sensors_[1]);
}

TEST_F(FlashTest, NeverFlashesAnotherSensorThatWaitsInItsLoader) {
    StartSensorAt(3);
    StartInLoader(5);
    ShareLine();
    MakeFirmware();
    EXPECT_EQ(FlashAddress("3"), 4);
    EXPECT_TRUE(Says("address 3: another sensor on the line waits in its boot loader, which has no address"))
        << Messages();
    EXPECT_EQ(FlashAddress("3,5"), 4);
    EXPECT_TRUE(Says("A sensor waits in its boot loader, which has no address")) << Messages();
    ExpectUnchanged(Sensor());
    EXPECT_TRUE(HasOldFirmware(*sensors_[1]));
    EXPECT_EQ(FlashAddress("5"), 0) << Messages();
    ExpectUpgraded(*sensors_[1]);
}

TEST_F(FlashTest, AsksAPersonAndShowsProgress) {
    StartSensor();
    MakeFirmware();
    ctl_.OnTerminal("n\n");
    EXPECT_EQ(Flash({}), 4);
    EXPECT_TRUE(Says("(serial number 10427, firmware 2.14)")) << Messages();
    EXPECT_TRUE(Says("? [y/N] ")) << Messages();
    EXPECT_TRUE(Says("Nothing was written")) << Messages();
    ExpectUnchanged(Sensor());
    ctl_.OnTerminal("y\n");
    EXPECT_EQ(Flash({}), 0) << Messages();
    EXPECT_TRUE(Says("\rErasing  50 %")) << Messages();
    EXPECT_TRUE(Says("\rWriting and verifying  49 %")) << Messages();
    ExpectUpgraded(Sensor());
}

TEST_F(FlashTest, PrintsTheFramesOfBothProtocols) {
    StartInLoader();
    MakeFirmware();
    EXPECT_EQ(FlashQuickly({QStringLiteral("--trace")}), 0);
    EXPECT_GT(std::ranges::count(Messages(), '\n'), 2 * erasures);
}

} // namespace ztv
