#include "model/WriteQueue.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace ztv {

class WriteQueueTest : public testing::Test {
protected:
    using Writes = std::vector<std::pair<int, int>>;

    Writes TakeAll() {
        Writes all;
        while (const auto write = queue_.Next()) {
            all.emplace_back(write->tag, write->value);
        }
        return all;
    }

    WriteQueue queue_;
};

TEST_F(WriteQueueTest, IsFirstInFirstOut) {
    EXPECT_FALSE(queue_.Next());
    queue_.Append({.tag = 5, .value = 1});
    queue_.Append({.tag = 4, .value = 2});
    queue_.Append({.tag = 5, .value = 3});
    EXPECT_EQ(queue_.ValueOf(5), 3);
    EXPECT_EQ(queue_.ValueOf(1), std::nullopt);
    EXPECT_EQ(TakeAll(), (Writes{{5, 1}, {4, 2}, {5, 3}}));
    EXPECT_TRUE(queue_.IsEmpty());
    EXPECT_EQ(queue_.ValueOf(5), std::nullopt);
}

TEST_F(WriteQueueTest, ReplacesTheLastValueOfTheRowInItsPlace) {
    for (const auto &[tag, value] : Writes{{5, 1}, {5, 2}, {4, 3}}) {
        queue_.Append({.tag = static_cast<std::int16_t>(tag), .value = value});
    }
    queue_.Replace({.tag = 5, .value = 9});
    queue_.Replace({.tag = 6, .value = 8});
    EXPECT_EQ(TakeAll(), (Writes{{5, 1}, {5, 9}, {4, 3}, {6, 8}}));
}

TEST_F(WriteQueueTest, ReplacesNothingInFrontOfACommandAndNoCommand) {
    queue_.Replace({.tag = 5, .value = 1});
    for (int i = 0; i < 2; ++i) {
        queue_.Replace({.tag = 1, .value = 1, .isCommand = true});
        queue_.Replace({.tag = 5, .value = 2 + i});
    }
    EXPECT_EQ(TakeAll(), (Writes{{5, 1}, {1, 1}, {5, 2}, {1, 1}, {5, 3}}));
}

TEST_F(WriteQueueTest, DropsTheValuesBelowARowButNoCommand) {
    queue_.Append({.tag = 5, .value = 1});
    queue_.Append({.tag = 1, .value = 1, .isCommand = true});
    queue_.Append({.tag = 4, .value = 1});
    queue_.DropValues(5);
    EXPECT_EQ(TakeAll(), (Writes{{5, 1}, {1, 1}}));
}

TEST_F(WriteQueueTest, ReportsWhetherOtherRowsFollowTheRowsLastWrite) {
    EXPECT_FALSE(queue_.OthersFollow(5));
    queue_.Append({.tag = 5, .value = 1});
    EXPECT_FALSE(queue_.OthersFollow(5));
    EXPECT_FALSE(queue_.OthersFollow(4));
    queue_.Append({.tag = 4, .value = 1});
    EXPECT_TRUE(queue_.OthersFollow(5));
    queue_.Append({.tag = 5, .value = 2});
    EXPECT_FALSE(queue_.OthersFollow(5));
}

TEST_F(WriteQueueTest, MakesEachCallOnce) {
    std::vector<int> calls;
    queue_.WhenEmpty([&] { calls.push_back(0); });
    queue_.Append({.tag = 5, .value = 1});
    queue_.WhenEmpty([&] {
        calls.push_back(1);
        queue_.WhenEmpty([&] { calls.push_back(3); });
    });
    queue_.WhenEmpty([&] { calls.push_back(2); });
    EXPECT_EQ(calls, (std::vector<int>{0}));
    TakeAll();
    queue_.Emptied();
    queue_.Emptied();
    EXPECT_EQ(calls, (std::vector<int>{0, 1, 3, 2}));
}

} // namespace ztv
