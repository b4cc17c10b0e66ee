#include "link/UnsavedWrites.h"

#include <gtest/gtest.h>
#include <ostream>

namespace ztv {

using Row = UnsavedWrites::Row;
using Rows = std::vector<Row>;

void PrintTo(const Row &row, std::ostream *out) {
    *out << row.tag << ": " << (row.before ? std::to_string(*row.before) : "?") << " -> " << row.value;
}

// A sensor with eight settings from tag 1 on; tag 0 is none.
class UnsavedWritesTest : public testing::Test {
protected:
    UnsavedWritesTest() {
        unsaved_.WentOnline();
        Poll();
    }

    // The sensor confirms a write and holds the value.
    bool Write(std::int16_t tag, std::int32_t value) {
        sensor_[static_cast<std::size_t>(tag)] = value;
        return unsaved_.Written(tag, value);
    }
    bool Poll() { return unsaved_.Polled(serial_, sensor_); }
    void LosePower() { sensor_ = stored_; }

    std::vector<std::int32_t> stored_ = {0, 10, 20, 30, 40, 50, 60, 70, 80};
    std::vector<std::int32_t> sensor_ = stored_;
    std::int32_t serial_ = 10427;
    UnsavedWrites unsaved_{{false, true, true, true, true, true, true, true, true}};
};

TEST_F(UnsavedWritesTest, NamesEachConfirmedWriteWithTheValueBefore) {
    EXPECT_EQ(unsaved_.Rows(), Rows{});
    EXPECT_TRUE(Write(5, 55));
    EXPECT_TRUE(Write(2, 22));
    EXPECT_EQ(unsaved_.Rows(), (Rows{{2, 20, 22}, {5, 50, 55}}));
    EXPECT_FALSE(Poll());
    EXPECT_EQ(unsaved_.Count(), 2U);
}

TEST_F(UnsavedWritesTest, CountsARowOnceWithItsFirstAndLastValue) {
    Write(5, 55);
    EXPECT_TRUE(Write(5, 56));
    EXPECT_FALSE(Write(5, 56));
    Poll();
    Write(5, 57);
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 50, 57}}));
}

TEST_F(UnsavedWritesTest, LeavesOutARowThatHasItsValueAgain) {
    Write(5, 55);
    Poll();
    EXPECT_TRUE(Write(5, 50));
    EXPECT_EQ(unsaved_.Rows(), Rows{});
    EXPECT_FALSE(Write(6, 60)) << "it had that value";
    EXPECT_EQ(unsaved_.Rows(), Rows{});
}

TEST_F(UnsavedWritesTest, LeavesOutRowsThatASaveDoesNotStore) {
    EXPECT_FALSE(unsaved_.Written(0, 1));
    EXPECT_FALSE(unsaved_.Written(9, 1));
    EXPECT_FALSE(unsaved_.Written(-1, 1));
    EXPECT_EQ(unsaved_.Rows(), Rows{});
}

TEST_F(UnsavedWritesTest, ASaveEndsThemAllAndItsValuesAreThoseOfBefore) {
    Write(5, 55);
    Write(6, 66);
    EXPECT_TRUE(unsaved_.Saved());
    EXPECT_EQ(unsaved_.Rows(), Rows{});
    EXPECT_FALSE(unsaved_.Saved());
    EXPECT_FALSE(Poll());
    Write(5, 50);
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 55, 50}}));
}

TEST_F(UnsavedWritesTest, LeavesOutAFailedWrite) {
    unsaved_.NotConfirmed(5, 55);
    EXPECT_EQ(unsaved_.Rows(), Rows{});
    EXPECT_FALSE(Poll());
    sensor_[5] = 55; // later, by another master
    EXPECT_FALSE(Poll());
    EXPECT_EQ(unsaved_.Rows(), Rows{});
}

TEST_F(UnsavedWritesTest, CountsAWriteWhoseConfirmationWasLostOnceAPollShowsIt) {
    unsaved_.NotConfirmed(5, 55);
    sensor_[5] = 55;
    EXPECT_TRUE(Poll());
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 50, 55}}));
}

TEST_F(UnsavedWritesTest, AFailedWriteOverAConfirmedOneLeavesWhatTheSensorHolds) {
    Write(5, 55);
    unsaved_.NotConfirmed(5, 50);
    EXPECT_FALSE(Poll());
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 50, 55}}));
    unsaved_.NotConfirmed(5, 50);
    sensor_[5] = 50;
    EXPECT_TRUE(Poll());
    EXPECT_EQ(unsaved_.Rows(), Rows{});
}

TEST_F(UnsavedWritesTest, LeavesOutWhatOthersWrote) {
    sensor_[5] = 99;
    EXPECT_FALSE(Poll());
    EXPECT_EQ(unsaved_.Rows(), Rows{});
    Write(5, 55);
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 99, 55}}));
    sensor_[5] = 98;
    EXPECT_TRUE(Poll());
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 99, 98}})) << "the sensor forgets that one";
}

TEST_F(UnsavedWritesTest, KeepsThemOfflineAndForTheSameSensor) {
    Write(5, 55);
    unsaved_.WentOnline();
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 50, 55}}));
    EXPECT_FALSE(Poll());
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 50, 55}}));
}

TEST_F(UnsavedWritesTest, DropsWhatTheSensorForgotInALossOfPower) {
    Write(5, 55);
    Write(6, 66);
    LosePower();
    EXPECT_TRUE(Poll());
    EXPECT_EQ(unsaved_.Rows(), Rows{});
}

TEST_F(UnsavedWritesTest, DropsThemForAnotherSensor) {
    Write(5, 55);
    unsaved_.WentOnline();
    serial_ = 10428;
    EXPECT_TRUE(Poll()) << "though it holds the same values";
    EXPECT_EQ(unsaved_.Rows(), Rows{});
    Write(6, 66);
    serial_ = 10427;
    EXPECT_TRUE(Poll()) << "exchanged behind an open port";
    EXPECT_EQ(unsaved_.Rows(), Rows{});
}

TEST_F(UnsavedWritesTest, WritesBeforeTheFirstPollCompareWithWhatThisSensorHeld) {
    unsaved_.WentOnline();
    Write(5, 55);
    Write(6, 60);
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 50, 55}}));
    EXPECT_FALSE(Poll());
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 50, 55}}));
}

TEST_F(UnsavedWritesTest, WritesToAnotherSensorBeforeItsFirstPollHaveNoValueBefore) {
    Write(4, 44);
    unsaved_.WentOnline();
    Write(5, 55);
    Write(6, 60);
    serial_ = 10428;
    EXPECT_TRUE(Poll());
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, std::nullopt, 55}, {6, std::nullopt, 60}}));
}

TEST_F(UnsavedWritesTest, AReturnToTheFactorysValuesLeavesNothingToSave) {
    Write(5, 55);
    EXPECT_TRUE(unsaved_.Reinitialised());
    EXPECT_EQ(unsaved_.Rows(), Rows{});
    sensor_ = stored_ = {0, 1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_FALSE(Poll());
    EXPECT_EQ(unsaved_.Rows(), Rows{});
    Write(5, 55);
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, 5, 55}}));
}

TEST_F(UnsavedWritesTest, AWriteRightAfterAReturnToTheFactorysValuesHasNoValueBefore) {
    unsaved_.Reinitialised();
    Write(5, 55);
    EXPECT_EQ(unsaved_.Rows(), (Rows{{5, std::nullopt, 55}}));
}

TEST_F(UnsavedWritesTest, ARowBeyondThePollStaysUntilTheSave) {
    sensor_.pop_back();
    Poll();
    EXPECT_TRUE(unsaved_.Written(8, 88));
    EXPECT_FALSE(Poll());
    EXPECT_EQ(unsaved_.Rows(), (Rows{{8, std::nullopt, 88}}));
    EXPECT_TRUE(unsaved_.Saved());
}

// A sensor that was never read.
TEST(UnsavedWritesOfAnUnreadSensorTest, CountsEachRowAndHasNoValueBefore) {
    UnsavedWrites unsaved({false, true, true, true});
    unsaved.WentOnline();
    EXPECT_TRUE(unsaved.Written(1, 10));
    EXPECT_TRUE(unsaved.Written(2, 20));
    EXPECT_TRUE(unsaved.Written(3, 30));
    EXPECT_EQ(unsaved.Count(), 3U);
    EXPECT_FALSE(unsaved.Polled(10427, std::vector<std::int32_t>{0, 10, 20, 30}));
    EXPECT_EQ(unsaved.Rows(), (Rows{{1, std::nullopt, 10}, {2, std::nullopt, 20}, {3, std::nullopt, 30}}));
    EXPECT_TRUE(unsaved.Polled(10427, std::vector<std::int32_t>{0, 10, 25, 30}))
        << "2 isn't what was written";
    EXPECT_EQ(unsaved.Count(), 2U);
}

} // namespace ztv
