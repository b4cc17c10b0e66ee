#include "model/SettingsFile.h"

#include "model/ClassZentrova.h"
#include "model/ParamDefines.h"
#include "support/ProgramVersion.h"
#include "support/SettingsFileType.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/FileSizeLimit.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace ztv {

namespace {

constexpr std::int16_t setting = ParamDefines::NearDistance;
constexpr std::int16_t readOnlyRow = ParamDefines::ActualDistance;

} // namespace

class SettingsFileTest : public testing::Test {
protected:
    SettingsFileTest() { link_.open = false; }

    QString Path(const char *name = "line 4.ztv") const { return folder_.filePath(QString::fromUtf8(name)); }

    void Change(const char *sql) const {
        SQLite::Database(Path().toStdString(), SQLite::OPEN_READWRITE).exec(sql);
    }

    // Runs the sqlite3 command and returns its output.
    QString Sqlite(const char *sql) const {
        QProcess process;
        process.start(QStringLiteral("sqlite3"), {Path(), QString::fromLatin1(sql)});
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    FileOpened Open() { return Open(Path()); }
    FileOpened Open(const QString &path) {
        const OpenOutcome outcome = zentrova_.OpenFile(path);
        const QString part = std::exchange(expectedFault_, {});
        EXPECT_EQ(outcome.fault.isEmpty(), part.isEmpty()) << outcome.fault.toStdString();
        EXPECT_TRUE(outcome.fault.contains(part)) << outcome.fault.toStdString();
        return outcome.result;
    }

    // Expects that the next opening fails with these words in its fault.
    void ExpectFault(const QString &part) { expectedFault_ = part; }

    QTemporaryDir folder_;
    QString expectedFault_;
    FakeLink link_;
    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

// Saving. -------------------------------------------------------------------------------------------

TEST_F(SettingsFileTest, HoldsTheTablesAndRecordsThatOthersRead) {
    zentrova_.ParamValue(setting, 4321);
    zentrova_.FileNotes(QStringLiteral("Unwinder, left"));
    EXPECT_FALSE(zentrova_.SaveFile(Path()));
    EXPECT_EQ(Sqlite("SELECT group_concat(name) FROM sqlite_schema"), QStringLiteral("Settings,Properties"));
    EXPECT_EQ(Sqlite("SELECT group_concat(name) FROM pragma_table_info('Settings')"),
              QStringLiteral("Tag,Name,Value"));
    EXPECT_EQ(Sqlite("SELECT group_concat(name) FROM pragma_table_info('Properties')"),
              QStringLiteral("Notes,SWVersion,UserUnits"));
    EXPECT_EQ(Sqlite("SELECT count(*), min(Tag), max(Tag), min(rowid), max(rowid), sum(Tag = rowid - 1) "
                     "FROM Settings"),
              QStringLiteral("96|0|95|1|96|96"));
    EXPECT_EQ(Sqlite("SELECT * FROM Settings WHERE Tag IN (0, 12, 28)"),
              QStringLiteral("0|Reserved|0\n12|Parameter Count|96\n28|Near Distance|4321"));
    EXPECT_EQ(Sqlite("SELECT * FROM Properties"),
              QStringLiteral("Unwinder, left|%1|Inches").arg(ProgramVersion()));
    EXPECT_EQ(Sqlite("PRAGMA application_id"), QString::number(SettingsFileType::ApplicationId));
    EXPECT_EQ(Sqlite("PRAGMA user_version"), QStringLiteral("1"));
    EXPECT_EQ(Sqlite("PRAGMA integrity_check"), QStringLiteral("ok"));
}

TEST_F(SettingsFileTest, TellsTheVersionOfTheProgram) {
    const QStringList numbers = ProgramVersion().split(u'.');
    ASSERT_EQ(numbers.size(), 3);
    for (const QString &number : numbers) {
        EXPECT_EQ(QString::number(number.toInt()), number);
    }
}

TEST_F(SettingsFileTest, ReplacesTheFileOfThatName) {
    zentrova_.SaveFile(Path());
    Change("INSERT INTO Settings VALUES (96, 'Extra', 1); CREATE TABLE Extra (x)");
    zentrova_.SaveFile(Path());
    EXPECT_EQ(Sqlite("SELECT count(*) FROM Settings"), QStringLiteral("96"));
    EXPECT_EQ(Sqlite("SELECT count(*) FROM sqlite_schema"), QStringLiteral("2"));
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"line 4.ztv"});
}

TEST_F(SettingsFileTest, ReplacesAReadOnlyFileAndAHiddenOne) {
    for (const char *name : {"line 4.ztv", ".hidden.ztv"}) {
        zentrova_.SaveFile(Path(name));
        QFile::setPermissions(Path(name), QFile::ReadOwner);
        zentrova_.ParamValue(setting, zentrova_.ParamValue(setting) + 1);
        EXPECT_FALSE(zentrova_.SaveFile(Path(name)));
        ClassZentrova other(ShippedPresetsFolder());
        EXPECT_EQ(other.OpenFile(Path(name)).result, FileOpened::Whole);
        EXPECT_EQ(other.ParamValue(setting), zentrova_.ParamValue(setting));
    }
}

TEST_F(SettingsFileTest, SavesThroughALink) {
    zentrova_.SaveFile(Path());
    ASSERT_TRUE(QFile::link(Path(), Path("link.ztv")));
    zentrova_.ParamValue(setting, 4321);
    zentrova_.SaveFile(Path("link.ztv"));
    EXPECT_TRUE(QFileInfo(Path("link.ztv")).isSymLink());
    EXPECT_EQ(Sqlite("SELECT Value FROM Settings WHERE Tag = 28"), QStringLiteral("4321"));
}

TEST_F(SettingsFileTest, TurnsEmptyNotesIntoOneBlank) {
    zentrova_.SaveFile(Path());
    EXPECT_EQ(zentrova_.FileNotes(), QStringLiteral(" "));
    EXPECT_EQ(Sqlite("SELECT '<' || Notes || '>' FROM Properties"), QStringLiteral("< >"));
    zentrova_.FileNotes(QString());
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.FileNotes(), QStringLiteral(" "));
}

TEST_F(SettingsFileTest, HasNothingToSaveAfterASave) {
    zentrova_.ParamValue(setting, 4321);
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
    zentrova_.SaveFile(Path());
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(SettingsFileTest, FaultsWhereNothingCanBeWritten) {
    zentrova_.ParamValue(setting, 4321);
    QDir(folder_.path()).mkdir(QStringLiteral("folder.ztv"));
    for (const QString &name : {Path("nowhere/line 4.ztv"), Path("folder.ztv"), QStringLiteral("/dev/null"),
                                Path(std::string(300, 'n').c_str()), QString()}) {
        try {
            zentrova_.SaveFile(name);
            ADD_FAILURE() << name.toStdString();
        } catch (const Fault &fault) {
            EXPECT_EQ(fault.Cause(), Fault::Kind::File);
            EXPECT_TRUE(fault.Description().startsWith(name)) << fault.what();
        }
    }
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
}

// The limit ends a write half-way, as a full disk does.
TEST_F(SettingsFileTest, KeepsTheOldFileWholeWhenTheDiskIsFull) {
    zentrova_.SaveFile(Path());
    QFile::setPermissions(Path(), QFile::ReadOwner);
    const QByteArray before = ReadFile(Path());
    zentrova_.ParamValue(setting, 4321);
    {
        const FileSizeLimit limit(5000);
        EXPECT_THROW(zentrova_.SaveFile(Path()), Fault);
    }
    EXPECT_TRUE(ReadFile(Path()) == before);
    EXPECT_FALSE(QFile::permissions(Path()) & QFile::WriteOwner);
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"line 4.ztv"});
}

TEST_F(SettingsFileTest, IsWholeWheneverItsWriterIsKilled) {
    constexpr int rounds = 60;
    zentrova_.SaveFile(Path());
    std::set<std::int32_t> seen;
    for (int round = 0; round < rounds; ++round) {
        const pid_t writer = fork();
        if (writer == 0) {
            try {
                for (std::int32_t value = 600;; value = value % 42000 + 1) {
                    zentrova_.ParamValue(setting, value);
                    zentrova_.SaveFile(Path());
                }
            } catch (...) {
                _exit(1);
            }
        }
        usleep(static_cast<useconds_t>(500 + round * 300)); // at a different moment of its saves each time
        kill(writer, SIGKILL);
        int status = 0;
        waitpid(writer, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status));
        ClassZentrova reader(ShippedPresetsFolder());
        ASSERT_EQ(reader.OpenFile(Path()).result, FileOpened::Whole);
        seen.insert(reader.ParamValue(setting));
    }
    EXPECT_GT(seen.size(), 1U); // it saved at least once
}

// Opening. ------------------------------------------------------------------------------------------

TEST_F(SettingsFileTest, BringsEveryRowButTheFirstBack) {
    for (std::int16_t tag = 0; tag < zentrova_.ParamCount(); ++tag) {
        const std::int32_t within = (zentrova_.ParamMin(tag) + zentrova_.ParamMax(tag)) / 2;
        zentrova_.ParamUpdate(tag, within);
    }
    zentrova_.FileNotes(QStringLiteral("Größe \"5\"\nzweite Zeile"));
    zentrova_.SaveFile(Path());
    Change("UPDATE Settings SET Value = 77 WHERE Tag = 0");
    ClassZentrova other(ShippedPresetsFolder());
    EXPECT_EQ(other.OpenFile(Path()).result, FileOpened::Whole);
    EXPECT_EQ(other.ParamValue(0), 0);
    for (std::int16_t tag = 1; tag < other.ParamCount(); ++tag) {
        EXPECT_EQ(other.ParamValue(tag), zentrova_.ParamValue(tag)) << tag;
    }
    EXPECT_EQ(other.FileNotes(), zentrova_.FileNotes());
    EXPECT_FALSE(other.FileChangesNeedSaving());
}

TEST_F(SettingsFileTest, KeepsNotesThatBeginWithAByteOrderMark) {
    const QString notes = QString(2, QChar(QChar::ByteOrderMark)) + QStringLiteral("left");
    zentrova_.FileNotes(notes);
    zentrova_.SaveFile(Path());
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.FileNotes(), notes);
}

TEST_F(SettingsFileTest, OpensAFileWithPagesOfAnySize) {
    for (int size = 512; size <= 65536; size *= 2) {
        SCOPED_TRACE(size);
        zentrova_.ParamValue(setting, 4000);
        zentrova_.SaveFile(Path());
        zentrova_.ParamValue(setting, 1000);
        Change(("PRAGMA page_size = " + std::to_string(size) + "; VACUUM").c_str());
        EXPECT_EQ(Sqlite("PRAGMA page_size"), QString::number(size));
        EXPECT_EQ(Open(), FileOpened::Whole);
        EXPECT_EQ(zentrova_.ParamValue(setting), 4000);
        // A description that doesn't fit in one small page.
        const std::string columns = "Extra" + std::string(200, 'x');
        Change(("ALTER TABLE Settings ADD COLUMN " + columns + "; ALTER TABLE Properties ADD COLUMN " +
                columns + "; CREATE INDEX More ON Settings (Name, " + columns + ")")
                   .c_str());
        zentrova_.ParamValue(setting, 1000);
        EXPECT_EQ(Open(), FileOpened::Whole);
        EXPECT_EQ(zentrova_.ParamValue(setting), 4000);
    }
}

TEST_F(SettingsFileTest, OpensAFileWithLongNotes) {
    constexpr qsizetype longest = 1 << 20;
    for (const qsizetype length : {qsizetype{4096}, qsizetype{4097}, longest - 1, longest}) {
        for (const char16_t letter : {u'n', u'ß', u'€'}) {
            const QString notes(length, QChar(letter));
            zentrova_.FileNotes(notes);
            zentrova_.SaveFile(Path());
            zentrova_.FileNotes({});
            EXPECT_EQ(Open(), FileOpened::Whole);
            EXPECT_TRUE(zentrova_.FileNotes() == notes) << length;
        }
    }
}

TEST_F(SettingsFileTest, CutsLongerNotesWithAWordAndLoadsTheRows) {
    constexpr qsizetype longest = 1 << 20;
    const auto ending = QStringLiteral("\n[The notes were longer and have been cut here.]");
    const QString wide = QString::fromUtf8("\U0001F4CF"); // two characters of UTF-16
    for (const QString &notes :
         {QString(longest + 1, u'n'), QString(3'000'000, u'n'), QString(9'000'000, u'€'),
          wide.repeated(longest), u'n' + wide.repeated(longest)}) {
        zentrova_.FileNotes(notes);
        zentrova_.ParamValue(setting, 4000);
        zentrova_.SaveFile(Path());
        zentrova_.ParamValue(setting, 1000);
        EXPECT_EQ(Open(), FileOpened::Whole);
        EXPECT_EQ(zentrova_.ParamValue(setting), 4000);
        const QString read = zentrova_.FileNotes();
        EXPECT_LE(read.size(), longest);
        EXPECT_GE(read.size(), longest - 1);
        EXPECT_TRUE(read.endsWith(ending));
        EXPECT_TRUE(notes.startsWith(read.chopped(ending.size())));
        EXPECT_TRUE(read.isValidUtf16());
        zentrova_.SaveFile(Path());
        EXPECT_EQ(Open(), FileOpened::Whole);
        EXPECT_TRUE(zentrova_.FileNotes() == read); // not cut again
    }
}

TEST_F(SettingsFileTest, LeavesTheMarkOfUnsavedChangesAsItWas) {
    zentrova_.SaveFile(Path());
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
    zentrova_.ParamValue(setting, 4321);
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
    EXPECT_EQ(zentrova_.ParamValue(setting), 1200);
}

TEST_F(SettingsFileTest, LimitsEachValueToItsRow) {
    zentrova_.SaveFile(Path());
    Change("UPDATE Settings SET Value = 42001 WHERE Tag = 28; UPDATE Settings SET Value = 599 WHERE Tag = 29;"
           "UPDATE Settings SET Value = 42000 WHERE Tag = 25; UPDATE Settings SET Value = 600 WHERE Tag = 24;"
           "UPDATE Settings SET Value = -10001 WHERE Tag = 26; UPDATE Settings SET Value = 2147483647 WHERE "
           "Tag = 32");
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.ParamValue(28), 42000);
    EXPECT_EQ(zentrova_.ParamValue(29), 600);
    EXPECT_EQ(zentrova_.ParamValue(25), 42000);
    EXPECT_EQ(zentrova_.ParamValue(24), 600);
    EXPECT_EQ(zentrova_.ParamValue(26), -10000);
    EXPECT_EQ(zentrova_.ParamValue(readOnlyRow), 65535);
}

TEST_F(SettingsFileTest, KnowsRowsByTheirPositionAlone) {
    zentrova_.SaveFile(Path());
    Change("UPDATE Settings SET Tag = 95 - Tag, Name = 'x'");
    zentrova_.ParamValue(setting, 4321);
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1200);
    // A row that moves to the end moves each later one up by one.
    Change(
        "UPDATE Settings SET rowid = 1000 WHERE rowid = 20; UPDATE Settings SET Value = 96 WHERE rowid = 13");
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.ParamValue(28), 36000); // of row 29, which is now the 28th
}

TEST_F(SettingsFileTest, LoadsNoMoreRowsThanTheFileCounts) {
    zentrova_.SaveFile(Path());
    zentrova_.ParamValue(27, 1500);
    zentrova_.ParamValue(28, 4321);
    Change("UPDATE Settings SET Value = 28 WHERE rowid = 13"); // rows 0 to 27
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.ParamValue(27), 1000);
    EXPECT_EQ(zentrova_.ParamValue(28), 4321);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::ParameterCount), 96); // limited like any value
}

TEST_F(SettingsFileTest, LoadsNoRowForACountOfOneOrLess) {
    zentrova_.SaveFile(Path());
    for (const int count : {1, 0, -32768}) {
        Change(("UPDATE Settings SET Value = " + std::to_string(count) +
                " WHERE rowid = 13;"
                "UPDATE Settings SET Value = 5000 WHERE Tag = 28; UPDATE Properties SET Notes = 'n" +
                std::to_string(count) + "'")
                   .c_str());
        EXPECT_EQ(Open(), FileOpened::Whole);
        EXPECT_EQ(zentrova_.ParamValue(28), 1200);
        EXPECT_EQ(zentrova_.FileNotes(), QStringLiteral("n%1").arg(count));
    }
}

TEST_F(SettingsFileTest, IgnoresRowsBeyondTheTable) {
    zentrova_.SaveFile(Path());
    Change("INSERT INTO Settings VALUES (96, 'Extra', 'no number'); "
           "UPDATE Settings SET Value = 97 WHERE rowid = 13;"
           "UPDATE Settings SET Value = 5000 WHERE Tag = 28");
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.ParamValue(28), 5000);
}

TEST_F(SettingsFileTest, OpensAFileOfAnotherTextEncoding) {
    SQLite::Database database(Path().toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec(
        "PRAGMA encoding = 'UTF-16le'; CREATE TABLE settings (value); CREATE TABLE PROPERTIES (NOTES);"
        "INSERT INTO Properties VALUES ('Größe');"
        "WITH RECURSIVE n(k) AS (SELECT 0 UNION ALL SELECT k + 1 FROM n WHERE k < 95) "
        "INSERT INTO Settings SELECT 96 FROM n");
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.FileNotes(), QStringLiteral("Größe"));
}

TEST_F(SettingsFileTest, OpensAFileWhateverItsName) {
    for (const char *name : {"50% #1?mode=rwc&x.ztv", "größe.ztv", "a'b\"c.ztv", "back\\slash.ztv"}) {
        zentrova_.SaveFile(Path(name));
        EXPECT_EQ(zentrova_.OpenFile(Path(name)).result, FileOpened::Whole) << name;
    }
}

TEST_F(SettingsFileTest, KeepsWhatIsLoadedBeforeAFault) {
    zentrova_.SaveFile(Path());
    Change("UPDATE Settings SET Value = 5000 WHERE Tag IN (25, 28); UPDATE Settings SET Value = 'x' WHERE "
           "Tag = 27;"
           "UPDATE Properties SET Notes = 'new'");
    ExpectFault(QStringLiteral("table Settings, record 27: column Value holds no whole number"));
    EXPECT_EQ(Open(), FileOpened::Failed);
    EXPECT_EQ(zentrova_.ParamValue(25), 5000);
    EXPECT_EQ(zentrova_.ParamValue(28), 1200);
    EXPECT_EQ(zentrova_.FileNotes(), QStringLiteral(" "));
}

TEST_F(SettingsFileTest, SaysSoWhenThereIsNoSuchFile) {
    ExpectFault(QStringLiteral("there is no such file"));
    EXPECT_EQ(Open(Path("nothing.ztv")), FileOpened::Failed);
    EXPECT_FALSE(QFile::exists(Path("nothing.ztv")));
}

TEST_F(SettingsFileTest, DoesNothingForAHostileFileButSaySo) {
    zentrova_.SaveFile(Path("good.ztv"));
    const QString corpus = folder_.filePath(QStringLiteral("corpus"));
    QDir().mkdir(corpus);
    QProcess script;
    script.start(QStringLiteral("python3"),
                 {QStringLiteral(ZTV_TESTS_DIR "/model/hostile_files.py"), Path("good.ztv"), corpus});
    ASSERT_TRUE(script.waitForFinished(60000));
    ASSERT_EQ(script.exitCode(), 0) << script.readAllStandardError().toStdString();
    const QStringList lines =
        QString::fromUtf8(script.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    EXPECT_GE(lines.size(), 40);
    const auto entries = [&corpus] {
        return QDir(corpus).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    };
    const QStringList before = entries();
    for (const QString &line : lines) {
        const QString file = corpus + u'/' + line.section(u'\t', 0, 0);
        SCOPED_TRACE(file.toStdString());
        const bool comparable = QFileInfo(file).isFile() && QFileInfo(file).size() < 10'000'000;
        const QByteArray content = comparable ? ReadFile(file) : QByteArray();
        ExpectFault(line.section(u'\t', 1));
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(Open(file), FileOpened::Failed);
        EXPECT_LT(clock.elapsed(), 5000);
        if (comparable) {
            EXPECT_TRUE(ReadFile(file) == content);
        }
        EXPECT_EQ(entries(), before);
    }
}

// Online. -------------------------------------------------------------------------------------------

class SettingsFileOnlineTest : public SettingsFileTest {
protected:
    SettingsFileOnlineTest() {
        zentrova_.SaveFile(Path());
        link_.open = true;
        zentrova_.ConnectTo(&link_);
    }
};

TEST_F(SettingsFileOnlineTest, DownloadsEveryRow) {
    Change("UPDATE Settings SET Value = 50000 WHERE Tag = 28");
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_TRUE(zentrova_.WriteAllPending());
    EXPECT_EQ(link_.downloadsDefined, 1);
    EXPECT_EQ(link_.downloadsStarted, 1);
    ASSERT_EQ(link_.downloaded.size(), 95U);
    for (std::size_t k = 0; k < link_.downloaded.size(); ++k) {
        const auto tag = static_cast<std::int16_t>(k + 1);
        EXPECT_EQ(link_.downloaded[k], std::make_pair(int{tag}, int{zentrova_.ParamValue(tag)}));
    }
    EXPECT_EQ(link_.downloaded[27].second, 42000);
    EXPECT_TRUE(link_.writes.empty());
    EXPECT_FALSE(zentrova_.ParamWritePending(28));
}

TEST_F(SettingsFileOnlineTest, TheDownloadReplacesTheValuesThatStillWaitButNoCommand) {
    Change("UPDATE Settings SET Value = 2000 WHERE Tag = 28");
    link_.busy = true;
    zentrova_.ParamValue(ParamDefines::NearDistance, 1300);
    zentrova_.ParamValue(ParamDefines::SaveCommand, ParamDefines::StoreSettings);
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::NearDistance), 2000);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes,
              (std::vector<std::pair<int, int>>{{ParamDefines::SaveCommand, ParamDefines::StoreSettings}}));
}

TEST_F(SettingsFileOnlineTest, AFileReplacesNoWaitingValueOfARowThatItLacks) {
    Change("UPDATE Settings SET Value = 28 WHERE rowid = 13");
    link_.busy = true;
    zentrova_.ParamValue(ParamDefines::MinRange, 700);
    zentrova_.ParamValue(ParamDefines::FarDistance, 30000);
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::FarDistance), 30000);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{ParamDefines::FarDistance, 30000}}));
}

TEST_F(SettingsFileOnlineTest, AFileThatFailsReplacesNoValueThatWaits) {
    Change("UPDATE Settings SET Value = 'x' WHERE Tag = 27");
    link_.busy = true;
    zentrova_.ParamValue(ParamDefines::MinRange, 700);
    zentrova_.ParamValue(ParamDefines::FarDistance, 30000);
    ExpectFault(QStringLiteral("record 27"));
    EXPECT_EQ(Open(), FileOpened::Failed);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::FarDistance), 30000);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{ParamDefines::MinRange, 700},
                                                              {ParamDefines::FarDistance, 30000}}));
}

// A command in the file was meant for the sensor that it was saved from.
TEST_F(SettingsFileOnlineTest, DownloadsNoCommand) {
    Change("UPDATE Settings SET Value = 1 WHERE Tag = 1; UPDATE Settings SET Value = 99 WHERE Tag = 3");
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(link_.downloaded.at(0), std::make_pair(1, 0));
    EXPECT_EQ(link_.downloaded.at(2), std::make_pair(3, 0));
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::SaveCommand), 1); // the table loads the file unchanged
    EXPECT_NE(zentrova_.ParamValue(ParamDefines::ReinitCommand), 0);
    EXPECT_FALSE(zentrova_.SaveFile(Path()));
    EXPECT_EQ(Sqlite("SELECT Value FROM Settings WHERE Tag = 1"), QStringLiteral("1"));
}

TEST_F(SettingsFileOnlineTest, GivesValuesForNoMoreRowsThanTheFileHolds) {
    Change("UPDATE Settings SET Value = 28 WHERE rowid = 13");
    EXPECT_EQ(Open(), FileOpened::Whole);
    EXPECT_EQ(link_.downloaded.size(), 27U);
    EXPECT_EQ(link_.downloadsStarted, 1);
}

TEST_F(SettingsFileOnlineTest, StartsNoDownloadAfterAFault) {
    Change("UPDATE Settings SET Value = 'x' WHERE Tag = 27");
    ExpectFault(QStringLiteral("record 27"));
    EXPECT_EQ(Open(), FileOpened::Failed);
    EXPECT_TRUE(zentrova_.WriteAllPending());
    EXPECT_EQ(link_.downloadsStarted, 0);
    zentrova_.WriteAllPending(false);
    Change("UPDATE Settings SET Value = 600 WHERE Tag = 27; DELETE FROM Properties");
    ExpectFault(QStringLiteral("Properties"));
    EXPECT_EQ(Open(), FileOpened::Failed);
    EXPECT_TRUE(zentrova_.WriteAllPending());
    EXPECT_EQ(link_.downloadsStarted, 0);
}

TEST_F(SettingsFileOnlineTest, StartsNothingForAFileThatCannotBeRead) {
    ExpectFault(QStringLiteral("there is no such file"));
    EXPECT_EQ(Open(Path("nothing.ztv")), FileOpened::Failed);
    EXPECT_FALSE(zentrova_.WriteAllPending());
    EXPECT_EQ(link_.downloadsDefined, 0);
}

} // namespace ztv
