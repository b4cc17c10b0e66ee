#include "model/ParamDefines.h"
#include "model/SettingsFile.h"
#include "tests/cli/CommandsTest.h"
#include "tests/cli/CtlProgramTest.h"
#include "tests/helpers/AsNobody.h"
#include "tests/helpers/FileSizeLimit.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/ModbusServer.h"
#include "tests/helpers/SharedLine.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <algorithm>
#include <csignal>
#include <map>
#include <optional>

namespace ztv {

namespace {

using Rows = std::map<int, int>; // raw values by parameter

// Makes a file as the program saves it, with its usual values but for these rows.
void SaveByProgram(const QString &path, const Rows &rows) {
    ClassZentrova zentrova(ShippedPresetsFolder());
    for (const auto &[tag, value] : rows) {
        zentrova.ParamUpdate(static_cast<std::int16_t>(tag), value);
    }
    zentrova.SaveFile(path);
}

bool IsSetting(const ClassZentrova &zentrova, std::int16_t tag) {
    return !zentrova.ParamReadOnly(tag) && !ClassZentrova::IsCommand(tag);
}

} // namespace

class SettingsFilesTest : public CommandsTest {
protected:
    QString Path(const char *name) const { return files_.filePath(QString::fromLatin1(name)); }

    QByteArray File(const char *name, const Rows &rows) {
        SaveByProgram(Path(name), rows);
        return Path(name).toLocal8Bit();
    }

    sim::SimulatedSensor &StartSensorAt(int address, int addressing = 1) {
        sim::SensorOptions options;
        options.address = address;
        options.addressing = addressing;
        return StartSensor(options);
    }

    // Starts sensors on one line, which becomes the port.
    void StartLine(const std::vector<int> &addresses) {
        line_.emplace();
        for (const int address : addresses) {
            line_->Join(StartSensorAt(address, address % 2));
        }
        device_ = line_->Path();
    }

    // Expects the failure, one line that contains the text, and no result.
    void ExpectFailure(const std::vector<const char *> &words, ExitStatus status, const std::string &text) {
        SCOPED_TRACE(text);
        EXPECT_EQ(Ctl(words), status);
        const std::string messages = Messages();
        EXPECT_NE(messages.find(text), std::string::npos) << messages;
        EXPECT_EQ(std::ranges::count(messages, '\n'), 1) << messages;
        EXPECT_EQ(std::ranges::count(Results(), '\n'), 0);
    }

    // Expects that the sensor has the settings of the program's usual values but for these rows.
    void ExpectRegisters(sim::SimulatedSensor &sensor, const Rows &rows) {
        const ClassZentrova zentrova(ShippedPresetsFolder());
        for (std::int16_t tag = 1; tag < zentrova.ParamCount(); ++tag) {
            const auto row = rows.find(tag);
            if (row != rows.end()) {
                EXPECT_EQ(sensor.Register(tag), row->second) << tag;
            } else if (IsSetting(zentrova, tag) && (tag < 65 || tag > 68)) {
                EXPECT_EQ(sensor.Register(tag), zentrova.ParamValue(tag)) << tag;
            }
        }
    }

    QTemporaryDir files_;
    std::optional<SharedLine> line_;
};

TEST_F(SettingsFilesTest, SaveWritesWhatTheProgramOpens) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartSensorAt(1, addressing);
        sensor.SetRegister(28, 2345);
        sensor.SetRegister(26, -500);
        sensor.SetRegister(21, 65000);
        const QByteArray file = Path("winder.ztv").toLocal8Bit();
        EXPECT_EQ(Ctl({"save", "--yes", file.constData()}), ExitStatus::Done);
        EXPECT_EQ(Results(), "address  serial  file\n1        10427   " + file.toStdString() + "\n");
        EXPECT_EQ(Messages(), "");

        ClassZentrova program(ShippedPresetsFolder());
        EXPECT_EQ(program.OpenFile(Path("winder.ztv")).result, FileOpened::Whole);
        for (std::int16_t tag = 1; tag < program.ParamCount(); ++tag) {
            if (!program.ParamReadOnly(tag)) {
                EXPECT_EQ(program.ParamValue(tag), sensor.Register(tag)) << tag;
            }
        }
        EXPECT_EQ(program.ParamValue(26), -500);
        EXPECT_EQ(program.ParamValue(2), 10427);
        program.SaveFile(Path("again.ztv"));
        EXPECT_EQ(ReadFile(Path("again.ztv")), ReadFile(Path("winder.ztv")));
    }
}

TEST_F(SettingsFilesTest, SaveNamesAFileAsTheProgramsDialogDoes) {
    StartSensor();
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(files_.path()));
    EXPECT_EQ(Ctl({"--format", "csv", "save", "winder"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "address,serial,file\n1,10427,winder.ztv\n");
    EXPECT_EQ(Ctl({"--format", "csv", "save", "winder.old"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "address,serial,file\n1,10427,winder.old\n");
    EXPECT_EQ(Ctl({"--format", "json", "save", "line-{address}-{serial}"}), ExitStatus::Done);
    const QJsonArray rows = QJsonDocument::fromJson(QByteArray::fromStdString(Results())).array();
    EXPECT_EQ(rows.at(0).toObject(),
              (QJsonObject{{QStringLiteral("address"), 1},
                           {QStringLiteral("serial"), 10427},
                           {QStringLiteral("file"), QStringLiteral("line-1-10427.ztv")}}));
    EXPECT_EQ(QDir().entryList(QDir::Files),
              QStringList({QStringLiteral("line-1-10427.ztv"), QStringLiteral("winder.old"),
                           QStringLiteral("winder.ztv")}));
    QDir::setCurrent(before);
}

TEST_F(SettingsFilesTest, SaveReplacesAFileOnlyWhenToldTo) {
    StartSensor();
    WriteFile(Path("winder.ztv"), "precious");
    const QByteArray file = Path("winder.ztv").toLocal8Bit();
    EXPECT_EQ(Ctl({"--quiet", "--format", "json", "save", file.constData()}), ExitStatus::File);
    EXPECT_EQ(Messages(), "ztv-ctl: " + file.toStdString() + ": the file exists; give --yes to replace it\n");
    EXPECT_EQ(ReadFile(Path("winder.ztv")), "precious");
    EXPECT_EQ(Ctl({"save", "--dry-run", file.constData()}), ExitStatus::Done);
    EXPECT_EQ(Messages(), "ztv-ctl: Nothing was written\n");
    EXPECT_EQ(ReadFile(Path("winder.ztv")), "precious");
    EXPECT_EQ(Ctl({"save", "--yes", file.constData()}), ExitStatus::Done);
    EXPECT_EQ(ClassZentrova(ShippedPresetsFolder()).OpenFile(Path("winder.ztv")).result, FileOpened::Whole);
}

TEST_F(SettingsFilesTest, SaveOfOneSensorThatFailsDoesNotStopTheOthers) {
    StartLine({3, 5});
    const QByteArray file = Path("line-{address}").toLocal8Bit();
    EXPECT_EQ(Ctl({"--address", "3-5", "--format", "csv", "save", file.constData()}),
              ExitStatus::NoConnection);
    EXPECT_EQ(Messages(), "ztv-ctl: address 4: Timeout\n");
    EXPECT_EQ(QDir(files_.path()).entryList(QDir::Files),
              QStringList({QStringLiteral("line-3.ztv"), QStringLiteral("line-5.ztv")}));
    QFile::remove(Path("line-5.ztv"));
    EXPECT_EQ(Ctl({"--address", "3,5", "save", file.constData()}), ExitStatus::File);
    EXPECT_TRUE(QFile::exists(Path("line-5.ztv")));
}

TEST_F(SettingsFilesTest, SaveNeverGivesTwoSensorsOneFile) {
    StartLine({3, 5});
    ExpectFailure({"--address", "3,5", "save", "winder.ztv"}, ExitStatus::WrongUse,
                  "2 sensors can't be saved to one file: put {address} or {serial} into \"winder.ztv\"");
    EXPECT_TRUE(sensors_.front()->Requests().empty());
    const QByteArray file = Path("{serial}.ztv").toLocal8Bit();
    EXPECT_EQ(Ctl({"--address", "3,5", "save", "--yes", file.constData()}), ExitStatus::File);
    EXPECT_NE(Messages().find("address 5: "), std::string::npos);
    sensors_.back()->SetRegister(2, 10428);
    EXPECT_EQ(Ctl({"--address", "3,5", "save", "--yes", file.constData()}), ExitStatus::Done);
    EXPECT_TRUE(QFile::exists(Path("10427.ztv")));
    EXPECT_TRUE(QFile::exists(Path("10428.ztv")));
}

TEST_F(SettingsFilesTest, WrongNamesGetOneLineAndNothingOnTheLine) {
    const sim::SimulatedSensor &sensor = StartSensor();
    for (const char *command : {"save", "load", "diff"}) {
        ExpectFailure({command, "line-{adress}.ztv"}, ExitStatus::WrongUse,
                      "There is no {adress}: did you mean \"{address}\"?");
        ExpectFailure({command, "{Serial}.ztv"}, ExitStatus::WrongUse, "did you mean \"{serial}\"?");
        ExpectFailure({command, "{date}.ztv"}, ExitStatus::WrongUse,
                      "There is no {date}; a file's name may have {address} and {serial}");
        ExpectFailure({command, ""}, ExitStatus::WrongUse, "The name of the file is empty");
    }
    ExpectFailure({"diff", "line-{address}.ztv", "winder.ztv"}, ExitStatus::WrongUse,
                  "two files are compared without a sensor");
    EXPECT_TRUE(sensor.Requests().empty());
}

TEST_F(SettingsFilesTest, SaveSaysWhyAFileCannotBeWritten) {
    StartSensor();
    const auto save = [&](const QString &name, const char *reason) {
        SCOPED_TRACE(reason);
        EXPECT_EQ(Ctl({"--format", "json", "save", "--yes", name.toLocal8Bit().constData()}),
                  ExitStatus::File);
        EXPECT_NE(Messages().find(reason), std::string::npos);
        Results();
    };
    save(files_.path(), "this isn't a file that can be written");
    save(files_.path() + u'/', "this isn't a file that can be written");
    save(Path("nowhere/winder.ztv"), "No such file or directory");
    save(QStringLiteral("/dev/null"), "this isn't a file that can be written");
    WriteFile(Path("winder.ztv"), "precious");
    {
        const FileSizeLimit full(1000);
        save(Path("winder.ztv"), "File too large");
    }
    {
        QFile::setPermissions(device_, QFile::ReadOther | QFile::WriteOther);
        const AsNobody nobody;
        save(QStringLiteral("/winder.ztv"), "Permission denied");
    }
    EXPECT_EQ(ReadFile(Path("winder.ztv")), "precious");
    EXPECT_EQ(QDir(files_.path()).entryList(QDir::Files), QStringList{QStringLiteral("winder.ztv")});
}

TEST_F(SettingsFilesTest, LoadShowsWhatDiffersAndWritesIt) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartSensorAt(1, addressing);
        const QByteArray file = File("winder.ztv", {{28, 1300}, {26, -500}, {21, 65000}, {1, 1}, {3, 1}});
        EXPECT_EQ(Ctl({"load", "--yes", file.constData()}), ExitStatus::Done);
        EXPECT_EQ(Results(), "parameter  name                        sensor      file\n"
                             "21         Transmit Delay Low          1000        65000\n"
                             "26         Distance Offset             0.00\"       -5.00\"\n"
                             "28         Near Distance               12.00\"      13.00\"\n");
        const std::string messages = Messages();
        EXPECT_NE(messages.find("ztv-ctl: address 1: 3 settings loaded\n"), std::string::npos) << messages;
        EXPECT_TRUE(messages.ends_with("\"ztv-ctl store\" saves them\n")) << messages;
        ExpectRegisters(sensor, {{28, 1300}, {26, -500}, {21, 65000}, {68, addressing}});
        const auto writes = sensor.Writes();
        ASSERT_EQ(writes.size(), 95U); // in one request
        for (const auto &[tag, value] : writes) {
            EXPECT_TRUE((tag != 1 && tag != 3) || value == 0) << tag;
        }
        sensor.ClearRecords();
        EXPECT_EQ(Ctl({"load", file.constData()}), ExitStatus::Done);
        EXPECT_EQ(Results(), "");
        EXPECT_NE(Messages().find("address 1: nothing to load: the sensor has these settings\n"),
                  std::string::npos);
        EXPECT_TRUE(sensor.Writes().empty());
    }
}

TEST_F(SettingsFilesTest, LoadWritesNothingThatNobodyAgreedTo) {
    sim::SimulatedSensor &sensor = StartSensor();
    const QByteArray file = File("winder.ztv", {{28, 1300}});
    EXPECT_EQ(Ctl({"load", file.constData()}), ExitStatus::WrongUse);
    EXPECT_EQ(Messages(), "ztv-ctl: Write this setting to address 1? Nobody can answer here; give --yes to "
                          "go on\n");
    EXPECT_EQ(Ctl({"load", "--dry-run", file.constData()}), ExitStatus::Done);
    EXPECT_EQ(Messages(), "ztv-ctl: Nothing was written\n");
    EXPECT_TRUE(sensor.Writes().empty());
}

TEST_F(SettingsFilesTest, LoadRestoresWhatSaveSaved) {
    sim::SimulatedSensor &sensor = StartSensor();
    Rows rows = {{24, 700}, {26, -1}, {39, 2}, {43, 3}, {53, 0}, {95, 65535}, {81, 4095}};
    for (const auto &[tag, value] : rows) {
        sensor.SetRegister(tag, value);
    }
    rows.erase(53);
    const QByteArray file = Path("winder.ztv").toLocal8Bit();
    EXPECT_EQ(Ctl({"save", file.constData()}), ExitStatus::Done);
    for (const auto &[tag, value] : rows) {
        sensor.SetRegister(tag, value == 3 ? 1 : 601);
    }
    sensor.SetRegister(39, 0);
    EXPECT_EQ(Ctl({"diff", file.constData()}), ExitStatus::Differs);
    EXPECT_EQ(Ctl({"load", "--yes", file.constData()}), ExitStatus::Done);
    ExpectRegisters(sensor, rows);
    Results();
    EXPECT_EQ(Ctl({"diff", file.constData()}), ExitStatus::Done);
    EXPECT_EQ(Results(), "");
}

TEST_F(SettingsFilesTest, LoadLimitsValuesAsTheProgramDoesAndSaysSo) {
    sim::SimulatedSensor &sensor = StartSensor();
    const QByteArray file = File("winder.ztv", {{28, 100}, {43, -7}, {95, 70000}, {66, 9}});
    EXPECT_EQ(Ctl({"load", "--yes", file.constData()}), ExitStatus::Done);
    const std::string messages = Messages();
    const std::string start = "ztv-ctl: " + file.toStdString() + ": parameter ";
    EXPECT_TRUE(messages.starts_with(
        start + "28 (Near Distance) is 1.00, which is beyond its limits; 6.00 is used\n" + start +
        "43 (Lost Target Action) is -7, which is beyond its limits; 0 is used\n" + start +
        "95 (User Number) is 70000, which is beyond its limits; 65535 is used\n"))
        << messages;
    EXPECT_EQ(messages.find("Baud"), std::string::npos); // the limit, too, is what the sensor has
    ExpectRegisters(sensor, {{28, 600}, {43, 0}, {95, 65535}});
}

TEST_F(SettingsFilesTest, LoadKeepsTheSettingsOfTheLine) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartSensorAt(7, addressing);
        const QByteArray file =
            File("winder.ztv", {{65, 17}, {66, 2}, {67, 3}, {68, 1 - addressing}, {29, 30000}});
        EXPECT_EQ(Ctl({"--address", "7", "load", "--yes", file.constData()}), ExitStatus::Done);
        EXPECT_TRUE(Messages().starts_with(
            "ztv-ctl: address 7: the file differs in Network Address (65), Baud Rate (66), "
            "Parity and Stop Bits (67) and 1 more; not loaded without --line-settings\n"));
        ExpectRegisters(sensor, {{65, 7}, {66, 4}, {67, 1}, {68, addressing}, {29, 30000}});
        Results();
        EXPECT_EQ(Ctl({"--address", "7", "diff", file.constData()}), ExitStatus::Done);
        EXPECT_EQ(Results(), "");
        EXPECT_EQ(Ctl({"--address", "7", "--format", "csv", "diff", "--line-settings", file.constData()}),
                  ExitStatus::Differs);
        EXPECT_EQ(std::ranges::count(Results(), '\n'), 1 + 4);
    }
}

TEST_F(SettingsFilesTest, LoadFollowsASensorToItsNewPlace) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartSensorAt(1, addressing);
        const QByteArray file =
            File("winder.ztv", {{65, 17}, {66, 2}, {67, 3}, {68, 1 - addressing}, {29, 30000}});
        EXPECT_EQ(Ctl({"load", "--yes", "--line-settings", file.constData()}), ExitStatus::Done);
        EXPECT_NE(Messages().find("the file differs in Addressing Mode (68); not loaded\n"),
                  std::string::npos);
        ExpectRegisters(sensor, {{65, 17}, {66, 2}, {67, 3}, {68, addressing}, {29, 30000}});
        Results();
        EXPECT_EQ(Ctl({"--address", "17", "--baud", "9600", "--parity", "O1", "get", "29"}),
                  ExitStatus::Done);
    }
}

TEST_F(SettingsFilesTest, LoadNeverGivesOneAddressToSeveralSensors) {
    StartLine({3, 5, 9});
    const QByteArray one = File("100%2winder.ztv", {{65, 17}});
    ExpectFailure({"--address", "3,5", "load", "--yes", "--line-settings", one.constData()},
                  ExitStatus::WrongUse, "/100%2winder.ztv would give its address to 2 sensors");
    EXPECT_TRUE(sensors_.front()->Requests().empty());

    File("line-3.ztv", {{65, 17}, {66, 4}, {67, 1}});
    File("line-5.ztv", {{65, 17}, {66, 4}, {67, 1}});
    const QByteArray each = Path("line-{address}.ztv").toLocal8Bit();
    EXPECT_EQ(Ctl({"--address", "3,5", "--quiet", "load", "--yes", "--line-settings", each.constData()}),
              ExitStatus::WrongUse);
    EXPECT_NE(Messages().find("both give the address 17"), std::string::npos);

    File("line-5.ztv", {{65, 9}});
    EXPECT_EQ(Ctl({"--address", "5", "--quiet", "load", "--yes", "--line-settings", each.constData()}),
              ExitStatus::Refused);
    EXPECT_NE(Messages().find("gives the address 9, at which another sensor answers"), std::string::npos);
    for (const auto &sensor : sensors_) {
        EXPECT_TRUE(sensor->Writes().empty());
    }

    File("line-5.ztv", {{65, 18}});
    EXPECT_EQ(Ctl({"--address", "3,5", "--quiet", "load", "--yes", "--line-settings", each.constData()}),
              ExitStatus::Done);
    EXPECT_EQ(sensors_.at(0)->Register(65), 17);
    EXPECT_EQ(sensors_.at(1)->Register(65), 18);
}

TEST_F(SettingsFilesTest, LoadAsksOnceForAllSensorsAndGoesOnAfterAFailure) {
    StartLine({3, 5});
    const QByteArray file = File("winder.ztv", {{28, 1300}});
    EXPECT_EQ(Ctl({"--address", "3-5", "load", file.constData()}), ExitStatus::WrongUse);
    EXPECT_EQ(Results(), "address  parameter  name                        sensor      file\n"
                         "3        28         Near Distance               12.00\"      13.00\"\n"
                         "5        28         Near Distance               12.00\"      13.00\"\n");
    EXPECT_NE(Messages().find("Write these 2 settings to 2 sensors? Nobody"), std::string::npos);
    EXPECT_EQ(Ctl({"--address", "3-5", "--format", "csv", "load", "--yes", file.constData()}),
              ExitStatus::NoConnection);
    EXPECT_EQ(Results(), "address,parameter,name,sensor,file,sensor_raw,file_raw\n"
                         "3,28,Near Distance,\"12.00\"\"\",\"13.00\"\"\",1200,1300\n"
                         "5,28,Near Distance,\"12.00\"\"\",\"13.00\"\"\",1200,1300\n");
    for (const auto &sensor : sensors_) {
        EXPECT_EQ(sensor->Register(28), 1300);
    }
}

TEST_F(SettingsFilesTest, LoadTakesTheFileOfEachSensor) {
    StartLine({3, 5});
    sensors_.back()->SetRegister(2, 777);
    File("10427.ztv", {{28, 1301}});
    File("777.ztv", {{28, 1302}});
    const QByteArray file = Path("{serial}.ztv").toLocal8Bit();
    EXPECT_EQ(Ctl({"--address", "3,5", "load", "--yes", file.constData()}), ExitStatus::Done);
    EXPECT_EQ(sensors_.front()->Register(28), 1301);
    EXPECT_EQ(sensors_.back()->Register(28), 1302);
    QFile::remove(Path("10427.ztv"));
    Results();
    EXPECT_EQ(Ctl({"--address", "3,5", "diff", file.constData()}), ExitStatus::File);
    EXPECT_NE(Messages().find("10427.ztv: there is no such file"), std::string::npos);
}

TEST_F(SettingsFilesTest, AForeignSlaveIsLoadedToo) {
    ModbusServer server(9);
    device_ = server.Path();
    for (const int addressing : {0, 1}) {
        for (int address = 0; address < 200; ++address) {
            server.SetRegister(address, 700);
        }
        server.SetRegister(69, addressing == 0 ? 21845 : 700);
        server.SetRegister(12 - addressing, 0); // the count of rows, by which a file is read
        const QByteArray file = File("winder.ztv", {{28, 1300}, {26, -500}});
        EXPECT_EQ(Ctl({"--address", "9", "load", "--yes", file.constData()}), ExitStatus::Done);
        EXPECT_EQ(server.Register(28 - addressing), 1300);
        EXPECT_EQ(static_cast<std::int16_t>(server.Register(26 - addressing)), -500);
        EXPECT_EQ(server.Register(1 - addressing), 0);
        EXPECT_EQ(server.Register(2 - addressing), 700); // read-only: as it was
        EXPECT_EQ(server.Register(65 - addressing), 700);
        EXPECT_EQ(server.Register(96 - addressing), 700); // beyond the table
        EXPECT_EQ(Ctl({"--address", "9", "diff", file.constData()}), ExitStatus::Done);
        const QByteArray saved = Path("foreign.ztv").toLocal8Bit();
        EXPECT_EQ(Ctl({"--address", "9", "save", "--yes", saved.constData()}), ExitStatus::Done);
        Results();
        EXPECT_EQ(Ctl({"diff", file.constData(), saved.constData()}), ExitStatus::Done);
    }
}

TEST_F(SettingsFilesTest, LoadSaysWhatASensorDidNotKeep) {
    sim::SimulatedSensor &sensor = StartSensor();
    bool isWritten = false;
    sensor.OnRequest([&](const QByteArray &request) {
        if (request.at(1) == 16) {
            isWritten = true;
        } else if (isWritten) { // the sensor changes what it was told
            for (const int tag : {24, 28, 29, 30, 95}) {
                sensor.SetRegister(tag, 999);
            }
        }
    });
    const QByteArray file = File("winder.ztv", {{28, 1300}});
    EXPECT_EQ(Ctl({"load", "--yes", file.constData()}), ExitStatus::Refused);
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: the sensor doesn't have what was written to Min Range (24), "
                          "Near Distance (28), Far Distance (29) and 2 more\n");
}

TEST_F(SettingsFilesTest, LoadStopsWhenTheSensorChangesBeforeTheWrite) {
    for (const auto &[tag, name] :
         std::map<int, std::string>{{29, "Far Distance (29)"}, {2, "Serial Number (2)"}}) {
        sim::SimulatedSensor &sensor = StartSensor();
        int reads = 0;
        sensor.OnRequest([&](const QByteArray &) {
            if (++reads == 3) { // mark and table twice
                sensor.SetRegister(tag, 30000);
            }
        });
        const QByteArray file = File("winder.ztv", {{28, 1300}});
        EXPECT_EQ(Ctl({"load", "--yes", file.constData()}), ExitStatus::Refused);
        EXPECT_EQ(Messages(), "ztv-ctl: address 1: the sensor has changed meanwhile: " + name +
                                  "; nothing was written\n");
        EXPECT_TRUE(sensor.Writes().empty());
    }
}

TEST_F(SettingsFilesTest, LoadReportsARefusalOfTheSensor) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) {
        if (request.at(1) == 16) {
            sensor.Execute(QStringLiteral("exception 2"));
        }
    });
    const QByteArray file = File("winder.ztv", {{28, 1300}});
    EXPECT_EQ(Ctl({"load", "--yes", file.constData()}), ExitStatus::Refused);
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: Illegal Data Address\n");
}

// However many replies are lost or damaged, "loaded" is said only of what the registers have.
TEST_F(SettingsFilesTest, LoadOnABadLineNeverClaimsWhatIsNotSo) {
    sim::SimulatedSensor &sensor = StartSensor();
    int loaded = 0;
    for (const char *fault : {"drop 0.3", "corrupt 0.3", "drop 0.6", "latency 30"}) {
        sensor.Execute(QStringLiteral("drop 0"));
        sensor.Execute(QStringLiteral("corrupt 0"));
        sensor.Execute(QString::fromLatin1(fault));
        for (int run = 0; run < 12; ++run) {
            const int value = 1300 + run + static_cast<int>(fault[0]);
            const QByteArray file = File("winder.ztv", {{28, value}, {29, value + 1}, {65, 9}, {66, 1}});
            const ExitStatus status = Ctl({"--timeout", "20", "--quiet", "load", "--yes", file.constData()});
            if (status == ExitStatus::Done) {
                ++loaded;
                ExpectRegisters(sensor, {{28, value}, {29, value + 1}});
                EXPECT_EQ(Messages(), "");
            } else {
                EXPECT_NE(Messages(), "");
            }
            EXPECT_EQ(sensor.Register(65), 1);
            EXPECT_EQ(sensor.Register(66), 4);
        }
    }
    EXPECT_GT(loaded, 5);
}

TEST_F(SettingsFilesTest, ALostConfirmationIsSettledByReadingBack) {
    for (const bool moves : {false, true}) {
        sim::SimulatedSensor &sensor = StartSensor();
        sensor.OnRequest([&](const QByteArray &request) {
            sensor.Execute(request.at(1) == 16 ? QStringLiteral("drop 1") : QStringLiteral("drop 0"));
        });
        const QByteArray file = File("winder.ztv", {{28, 1300}, {65, 17}, {66, 3}});
        std::vector<const char *> words = {"--timeout", "50", "load", "--yes", file.constData()};
        if (moves) {
            words.push_back("--line-settings");
        }
        EXPECT_EQ(Ctl(words), ExitStatus::Done);
        ExpectRegisters(sensor, {{28, 1300}, {65, moves ? 17 : 1}, {66, moves ? 3 : 4}});
        EXPECT_NE(Messages().find(moves ? "address 1: 3 settings loaded" : "address 1: 1 setting loaded"),
                  std::string::npos);
    }
}

// It would take another address only when it starts anew. After a request to another slave, libmodbus takes
// what comes within half a second for that slave's reply.
TEST_F(SettingsFilesTest, LoadFindsASensorThatStaysAtItsPlace) {
    ModbusServer server(9);
    device_ = server.Path();
    const QByteArray file = File("winder.ztv", {{28, 1300}, {65, 17}, {66, 2}, {67, 0}});
    EXPECT_EQ(
        Ctl({"--address", "9", "--timeout", "300", "load", "--yes", "--line-settings", file.constData()}),
        ExitStatus::Done);
    EXPECT_EQ(server.Register(28 - 1), 1300);
    EXPECT_EQ(server.Register(65 - 1), 17);
}

TEST_F(SettingsFilesTest, LoadSaysWhenItCannotReadBack) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) {
        if (request.at(1) == 16) {
            sensor.Execute(QStringLiteral("mute on"));
        }
    });
    const QByteArray file = File("winder.ztv", {{28, 1300}});
    EXPECT_EQ(Ctl({"--timeout", "20", "load", "--yes", file.constData()}), ExitStatus::NoConnection);
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: Timeout; the settings were sent, but not read back\n");
}

TEST_F(SettingsFilesTest, DiffComparesASensorWithAFile) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartSensorAt(1, addressing);
        const QByteArray same = File("same.ztv", {{1, 1}, {3, 99}, {2, 5}, {65, 9}, {14, 77}});
        EXPECT_EQ(Ctl({"diff", same.constData()}), ExitStatus::Done);
        EXPECT_EQ(Results(), "");
        EXPECT_EQ(Messages(), "");
        const QByteArray other = File("other.ztv", {{28, 1300}, {39, 2}, {65, 9}});
        EXPECT_EQ(Ctl({"diff", other.constData()}), ExitStatus::Differs);
        EXPECT_EQ(Results(),
                  "parameter  name                        sensor      file\n"
                  "28         Near Distance               12.00\"      13.00\"\n"
                  "39         Analog Output Mode          " +
                      ClassZentrova(ShippedPresetsFolder()).FormatRaw(1, 39).leftJustified(10).toStdString() +
                      "  " + ClassZentrova(ShippedPresetsFolder()).FormatRaw(2, 39).toStdString() + "\n");
        EXPECT_EQ(Ctl({"--format", "json", "diff", other.constData()}), ExitStatus::Differs);
        const QJsonArray rows = QJsonDocument::fromJson(QByteArray::fromStdString(Results())).array();
        ASSERT_EQ(rows.size(), 2);
        EXPECT_EQ(rows.at(0).toObject(),
                  (QJsonObject{{QStringLiteral("address"), 1},
                               {QStringLiteral("parameter"), 28},
                               {QStringLiteral("name"), QStringLiteral("Near Distance")},
                               {QStringLiteral("sensor"), QStringLiteral("12.00\"")},
                               {QStringLiteral("file"), QStringLiteral("13.00\"")},
                               {QStringLiteral("sensor_raw"), 1200},
                               {QStringLiteral("file_raw"), 1300}}));
        EXPECT_TRUE(sensor.Writes().empty());
    }
}

TEST_F(SettingsFilesTest, DiffOfSeveralSensorsTellsAFailureRatherThanADifference) {
    StartLine({3, 5});
    sensors_.back()->SetRegister(28, 1300);
    const QByteArray file = File("winder.ztv", {});
    EXPECT_EQ(Ctl({"--address", "3,5", "--format", "csv", "diff", file.constData()}), ExitStatus::Differs);
    EXPECT_EQ(Results(), "address,parameter,name,sensor,file,sensor_raw,file_raw\n"
                         "5,28,Near Distance,\"13.00\"\"\",\"12.00\"\"\",1300,1200\n");
    EXPECT_EQ(Ctl({"--address", "3-5", "diff", file.constData()}), ExitStatus::NoConnection);
    EXPECT_EQ(Ctl({"--address", "3", "diff", file.constData()}), ExitStatus::Done);
}

TEST_F(SettingsFilesTest, DiffComparesTwoFilesWithoutAPort) {
    device_ = QStringLiteral("/dev/nothing");
    const QByteArray first = File("first.ztv", {{28, 100}, {65, 9}});
    const QByteArray second = File("second.ztv", {{28, 1300}, {65, 10}});
    EXPECT_EQ(Ctl({"diff", first.constData(), second.constData()}), ExitStatus::Differs);
    EXPECT_EQ(Results(), "parameter  name                        first       second\n"
                         "28         Near Distance               6.00\"       13.00\"\n");
    EXPECT_EQ(Messages(), "ztv-ctl: " + first.toStdString() +
                              ": parameter 28 (Near Distance) is 1.00, which is beyond its limits; 6.00 is "
                              "used\n");
    EXPECT_EQ(Ctl({"--format", "csv", "diff", "--line-settings", first.constData(), second.constData()}),
              ExitStatus::Differs);
    EXPECT_EQ(Results(), "parameter,name,first,second,first_raw,second_raw\n"
                         "28,Near Distance,\"6.00\"\"\",\"13.00\"\"\",600,1300\n"
                         "65,Network Address,9,10,9,10\n");
    EXPECT_EQ(Ctl({"diff", first.constData(), first.constData()}), ExitStatus::Done);
    EXPECT_EQ(Results(), "");
}

TEST_F(SettingsFilesTest, DiffTellsValuesApartThatHaveOneText) {
    StartSensor().SetRegister(95, 1);
    ModbusServer server(9);
    device_ = server.Path();
    const QByteArray file = File("winder.ztv", {{39, 2}});
    server.SetRegister(38, 5); // parameter 39, whose highest value is 2
    EXPECT_EQ(Ctl({"--address", "9", "diff", file.constData()}), ExitStatus::Differs);
    const std::string text = ClassZentrova(ShippedPresetsFolder()).FormatRaw(2, 39).toStdString();
    EXPECT_NE(Results().find(text + " (5)  " + text + " (2)\n"), std::string::npos);
}

TEST_F(SettingsFilesTest, OnlyTheRowsOfAShortFileCount) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.SetRegister(95, 4711);
    const QByteArray file = File("short.ztv", {{12, 30}, {28, 1300}, {95, 9}});
    EXPECT_EQ(Ctl({"load", "--yes", file.constData()}), ExitStatus::Done);
    EXPECT_NE(Messages().find("the file ends with parameter 29; those after it don't count\n"),
              std::string::npos);
    ExpectRegisters(sensor, {{28, 1300}, {95, 4711}});
    for (const int count : {1, 0, -3}) {
        const QByteArray none = File("none.ztv", {{12, count}});
        EXPECT_EQ(Ctl({"--quiet", "diff", none.constData()}), ExitStatus::File);
        EXPECT_NE(Messages().find("the file has no settings"), std::string::npos);
    }
}

TEST_F(SettingsFilesTest, FilesThatAreNoneAreRejectedBeforeThePortIsOpened) {
    device_ = QStringLiteral("/dev/nothing");
    const QByteArray good = File("good.ztv", {});
    WriteFile(Path("empty.ztv"), "");
    WriteFile(Path("text.ztv"), QByteArray("Zentrova settings\n").repeated(500));
    WriteFile(Path("cut.ztv"), ReadFile(Path("good.ztv")).first(5000));
    QDir().mkpath(Path("folder.ztv"));
    const auto expectFailure = [&](const QString &name, const std::string &reason) {
        const QByteArray file = name.toLocal8Bit();
        ExpectFailure({"load", "--yes", file.constData()}, ExitStatus::File, reason);
        ExpectFailure({"diff", file.constData()}, ExitStatus::File, reason);
        ExpectFailure({"diff", good.constData(), file.constData()}, ExitStatus::File, reason);
    };
    expectFailure(Path("empty.ztv"), "there is no table Settings");
    expectFailure(Path("text.ztv"), "file is not a database");
    expectFailure(Path("cut.ztv"), "cut.ztv: ");
    expectFailure(Path("folder.ztv"), "this isn't a file");
    expectFailure(Path("missing.ztv"), "missing.ztv: there is no such file");
    expectFailure(Path("good"), "good: there is no such file; did you mean \"" + good.toStdString() + "\"?");
    expectFailure(QStringLiteral("/dev/zero"), "this isn't a file");
}

TEST_F(SettingsFilesTest, HostileFilesAreRejectedInOneLine) {
    device_ = QStringLiteral("/dev/nothing");
    const QByteArray good = File("good.ztv", {});
    const QString corpus = Path("corpus");
    QDir().mkpath(corpus);
    QProcess script;
    script.start(QStringLiteral("python3"),
                 {QStringLiteral(ZTV_TESTS_DIR "/model/hostile_files.py"), Path("good.ztv"), corpus});
    ASSERT_TRUE(script.waitForFinished(60000));
    const QStringList lines =
        QString::fromUtf8(script.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    EXPECT_GE(lines.size(), 40);
    for (const QString &line : lines) {
        const QByteArray file = (corpus + u'/' + line.section(u'\t', 0, 0)).toLocal8Bit();
        ExpectFailure({"--quiet", "diff", good.constData(), file.constData()}, ExitStatus::File,
                      line.section(u'\t', 1).toStdString());
    }
}

// Questions are asked on a terminal, which "script" gives the program.
class SettingsFilesProgramTest : public CtlProgramTest {
protected:
    void SetUp() override {
        CtlProgramTest::SetUp();
        SaveByProgram(file_, {{28, 1300}, {29, 30000}});
        qputenv("file", file_.toLocal8Bit());
    }
    ~SettingsFilesProgramTest() override { qunsetenv("file"); }

    int OnTerminal(const char *input, const char *command) {
        return Shell(QStringLiteral("printf '%1' | script -qec \"$ctl %2\" /dev/null")
                         .arg(QString::fromLatin1(input), QString::fromLatin1(command))
                         .toLatin1()
                         .constData());
    }

    QTemporaryDir files_;
    QString file_ = files_.filePath(QStringLiteral("winder.ztv"));
};

TEST_F(SettingsFilesProgramTest, LoadAsksAndWritesOnlyOnYes) {
    for (const char *no : {"n\\n", "\\n", "", "nyes\\n"}) {
        SCOPED_TRACE(no);
        EXPECT_EQ(OnTerminal(no, "load $file"), static_cast<int>(ExitStatus::Refused));
        EXPECT_NE(results_.find("Write these 2 settings to address 1? [y/N]"), std::string::npos) << results_;
        EXPECT_NE(results_.find("ztv-ctl: Nothing was written"), std::string::npos) << results_;
        EXPECT_TRUE(sensor_->Writes().empty());
    }
    for (const char *yes : {"y\\n", "YES\\n"}) {
        sensor_->SetRegister(28, 1200);
        EXPECT_EQ(OnTerminal(yes, "load $file"), 0);
        EXPECT_NE(results_.find(" loaded"), std::string::npos) << results_;
        EXPECT_EQ(sensor_->Register(28), 1300);
        EXPECT_EQ(sensor_->Register(29), 30000);
    }
}

TEST_F(SettingsFilesProgramTest, SaveAsksBeforeItReplacesAFile) {
    const QByteArray before = ReadFile(file_);
    for (const char *no : {"n\\n", "\\n", ""}) {
        EXPECT_EQ(OnTerminal(no, "save $file"), static_cast<int>(ExitStatus::Refused));
        EXPECT_NE(results_.find("? [y/N]"), std::string::npos) << results_;
        EXPECT_EQ(ReadFile(file_), before);
    }
    EXPECT_EQ(OnTerminal("y\\n", "save $file"), 0);
    EXPECT_NE(ReadFile(file_), before);
    EXPECT_EQ(Shell("$ctl diff $file"), 0);
    EXPECT_EQ(results_ + messages_, "");
}

TEST_F(SettingsFilesProgramTest, ASignalDuringTheQuestionEndsTheProgram) {
    EXPECT_EQ(Shell("python3 - <<'END'\n"
                    "import os, pty\n"
                    "pid, terminal = pty.fork()\n"
                    "if pid == 0:\n"
                    "    os.execvp('bash', ['bash', '-c', 'exec ' + os.environ['ctl'] + ' load $file'])\n"
                    "seen = b''\n"
                    "while b'[y/N]' not in seen:\n"
                    "    seen += os.read(terminal, 1000)\n"
                    "os.write(terminal, b'\\x03')\n"
                    "raise SystemExit(os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]))\n"
                    "END"),
              130);
    EXPECT_TRUE(sensor_->Writes().empty());
}

TEST_F(SettingsFilesProgramTest, ASignalDuringTheWriteLeavesNothingUnsaid) {
    const QString pidFile = files_.filePath(QStringLiteral("pid"));
    qputenv("pid", pidFile.toLocal8Bit());
    sensor_->OnRequest([&](const QByteArray &request) {
        if (request.at(1) == 16) {
            kill(ReadFile(pidFile).toInt(), SIGTERM);
        }
    });
    EXPECT_EQ(Shell("$ctl load --yes $file > /dev/null & echo $! > $pid; wait $!"), 128 + SIGTERM);
    EXPECT_EQ(messages_, "ztv-ctl: address 1: the settings were sent, but not read back\n");
    EXPECT_EQ(sensor_->Register(28), 1300);
    qunsetenv("pid");
}

TEST_F(SettingsFilesProgramTest, TheStatusTellsAScript) {
    EXPECT_EQ(Shell("$ctl diff $file"), 1);
    EXPECT_EQ(Shell("$ctl diff $file $file"), 0);
    EXPECT_EQ(Shell("$ctl load $file < /dev/null"), 2);
    EXPECT_EQ(Shell("$ctl --address 9 diff $file"), 3);
    EXPECT_EQ(Shell("$ctl diff nothing.ztv"), 5);
    EXPECT_EQ(Shell("$ctl save $file < /dev/null"), 5);
}

TEST_F(SettingsFilesProgramTest, LoadWritesNothingWhenItsReaderIsGone) {
    EXPECT_EQ(Shell("set -o pipefail; $ctl load --yes $file | true"), 128 + SIGPIPE);
    EXPECT_EQ(messages_, "");
    EXPECT_TRUE(sensor_->Writes().empty());
    EXPECT_EQ(Shell("$ctl diff $file > /dev/full"), 5);
}

} // namespace ztv
