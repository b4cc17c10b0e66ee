#include "sim/ParameterTable.h"
#include "tests/sim/TestPresets.h"

#include <QFile>
#include <gtest/gtest.h>

namespace sim {
namespace {

TEST(SimParameterTable, ReadsTheRowsInTheirOrder) {
    const test::TestPresets presets;
    ParameterTable table;
    ASSERT_EQ(table.Load(presets.Path()).toStdString(), "");
    EXPECT_EQ(table.Count(), test::TestPresets::count);
    EXPECT_EQ(table.Row(40).max, 4095);
    EXPECT_EQ(table.Row(81).min, -500);
    EXPECT_EQ(table.Row(81).preset, -7);
    EXPECT_TRUE(table.Row(81).isSigned);
    EXPECT_TRUE(table.Row(69).readOnly);
    EXPECT_FALSE(table.Row(65).readOnly);
    EXPECT_FALSE(table.Has(0));
    EXPECT_TRUE(table.Has(90));
    EXPECT_FALSE(table.Has(91));
}

TEST(SimParameterTable, TakesTheCountFromRow12) {
    const test::TestPresets presets;
    presets.Change("INSERT INTO Parameters SELECT * FROM Parameters");
    presets.Change("UPDATE Parameters SET Value = 100 WHERE rowid = 13");
    ParameterTable table;
    ASSERT_EQ(table.Load(presets.Path()).toStdString(), "");
    EXPECT_EQ(table.Count(), 100);
}

TEST(SimParameterTable, RefusesTooFewRows) {
    const test::TestPresets presets;
    ParameterTable table;
    presets.Change("UPDATE Parameters SET Value = 92 WHERE rowid = 13");
    EXPECT_TRUE(table.Load(presets.Path()).contains("names 92"));
    presets.Change("UPDATE Parameters SET Value = 20 WHERE rowid = 13");
    EXPECT_FALSE(table.Load(presets.Path()).isEmpty());
    presets.Change("DELETE FROM Parameters");
    EXPECT_FALSE(table.Load(presets.Path()).isEmpty());
    EXPECT_EQ(table.Count(), 0);
}

TEST(SimParameterTable, SaysWhatIsWrongWithTheFile) {
    const test::TestPresets presets;
    ParameterTable table;
    EXPECT_TRUE(table.Load(presets.Folder() + "/none").contains("does not exist"));

    presets.Change("ALTER TABLE Parameters RENAME TO Others");
    EXPECT_TRUE(table.Load(presets.Path()).contains("no table Parameters"));
    presets.Change("CREATE VIEW Parameters AS SELECT * FROM Others");
    EXPECT_TRUE(table.Load(presets.Path()).contains("no table Parameters"));

    QFile file(presets.Folder() + "/text");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(5000, 'x'));
    file.close();
    EXPECT_TRUE(table.Load(file.fileName()).contains("text"));
}

} // namespace
} // namespace sim
