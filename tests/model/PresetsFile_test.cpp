#include "model/PresetsFile.h"

#include "model/ClassZentrova.h"
#include "model/ParamDefines.h"
#include "model/UnitClass.h"
#include "support/Fault.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <QFile>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace ztv {

namespace {

// Reads the changed presets and returns the message of the fault.
std::string FaultOf(const char *sql) {
    const ChangedPresets presets(sql);
    try {
        ClassZentrova zentrova(presets.Folder());
    } catch (const Fault &fault) {
        return fault.what();
    }
    return "no fault";
}

void ExpectFault(const char *sql, const char *part) {
    const std::string message = FaultOf(sql);
    EXPECT_NE(message.find(part), std::string::npos) << message;
    EXPECT_NE(message.find("Presets.fil"), std::string::npos) << message;
}

} // namespace

TEST(PresetsFileFault, NamesTheMissingFile) {
    const QTemporaryDir empty;
    try {
        ReadPresetsFile(empty.filePath(QStringLiteral("Presets.fil")));
        FAIL();
    } catch (const Fault &fault) {
        EXPECT_EQ(fault.Cause(), Fault::Kind::Database);
        EXPECT_NE(std::string(fault.what()).find("there is no such file"), std::string::npos);
    }
}

TEST(PresetsFileFault, TellsAFileThatIsNoDatabase) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("Presets.fil")));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(QByteArray(5000, 'x'));
    file.close();
    try {
        ReadPresetsFile(file.fileName());
        FAIL();
    } catch (const Fault &fault) {
        EXPECT_NE(std::string(fault.what()).find("file is not a database"), std::string::npos)
            << fault.what();
    }
}

TEST(PresetsFileFault, TellsATruncatedDatabase) {
    const ChangedPresets presets("SELECT 1");
    QFile file(presets.Folder() + QStringLiteral("/Presets.fil"));
    ASSERT_TRUE(file.resize(file.size() / 2));
    EXPECT_THROW(ReadPresetsFile(file.fileName()), Fault);
}

TEST(PresetsFileFault, TellsAMissingTable) {
    ExpectFault("DROP TABLE Parameters", "no table Parameters");
    ExpectFault("DROP TABLE Units", "no table Units");
}

TEST(PresetsFileFault, TellsAMissingColumn) {
    ExpectFault("ALTER TABLE Parameters RENAME COLUMN DecimalPlaces TO Decimals",
                "no such column: DecimalPlaces");
    ExpectFault("ALTER TABLE Units RENAME COLUMN UnitText4 TO Text4", "no such column: UnitText4");
}

TEST(PresetsFileFault, TellsATableWithFewerRecordsThanItsCount) {
    ExpectFault("DELETE FROM Parameters WHERE rowid > 90", "has 90 records, fewer than its count 96");
    ExpectFault("DELETE FROM Parameters WHERE rowid > 12", "has 12 records, and the parameter count");
    ExpectFault("DELETE FROM Parameters", "has 0 records");
    ExpectFault("DELETE FROM Units", "Units has no records");
}

TEST(PresetsFileFault, TellsACountThatDoesNotFit) {
    ExpectFault("UPDATE Parameters SET Value = 32768 WHERE rowid = 13",
                "record 12: column Value holds 32768");
    ExpectFault("UPDATE Parameters SET Value = 0 WHERE rowid = 13", "record 12: column Value holds 0");
    ExpectFault("UPDATE Parameters SET Value = -1 WHERE rowid = 13", "holds -1");
}

TEST(PresetsFileFault, TellsAValueOfTheWrongKind) {
    ExpectFault("UPDATE Parameters SET Min = 'low' WHERE rowid = 6",
                "record 5: column Min holds no whole number");
    ExpectFault("UPDATE Parameters SET Max = 2147483648 WHERE rowid = 6", "column Max holds 2147483648");
    ExpectFault("UPDATE Parameters SET Units = 40000 WHERE rowid = 6", "column Units holds 40000");
    ExpectFault("UPDATE Parameters SET Preset = NULL WHERE rowid = 6", "column Preset holds no whole number");
    ExpectFault("UPDATE Parameters SET Name = NULL WHERE rowid = 6", "column Name holds no text");
    ExpectFault("UPDATE Units SET UnitText1 = zeroblob(4) WHERE rowid = 3", "UnitText1 holds no text");
    ExpectFault("UPDATE Parameters SET Name = printf('%.*c', 5000, 'x') WHERE rowid = 6",
                "text of more than 4096 characters");
}

TEST(PresetsFileFault, TakesNothingButAPlainTable) {
    ExpectFault("ALTER TABLE Parameters RENAME TO Hidden; CREATE VIEW Parameters AS SELECT * FROM Hidden",
                "Parameters isn't a plain table");
    ExpectFault(
        "DROP TABLE Units; CREATE /**/ VIRTUAL TABLE Units USING fts5(UnitText0, UnitText1, UnitText2, "
        "UnitText3, UnitText4)",
        "Units isn't a plain table");
    ExpectFault(
        "DROP TABLE Units; CREATE TABLE Units(UnitText0 TEXT PRIMARY KEY, UnitText1 TEXT, UnitText2 TEXT, "
        "UnitText3 TEXT, UnitText4 TEXT) WITHOUT ROWID",
        "Units isn't a plain table");
}

TEST(PresetsFileFault, TakesNothingButPlainColumns) {
    ExpectFault("ALTER TABLE Units DROP COLUMN UnitText4;"
                "ALTER TABLE Units ADD COLUMN UnitText4 TEXT AS (printf('%.*c', 4096, 'x'))",
                "column UnitText4 of table Units isn't a plain one");
    ExpectFault("ALTER TABLE Parameters ADD COLUMN RowId INTEGER", "column RowId of table Parameters");
}

TEST(PresetsFileFault, TakesNoMoreTextThanSuchAFileHolds) {
    ExpectFault("WITH RECURSIVE n(k) AS (SELECT 1 UNION ALL SELECT k + 1 FROM n WHERE k < 2000)"
                "INSERT INTO Units(UnitText0) SELECT printf('%.*c', 4000, 'x') FROM n",
                "comes after too much text");
}

TEST(PresetsFile, ReadsRecordsInTheirOrder) {
    // Row 1 moves to the front, before row 0.
    const ChangedPresets presets("UPDATE Parameters SET Name = 'Moved', rowid = -5 WHERE rowid = 2");
    const ClassZentrova zentrova(presets.Folder());
    EXPECT_EQ(zentrova.ParamName(0), QStringLiteral("Moved"));
    EXPECT_EQ(zentrova.ParamCount(), 96);
}

TEST(PresetsFile, ReadsNoMoreRecordsThanTheCount) {
    const ChangedPresets presets("UPDATE Parameters SET Value = 95 WHERE rowid = 13");
    EXPECT_EQ(ClassZentrova(presets.Folder()).ParamCount(), 95);
}

TEST(PresetsFile, LeavesAnEmptyTextForANullUnitText) {
    const ChangedPresets presets("UPDATE Units SET UnitText2 = NULL WHERE rowid = 1 + 7");
    const ClassZentrova zentrova(presets.Folder());
    EXPECT_EQ(zentrova.ParamLookUp(7, 2), QString());
    EXPECT_EQ(zentrova.ParamLookUp(7, 1), QStringLiteral("N2"));
}

class ShippedPresets : public testing::Test {
protected:
    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

TEST_F(ShippedPresets, HaveRowsThatFitTheirLimitsAndARegister) {
    ASSERT_EQ(zentrova_.ParamCount(), 96);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::ParameterCount), 96);
    EXPECT_LE(zentrova_.ParamCount() - 1, 123); // because a download is one frame
    for (std::int16_t tag = 0; tag < zentrova_.ParamCount(); ++tag) {
        SCOPED_TRACE(tag);
        EXPECT_LE(zentrova_.ParamMin(tag), zentrova_.ParamPreset(tag));
        EXPECT_LE(zentrova_.ParamPreset(tag), zentrova_.ParamMax(tag));
        EXPECT_LE(zentrova_.ParamMin(tag), zentrova_.ParamValue(tag));
        EXPECT_LE(zentrova_.ParamValue(tag), zentrova_.ParamMax(tag));
        EXPECT_GE(zentrova_.ParamMin(tag), zentrova_.ParamSigned(tag) ? -32768 : 0);
        EXPECT_LE(zentrova_.ParamMax(tag), zentrova_.ParamSigned(tag) ? 32767 : 65535);
        EXPECT_FALSE(zentrova_.ParamName(tag).isEmpty());
        if (!zentrova_.ParamReadOnly(tag)) {
            EXPECT_EQ(zentrova_.ParamValue(tag), zentrova_.ParamPreset(tag));
        }
    }
}

TEST_F(ShippedPresets, HaveATextForEachValueOfATextValuedRow) {
    for (std::int16_t tag = 0; tag < zentrova_.ParamCount(); ++tag) {
        if (ClassOfUnit(zentrova_.ParamUnits(tag)) != UnitClass::TextValued) {
            continue;
        }
        SCOPED_TRACE(tag);
        EXPECT_FALSE(zentrova_.ParamSigned(tag));
        EXPECT_GE(zentrova_.ParamMin(tag), 0);
        for (std::int32_t value = zentrova_.ParamMin(tag); value <= zentrova_.ParamMax(tag); ++value) {
            EXPECT_FALSE(zentrova_.ParamLookUp(zentrova_.ParamUnits(tag), value).isEmpty()) << value;
        }
    }
}

TEST_F(ShippedPresets, HaveOneCharacterSuffixes) {
    for (const std::int16_t unit : std::vector<std::int16_t>{1, 3, 4, 12}) {
        EXPECT_EQ(zentrova_.ParamLookUp(unit, 0).size(), 1) << unit;
    }
    EXPECT_EQ(zentrova_.ParamLookUp(1, 0), QStringLiteral("\""));
}

TEST_F(ShippedPresets, NameTheLineSettingsInTheOrderOfTheirCodes) {
    EXPECT_EQ(zentrova_.ParamMin(ParamDefines::BaudRateCode), 0);
    EXPECT_EQ(zentrova_.ParamMax(ParamDefines::BaudRateCode), 4);
    for (std::int16_t code = 0; code <= 4; ++code) {
        EXPECT_EQ(zentrova_.FormatRaw(code, ParamDefines::BaudRateCode), zentrova_.BaudRateString(code));
    }
    EXPECT_EQ(zentrova_.ParamMin(ParamDefines::ParityStopCode), 0);
    EXPECT_EQ(zentrova_.ParamMax(ParamDefines::ParityStopCode), 3);
    for (std::int16_t code = 0; code <= 3; ++code) {
        EXPECT_EQ(zentrova_.FormatRaw(code, ParamDefines::ParityStopCode), zentrova_.ParityStopString(code));
    }
}

TEST_F(ShippedPresets, LeaveRoomForTheRangesOfASetUp) {
    EXPECT_EQ(zentrova_.ParamPreset(ParamDefines::MinRange), 600);
    EXPECT_EQ(zentrova_.ParamPreset(ParamDefines::MaxRange), 42000);
    EXPECT_EQ(zentrova_.ParamPreset(ParamDefines::NearDistance), 1200);
    EXPECT_EQ(zentrova_.ParamPreset(ParamDefines::FarDistance), 36000);
    EXPECT_EQ(zentrova_.FormatRaw(0, ParamDefines::AnalogOutputMode), QStringLiteral("Manual"));
    EXPECT_EQ(zentrova_.FormatRaw(1, ParamDefines::AnalogOutputMode), QStringLiteral("Linear"));
    EXPECT_EQ(zentrova_.FormatRaw(2, ParamDefines::AnalogOutputMode), QStringLiteral("Hyperbolic"));
}

TEST_F(ShippedPresets, MarkASensorThatNumbersFromZero) {
    EXPECT_TRUE(zentrova_.ParamReadOnly(69));
    EXPECT_EQ(zentrova_.ParamValue(69), 0x5555);
    EXPECT_NE(zentrova_.ParamMax(70), 0x5555);
}

TEST_F(ShippedPresets, StartEveryMeasurementAtZero) {
    std::vector<int> measured;
    for (std::int16_t tag = 0; tag < zentrova_.ParamCount(); ++tag) {
        if (zentrova_.ParamMeasured(tag)) {
            measured.push_back(tag);
            EXPECT_EQ(zentrova_.ParamValue(tag), 0) << tag;
        }
    }
    EXPECT_EQ(measured, (std::vector<int>{14, 15, 16, 18, 19, 31, 32, 35, 38, 45, 46,
                                          47, 48, 53, 60, 61, 79, 80, 91, 92, 93, 94}));
}

// The sensor's papers give these numbers, and sensors in the field have them.
TEST_F(ShippedPresets, KeepTheNumbersByWhichTheSensorIsKnown) {
    using namespace ParamDefines;
    const std::pair<int, int> numbers[] = {
        {SaveCommand, 1},         {ReinitCommand, 3},       {ProcessorId, 6},        {ProcessorRevision, 7},
        {FirmwareVersion, 8},     {BootVersion, 9},         {BoardRevision, 11},     {ParameterCount, 12},
        {TeachInput, 18},         {ExternalClockInput, 19}, {ClockSelect, 20},       {TransmitDelayLow, 21},
        {TransmitDelayHigh, 22},  {ClockOut, 23},           {MinRange, 24},          {MaxRange, 25},
        {NearDistance, 28},       {FarDistance, 29},        {ActualDistance, 32},    {CoreDiameter, 33},
        {MaxDiameter, 34},        {NearVoltage, 36},        {FarVoltage, 37},        {EchoReceived, 38},
        {AnalogOutputMode, 39},   {ManualOutput, 40},       {OutputVoltage, 46},     {AnalogInputVoltage, 48},
        {Relay1Output, 54},       {Relay2Output, 55},       {Relay1OnThreshold, 56}, {Relay2OnThreshold, 57},
        {Relay1OffThreshold, 58}, {Relay2OffThreshold, 59}, {Relay1State, 60},       {Relay2State, 61},
        {NetworkAddress, 65},     {BaudRateCode, 66},       {ParityStopCode, 67},    {AddressingMode, 68},
        {AddressingMark, 69},     {SerialNumber, 2},        {FirstRawOutput, 81},    {LastRawOutput, 90},
        {RunHours, 14},           {PowerCycles, 15},        {EchoTime, 31},          {ActualDiameter, 35},
        {OutputRaw, 45},          {AnalogInputRaw, 47},     {AirTemperature, 53},    {EchoStrength, 79},
        {SupplyVoltage, 93},      {PeakTemperature, 94}};
    for (const auto &[role, number] : numbers) {
        EXPECT_EQ(role, number);
    }
}

TEST_F(ShippedPresets, KeepTheValuesThatTheSensorUnderstands) {
    using namespace ParamDefines;
    EXPECT_EQ(NoCommand, 0);
    EXPECT_EQ(StoreSettings, 1);
    EXPECT_EQ(FactoryDefaults, 1);
    EXPECT_EQ(EnterBootLoader, 99);
    EXPECT_EQ(EchoPresent, 1);
    EXPECT_EQ(ManualMode, 0);
    EXPECT_EQ(LinearMode, 1);
    EXPECT_EQ(HyperbolicMode, 2);
    EXPECT_EQ(NumberedLikeParameters, 0x5555);
}

TEST_F(ShippedPresets, KeepTheRawOutputsWithinTheConvertersCounts) {
    std::vector<std::int16_t> rows{ParamDefines::ManualOutput};
    for (std::int16_t tag = ParamDefines::FirstRawOutput; tag <= ParamDefines::LastRawOutput; ++tag) {
        rows.push_back(tag);
    }
    for (const std::int16_t tag : rows) {
        EXPECT_EQ(zentrova_.ParamMin(tag), 0) << tag;
        EXPECT_EQ(zentrova_.ParamMax(tag), 4095) << tag;
        EXPECT_FALSE(zentrova_.ParamReadOnly(tag)) << tag;
    }
}

} // namespace ztv
