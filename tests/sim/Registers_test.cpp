#include "sim/Registers.h"
#include "tests/sim/TestPresets.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

class SimRegisters : public testing::Test {
protected:
    SimRegisters() : loaded_(table_.Load(presets_.Path())), registers_(table_) {}

    test::TestPresets presets_;
    ParameterTable table_;
    QString loaded_;
    Registers registers_;
};

TEST_F(SimRegisters, StartWithPresetsAndIdentityValues) {
    presets_.Change("UPDATE Parameters SET Value = 5 WHERE rowid IN (9, 41)");
    ASSERT_EQ(table_.Load(presets_.Path()).toStdString(), "");
    const Registers registers(table_);
    EXPECT_EQ(registers.Value(8), 5);
    EXPECT_EQ(registers.Value(40), 0);
    EXPECT_EQ(registers.Value(69), 0x5555);
}

TEST_F(SimRegisters, ConvertSignedRows) {
    EXPECT_EQ(registers_.Word(81), 0xFFF9);
    EXPECT_EQ(registers_.FromWord(81, 0xFFF9), -7);
    EXPECT_EQ(registers_.FromWord(80, 0xFFF9), 0xFFF9);
}

TEST_F(SimRegisters, AcceptValuesWithinTheLimitsOfTheRow) {
    EXPECT_TRUE(registers_.Accepts(40, 4095));
    EXPECT_FALSE(registers_.Accepts(40, 4096));
    EXPECT_TRUE(registers_.Accepts(81, -500));
    EXPECT_FALSE(registers_.Accepts(81, -501));
    EXPECT_TRUE(registers_.Accepts(3, 99));
    EXPECT_FALSE(registers_.Accepts(3, 2));
}

TEST_F(SimRegisters, LetTheAddressingModeBeWrittenThoughItIsReadOnly) {
    EXPECT_TRUE(registers_.Writable(68));
    EXPECT_FALSE(registers_.Writable(69));
    EXPECT_TRUE(registers_.Accepts(68, 0));
    EXPECT_FALSE(registers_.Accepts(68, 2));
}

TEST_F(SimRegisters, BringTheSavedSettingsBackAtARestart) {
    registers_.Write(40, 111);
    registers_.Write(1, 1);
    registers_.Write(40, 222);
    EXPECT_EQ(registers_.Value(1), 0);
    EXPECT_EQ(registers_.Value(40), 222);
    registers_.Restart();
    EXPECT_EQ(registers_.Value(40), 111);
}

TEST_F(SimRegisters, KeepTheLineInUseWhenTheyAreReinitialised) {
    registers_.Configure({9, 2, 0, 0});
    registers_.Write(40, 222);
    registers_.Write(3, 1);
    EXPECT_EQ(registers_.Value(3), 0);
    EXPECT_EQ(registers_.Value(40), 0);
    EXPECT_EQ(registers_.Line().address, 9);
    EXPECT_EQ(registers_.Line().baud, 2);
    EXPECT_EQ(registers_.Line().parity, 0);

    registers_.Restart();
    EXPECT_EQ(registers_.Line().address, 1);
    EXPECT_EQ(registers_.Line().baud, 4);
    EXPECT_EQ(registers_.Line().parity, 1);
    EXPECT_EQ(registers_.Line().addressing, 0);
}

TEST_F(SimRegisters, AskForTheBootLoaderOnce) {
    registers_.Write(3, 0);
    EXPECT_FALSE(registers_.TakeBootRequest());
    registers_.Write(3, 99);
    EXPECT_EQ(registers_.Value(3), 0);
    EXPECT_TRUE(registers_.TakeBootRequest());
    EXPECT_FALSE(registers_.TakeBootRequest());
}

} // namespace
} // namespace sim
