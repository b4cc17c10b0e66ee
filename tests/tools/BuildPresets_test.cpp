#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QDateTime>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

namespace {

const QString header = QStringLiteral("generated/Roles.h");

// One change of a shipped table, and the first of the messages that it must lead to.
struct Mistake {
    const char *name;
    const char *file;
    QByteArray before; // stands once in the file, within a line
    QByteArray after;
    const char *messageFile; // whose line the message names
    QByteArray messageLine;  // stands in that line, once the change is made
    QByteArray message;
};

void PrintTo(const Mistake &mistake, std::ostream *out) {
    *out << mistake.name;
}

} // namespace

// The tables that are shipped, in a folder of their own, and what the program makes of them.
class BuildPresetsTest : public testing::Test {
protected:
    BuildPresetsTest() {
        for (const char *file : {"parameters.txt", "units.txt", "values.txt", "conditions.txt"}) {
            WriteFile(Path(file), ReadFile(QStringLiteral(ZTV_TESTS_DIR "/../data/") + QLatin1String(file)));
        }
    }

    QString Path(const QString &file) const { return folder_.filePath(file); }
    QString Path(const char *file) const { return Path(QLatin1String(file)); }
    QByteArray Text(const char *file) const { return ReadFile(Path(file)); }

    void Change(const char *file, const QByteArray &before, const QByteArray &after) const {
        QByteArray text = Text(file);
        ASSERT_EQ(text.count(before), 1) << before.constData();
        WriteFile(Path(file), text.replace(before, after));
    }

    // Returns the number of the first line that holds a text.
    int LineOf(const char *file, const QByteArray &text) const {
        const QByteArray whole = Text(file);
        const qsizetype at = whole.indexOf(text);
        EXPECT_GE(at, 0) << text.constData();
        return static_cast<int>(whole.left(at).count('\n')) + 1;
    }

    // Runs the program. Returns what it complains of, line by line; nothing when it has built all.
    QByteArrayList Complaints() const {
        QProcess program;
        program.setWorkingDirectory(folder_.path());
        program.start(QStringLiteral(ZTV_BIN_DIR "/build-presets"),
                      {QStringLiteral("parameters.txt"), QStringLiteral("units.txt"),
                       QStringLiteral("values.txt"), QStringLiteral("conditions.txt"),
                       QStringLiteral("Presets.fil"), QStringLiteral("some::roles"), header});
        EXPECT_TRUE(program.waitForFinished());
        QByteArrayList lines = program.readAllStandardError().split('\n');
        lines.removeLast();
        EXPECT_EQ(program.exitCode(), lines.isEmpty() ? 0 : 1);
        return lines;
    }

    // Renumbers the rows of the parameters from 0 on.
    void Renumber() const {
        int number = 0;
        QByteArrayList lines = Text("parameters.txt").split('\n');
        const QRegularExpression row(QStringLiteral("^ *[0-9N]+ \\|"));
        for (QByteArray &line : lines) {
            const auto match = row.match(QString::fromLatin1(line));
            if (match.hasMatch()) {
                line = QByteArray::number(number++) + " |" + line.mid(match.capturedLength());
            }
        }
        WriteFile(Path("parameters.txt"), lines.join('\n'));
    }

    QTemporaryDir folder_;
};

TEST_F(BuildPresetsTest, BuildsTheShippedPresetsFromTheShippedTables) {
    EXPECT_EQ(Complaints(), QByteArrayList());
    EXPECT_EQ(Text("Presets.fil"), ReadFile(QStringLiteral(ZTV_BIN_DIR "/Presets.fil")));
}

TEST_F(BuildPresetsTest, MakesAConstantOfEachRoleAndOfEachNamedValue) {
    ASSERT_EQ(Complaints(), QByteArrayList());
    const QByteArray text = ReadFile(Path(header));
    EXPECT_TRUE(text.contains("\nnamespace some::roles {\n"));
    EXPECT_TRUE(text.contains("\ninline constexpr std::int16_t NearDistance = 28; // Near Distance\n"));
    EXPECT_TRUE(text.contains("\ninline constexpr std::int32_t NoCommand = 0; // of SaveCommand and "
                              "ReinitCommand\n"));
    EXPECT_FALSE(text.contains("Smoothing")); // a row without a role
}

TEST_F(BuildPresetsTest, LeavesTheConstantsAloneWhileNoneOfThemChanges) {
    ASSERT_EQ(Complaints(), QByteArrayList());
    const QByteArray text = ReadFile(Path(header));
    QFile::setPermissions(Path(header), QFile::ReadOwner);
    const QDateTime written = QFileInfo(Path(header)).lastModified();
    Change("parameters.txt", "10427 |  10427", "10428 |  10428");
    EXPECT_EQ(Complaints(), QByteArrayList());
    EXPECT_EQ(QFileInfo(Path(header)).lastModified(), written);
    EXPECT_EQ(ReadFile(Path(header)), text);
    EXPECT_NE(Text("Presets.fil"), ReadFile(QStringLiteral(ZTV_BIN_DIR "/Presets.fil")));
}

TEST_F(BuildPresetsTest, TakesAnotherSensorWhoseRowsHaveOtherNumbers) {
    Change("parameters.txt", "   26 | -10000",
           "    N | 0 | 9 | 0 | 0 | no | no | 0 | 0 | Sound Speed | -\n   26 | -10000");
    Change("parameters.txt", "   12 |     96 |     96 |     96 |     96",
           "   12 |     97 |     97 |     97 |     97");
    Renumber();
    EXPECT_EQ(Complaints(), QByteArrayList());
    const QByteArray text = ReadFile(Path(header));
    EXPECT_TRUE(text.contains(" MaxRange = 25;"));
    EXPECT_TRUE(text.contains(" NearDistance = 29;"));
    EXPECT_TRUE(text.contains(" LastRawOutput = 91;"));
}

TEST_F(BuildPresetsTest, NamesEachMistakeOfATableOnce) {
    Change("parameters.txt", "| Near Distance                   | NearDistance",
           "| Near Distance | NearDistence");
    const QByteArrayList expected = {
        "conditions.txt:" + QByteArray::number(LineOf("conditions.txt", "MinRange MaxRange NearDistance")) +
            ": no parameter has the role NearDistance",
        "parameters.txt:" + QByteArray::number(LineOf("parameters.txt", "NearDistence")) +
            ": no condition names the role NearDistence"};
    EXPECT_EQ(Complaints(), expected);
    EXPECT_FALSE(QFile::exists(Path("Presets.fil")));
    EXPECT_FALSE(QFile::exists(Path(header)));
}

TEST_F(BuildPresetsTest, KeepsWhatItHasBuiltWhenATableIsRefused) {
    ASSERT_EQ(Complaints(), QByteArrayList());
    const QByteArray presets = Text("Presets.fil");
    const QByteArray text = ReadFile(Path(header));
    Change("values.txt", "|    99 |", "|   100 |");
    EXPECT_EQ(Complaints().size(), 1);
    EXPECT_EQ(Text("Presets.fil"), presets);
    EXPECT_EQ(ReadFile(Path(header)), text);
}

TEST_F(BuildPresetsTest, SaysThatATableIsMissing) {
    QFile::remove(Path("units.txt"));
    EXPECT_EQ(Complaints(), QByteArrayList{"units.txt: can't be opened"});
}

class RefusedTable : public BuildPresetsTest, public testing::WithParamInterface<Mistake> {};

TEST_P(RefusedTable, NamesTheLine) {
    const Mistake &mistake = GetParam();
    Change(mistake.file, mistake.before, mistake.after);
    const QByteArray file(mistake.messageFile);
    const QByteArray message = file + ':' +
                               QByteArray::number(LineOf(mistake.messageFile, mistake.messageLine)) + ": " +
                               mistake.message;
    const QByteArrayList complaints = Complaints();
    ASSERT_FALSE(complaints.isEmpty());
    EXPECT_EQ(complaints.first(), message);
}

namespace {

constexpr const char *parameters = "parameters.txt";
constexpr const char *units = "units.txt";
constexpr const char *values = "values.txt";
constexpr const char *conditions = "conditions.txt";

const Mistake mistakes[] = {
    // Roles
    {"ARoleTwice", "parameters.txt", "| MinRange", "| MaxRange", parameters, "Max Range ",
     "row 24 has the role MaxRange already"},
    {"ARoleThatIsNoName", "parameters.txt", "| MinRange", "| Min-Range", parameters, "Min-Range",
     "\"Min-Range\" is not a name like NearDistance"},
    {"ARoleThatIsAWordOfTheLanguage", "parameters.txt", "| MinRange", "| switch", parameters, "switch",
     "\"switch\" is not a name like NearDistance"},
    {"ARoleThatBeginsWithADigit", "parameters.txt", "| MinRange", "| 2Range", parameters, "2Range",
     "\"2Range\" is not a name like NearDistance"},
    {"ARoleThatIsMissing", "parameters.txt", "| ClockOut", "| -", conditions, "ClockOut",
     "no parameter has the role ClockOut"},
    {"ARoleOfWhichNothingIsKnown", "parameters.txt", "User Number                     | -",
     "User Number | UserNumber", parameters, "UserNumber", "no condition names the role UserNumber"},
    {"AMissingRoleInAComparison", "conditions.txt", "MinRange.Preset + 106", "LeastRange.Preset + 106",
     conditions, "LeastRange", "no parameter has the role LeastRange"},

    // Columns and rows
    {"AnUnknownColumn", "parameters.txt", "| Role\n", "| Rolle\n", parameters, "| Rolle",
     "there is no column \"Rolle\""},
    {"AColumnTooMany", "parameters.txt", "| Role\n", "| Role | Group\n", parameters, "| Group",
     "there is no column \"Group\""},
    {"AColumnTwice", "parameters.txt", "| Role\n", "| Role | Name\n", parameters, "| Role | Name",
     "column \"Name\" stands twice"},
    {"AColumnThatIsMissing", "units.txt", " | UnitText4", "", units, "UnitText3",
     "column 6 must be \"UnitText4\""},
    {"ColumnsInAnotherOrder", "values.txt", "| Value | Name", "| Name | Value", values, "| Name | Value",
     "column 2 must be \"Value\""},
    {"ACellTooMany", "units.txt", "| 38400", "| 38400 | 57600", units, "57600",
     "7 columns where 6 are wanted"},
    {"ARowAtTheWrongPlace", "parameters.txt", "   14 |      0 |  65535 |", "   15 |      0 |  65535 |",
     parameters, "Run Hours", "row 15 stands where row 14 is wanted"},
    {"ACellThatIsNoNumber", "parameters.txt", "| -10000 |", "| -1OOOO |", parameters, "-1OOOO",
     "\"-1OOOO\" is not a whole number of 32 bits"},
    {"AFlagThatIsNone", "parameters.txt", "| yes      | yes    |     0 |             1 | Air",
     "| ja | yes | 0 | 1 | Air", parameters, "| ja |", "\"ja\" is neither \"yes\" nor \"no\""},
    {"ACharacterBeyondAscii", "units.txt", "| Heavy", "| H\xc3\xa4vy", units, "| None",
     "only printable ASCII characters are allowed"},
    {"ANameTwice", "parameters.txt", "| Max Range ", "| Min Range ", parameters, "| MaxRange",
     "row 24 has the name \"Min Range\" already"},

    // Named values
    {"AValueOfNoRole", "values.txt", "EchoReceived ", "EchoRecieved ", values, "EchoRecieved",
     "no parameter has the role EchoRecieved"},
    {"AValueBeyondTheLimits", "values.txt", "|    99 |", "|   100 |", values, "EnterBootLoader",
     "ReinitCommand can't be 100"},
    {"AValueNameTwice", "values.txt", "| LinearMode", "| ManualMode", values, "|     1 | ManualMode",
     "the name ManualMode is taken already"},
    {"AValueNameThatIsARole", "values.txt", "| LinearMode", "| ClockOut", values, "ClockOut",
     "the name ClockOut is taken already"},
    {"AValueNameThatIsNone", "values.txt", "| LinearMode", "| linear mode", values, "linear mode",
     "\"linear mode\" is not a name like NearDistance"},

    // Units
    {"ALongSuffix", "units.txt", "| s  ", "| sec", units, "| sec",
     "unit 12 must have one character in UnitText0 and nothing else"},
    {"AGapBetweenTexts", "units.txt", "| Off       | On           |             |", "| Off | | On |", units,
     "| Off | | On |", "unit 2 must have no gap between its texts"},
    {"AUnitTextTwice", "units.txt", "| Off       | On ", "| On | On ", units, "| On | On",
     "unit 2 must have no text twice"},
    {"AnotherDisplayUnit", "units.txt", "| Inches", "| cm", units, "| cm",
     "unit 10 must be the inch, which settings files name"},

    // Conditions that a row breaks
    {"APresetBeyondTheLimits", "parameters.txt", "2400 |    500 |    500", "2400 |   2500 |    500",
     parameters, "Blanking Distance",
     "parameter 76 (Blanking Distance) must have its preset within its limits"},
    {"ATextThatIsMissing", "parameters.txt", "|    11 |", "|     5 |", parameters, "Lost Target Action",
     "parameter 43 (Lost Target Action) must have a text for every value"},
    {"AWriteProtectedSetting", "parameters.txt", "| no       | no     |     2 |             0 | Clock Out",
     "| yes | no | 2 | 0 | Clock Out", parameters, "Clock Out", "parameter 23 (Clock Out) must be writable"},
    {"ABaudRateLeftOut", "units.txt", "| 9600        | 19200        | 38400", "| 19200 | 38400 | 57600",
     parameters, "BaudRateCode", "parameter 66 (Baud Rate) must list the baud rates"},
    {"AnotherUnitOfLength", "units.txt", "1 | \"", "1 | '", parameters, "| MinRange",
     "parameter 24 (Min Range) must be in inches with two decimals"},
    {"AMarkThatMayFollowItself", "parameters.txt", "   70 |      0 |    100", "   70 |      0 |  30000",
     parameters, "   70 |", "parameter 70 (Response Delay (ms)) must never hold the addressing mark"},
    {"APresetTooNear", "parameters.txt", "   28 |    600 |  42000 |   1200 |   1200",
     "   28 | 600 | 42000 | 705 | 705", parameters, "| NearDistance",
     "parameter 28 (Near Distance) must have a preset at least 1.06 inches above that of the min range"},
    {"ARawOutputOfItsOwn", "parameters.txt", "   85 |      0 |   4095", "   85 |      0 |   4096", parameters,
     "Output Raw at 5 V", "parameter 85 (Output Raw at 5 V) must take the 12 bits of the output stage"},
    {"AWrongCount", "parameters.txt", "   12 |     96 |     96 |     96 |     96",
     "   12 | 95 | 95 | 95 | 95", parameters, "ParameterCount",
     "parameter 12 (Parameter Count) must hold the number of parameters"},
    {"TwoRelaysThatSwitchTogether", "parameters.txt", "   58 |    600 |  42000 |   7200 |   7200",
     "   58 | 600 | 42000 | 24000 | 24000", parameters, "Relay1OffThreshold",
     "parameter 58 (Relay 1 Off Threshold) must have a preset that differs from those of the other "
     "thresholds"},

    // Conditions that can't be read
    {"AComparisonOfNothing", "conditions.txt", "Preset = LinearMode", "LinearMode", conditions,
     "| LinearMode ", "\"LinearMode\" is not a comparison"},
    {"AnUnknownColumnInAComparison", "conditions.txt", "Preset = Min ", "Preset = Least ", conditions,
     "Preset = Least", "\"Least\" is neither a column nor a number"},
    {"ASumWithoutANumber", "conditions.txt", "Preset + 500 <= 4950", "Preset + <= 4950", conditions,
     "Preset + <=", "\"+\" is not at its place"},
    {"TextsThatAreNotCompared", "conditions.txt", "Texts = Internal/External", "Texts < Internal/External",
     conditions, "Texts <", "\"Texts < Internal/External\" is not a comparison of texts"},
    {"RowsThatAreNone", "conditions.txt",
     "FirstRawOutput..LastRawOutput                                                     |",
     "LastRawOutput..FirstRawOutput |", conditions, "LastRawOutput..FirstRawOutput |",
     "\"LastRawOutput..FirstRawOutput\" names no row"},
    {"ARowBeyondTheTable", "conditions.txt", "AddressingMark+1 |", "AddressingMark+100 |", conditions,
     "AddressingMark+100", "\"169\" is the number of no row"},
    {"ARowAfterNothing", "conditions.txt", "AddressingMark+1 |", "AddressingMark+ |", conditions,
     "AddressingMark+ |", "\"AddressingMark+\" names no row"},
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mistakes, RefusedTable, testing::ValuesIn(mistakes),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace ztv
