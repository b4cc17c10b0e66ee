#include "tests/cli/CommandsTest.h"
#include "tests/cli/CtlUsage.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/SharedLine.h"
#include "tests/helpers/Wait.h"

#include <QDate>
#include <QProcess>
#include <QStandardPaths>

namespace ztv {

namespace {

const char *const docsPage = "docs/command-line.md";

// Returns the fenced blocks of shell in a section of the docs page.
QStringList BlocksOf(const char *heading) {
    const QString page = SourceText(docsPage);
    const qsizetype start = page.indexOf(QStringLiteral("\n## %1\n").arg(QString::fromUtf8(heading)));
    EXPECT_GE(start, 0) << heading;
    const QString section = page.mid(start, page.indexOf(QStringLiteral("\n## "), start + 1) - start);
    QStringList blocks;
    for (const QString &part : section.split(QStringLiteral("```sh\n")).mid(1)) {
        blocks.append(part.section(QStringLiteral("```"), 0, 0));
    }
    EXPECT_FALSE(blocks.isEmpty()) << heading;
    return blocks;
}

} // namespace

// The recipes of the docs page as they stand there, in a shell, with the program in its path and ten sensors.
class RecipesTest : public CommandsTest {
protected:
    RecipesTest() {
        for (int address = 1; address <= 10; ++address) {
            sim::SensorOptions options;
            options.address = address;
            StartSensor(options);
            sensors_.back()->SetRegister(2, 10400 + address);
            line_.Join(*sensors_.back());
        }
        device_ = line_.Path();
    }

    sim::SimulatedSensor &Sensor(int address) { return *sensors_.at(static_cast<std::size_t>(address) - 1); }

    int Shell(const QString &commands) {
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PATH"),
                           QStringLiteral(ZTV_BIN_DIR ":") + environment.value(QStringLiteral("PATH")));
        environment.insert(QStringLiteral("ZTVLINK_PORT_1"), device_);
        environment.insert(QStringLiteral("HOME"), folder_.path());
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(folder_.path());
        shell.start(QStringLiteral("sh"), {QStringLiteral("-ec"), commands});
        EXPECT_TRUE(WaitUntil([&] { return shell.state() == QProcess::NotRunning; }, 60000));
        printed_ = QString::fromUtf8(shell.readAllStandardOutput());
        messages_ = shell.readAllStandardError().toStdString();
        return shell.exitCode();
    }

    QString File(const char *name) const { return folder_.filePath(QString::fromUtf8(name)); }

    SharedLine line_;
    QTemporaryDir folder_;
    QString printed_;
    std::string messages_;
};

TEST_F(RecipesTest, TenSensorsTheSameWay) {
    const QStringList blocks = BlocksOf("Ten sensors the same way");
    Sensor(1).SetRegister(28, 2000);
    Sensor(1).SetRegister(75, 40);
    EXPECT_EQ(Shell(blocks.at(0)), 0) << messages_;
    for (int address = 1; address <= 10; ++address) {
        EXPECT_EQ(Sensor(address).Register(28), 2000);
        EXPECT_EQ(Sensor(address).Register(75), 40);
        EXPECT_EQ(Sensor(address).Register(65), address);
    }
    EXPECT_EQ(Shell(blocks.at(1)), 0) << messages_;
    for (int address = 1; address <= 10; ++address) {
        EXPECT_EQ(Sensor(address).Register(28), 1250);
        EXPECT_EQ(Sensor(address).Register(42), 30);
    }
}

TEST_F(RecipesTest, CheckBeforeShipping) {
    const QStringList blocks = BlocksOf("Check before shipping");
    EXPECT_EQ(Shell(QStringLiteral("ztv-ctl --address 1 save winder.ztv; ") + blocks.at(0)), 0) << messages_;
    EXPECT_TRUE(printed_.endsWith(QStringLiteral("ZTV500-100,10401,2.14: good\n"))) << printed_.toStdString();
    Sensor(1).Execute(QStringLiteral("set 38 0"));
    EXPECT_EQ(Shell(QStringLiteral("./check-sensor winder.ztv")), 1) << messages_;
    EXPECT_TRUE(printed_.endsWith(QStringLiteral(": sees no target\n"))) << printed_.toStdString();
    Sensor(1).SetRegister(28, 2000);
    EXPECT_EQ(Shell(QStringLiteral("./check-sensor winder.ztv")), 1);
    EXPECT_TRUE(ReadFile(File("differences.txt")).contains("Near Distance"));
    Sensor(1).Execute(QStringLiteral("mute on"));
    EXPECT_EQ(Shell(QStringLiteral("./check-sensor winder.ztv")), 3);
}

TEST_F(RecipesTest, LogAWeekAndPlotIt) {
    const QStringList blocks = BlocksOf("Log a week and plot it");
    QString log = blocks.at(0);
    EXPECT_TRUE(log.contains(QStringLiteral("--every 1000 --for 7d")));
    log.replace(QStringLiteral("--every 1000 --for 7d"), QStringLiteral("--every 100 --for 2s"));
    Sensor(1).Execute(QStringLiteral("drop 0.3"));
    EXPECT_EQ(Shell(log), 0) << messages_;
    const QList<QByteArray> rows = ReadFile(File("week.csv")).trimmed().split('\n');
    EXPECT_EQ(rows.at(0), "time,address,Actual Distance,Output Voltage,lost");
    EXPECT_GT(rows.size(), 5);
    if (QStandardPaths::findExecutable(QStringLiteral("gnuplot")).isEmpty()) {
        GTEST_SKIP() << "gnuplot isn't installed: the log was made, but not plotted";
    }
    EXPECT_EQ(Shell(blocks.at(1)), 0) << messages_;
    EXPECT_TRUE(ReadFile(File("week.png")).startsWith("\x89PNG"));
}

TEST_F(RecipesTest, BackUpALineEveryNight) {
    const QStringList blocks = BlocksOf("Back up a line every night");
    EXPECT_EQ(Shell(blocks.at(0)), 0) << messages_;
    const QString day = QDate::currentDate().toString(Qt::ISODate);
    const QString folder = File("sensor-backups/") + day;
    for (int address = 1; address <= 10; ++address) {
        EXPECT_TRUE(QFile::exists(QStringLiteral("%1/%2.ztv").arg(folder).arg(10400 + address))) << address;
    }
    Sensor(4).Execute(QStringLiteral("mute on"));
    EXPECT_EQ(Shell(QStringLiteral("./backup-line \"$HOME/sensor-backups\"")), 3);
    EXPECT_EQ(messages_, "ztv-ctl: address 4: Timeout\n");
}

// The heads of CSV against what the docs page and the man page promise.
class ColumnsTest : public RecipesTest {
protected:
    // Returns what the docs page says in the row of a command, as the man page has it.
    static QString Documented(const char *row) {
        const QString page = SourceText(docsPage);
        const QString start = QStringLiteral("\n| %1 | ").arg(QString::fromLatin1(row));
        const QString formats = page.mid(page.indexOf(QStringLiteral("\n## Formats")));
        EXPECT_TRUE(formats.contains(start)) << row;
        return formats.section(start, 1, 1).section(QStringLiteral(" |\n"), 0, 0).remove(u'`');
    }

    void ExpectColumns(const char *row, const std::vector<const char *> &words) {
        std::vector<const char *> all = {"--format", "csv"};
        all.insert(all.end(), words.begin(), words.end());
        EXPECT_EQ(Ctl(all), ExitStatus::Done) << Messages();
        QString columns = Documented(row);
        EXPECT_TRUE(SourceText("packaging/ztv-ctl.1.in").replace(u'\n', u' ').contains(columns)) << row;
        columns.replace(QStringLiteral("the names of the parameters"), QStringLiteral("Near Distance"));
        const QString head = QString::fromStdString(Results()).section(u'\n', 0, 0);
        EXPECT_EQ(head.toStdString(),
                  columns.replace(QStringLiteral(", "), QStringLiteral(",")).toStdString());
    }
};

TEST_F(ColumnsTest, OfListsAndReadsAreDocumented) {
    ExpectColumns("`ports`", {"ports"});
    ExpectColumns("`parameters`", {"parameters"});
    ExpectColumns("`search`", {"search", "--from", "1", "--to", "1"});
    ExpectColumns("`info`", {"info"});
    ExpectColumns("`get`", {"get", "28"});
    ExpectColumns("`watch`", {"watch", "28", "--for", "1s"});
    ExpectColumns("`trace`", {"trace", "28", "--for", "1s"});
}

TEST_F(ColumnsTest, OfSettingsAndFilesAreDocumented) {
    const QByteArray file = File("saved.ztv").toLocal8Bit();
    ExpectColumns("`set`, `reinit`", {"set", "--dry-run", "28=13"});
    ExpectColumns("`set`, `reinit`", {"reinit", "--dry-run"});
    ExpectColumns("`store`", {"store"});
    ExpectColumns("`save`", {"save", file.constData()});
    ExpectColumns("`load`, `diff` of a sensor", {"load", "--dry-run", file.constData()});
    ExpectColumns("`load`, `diff` of a sensor", {"diff", file.constData()});
    ExpectColumns("`diff` of two files", {"diff", file.constData(), file.constData()});
}

TEST_F(ColumnsTest, OfAnUpgradeAreDocumented) {
    const QString firmware = File("upgrade.hex");
    OutputOf(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"), {QStringLiteral("--make-firmware"), firmware});
    const QByteArray file = firmware.toLocal8Bit();
    ExpectColumns("`flash --dry-run`", {"flash", "--dry-run", file.constData()});
}

} // namespace ztv
