#include "sim/Transmitter.h"
#include "tests/helpers/Wait.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

namespace sim {

using ztv::WaitUntil;
namespace {

class SimTransmitter : public testing::Test {
protected:
    QByteArray out_;
    int pieces_ = 0;
    int sent_ = 0;
    Transmitter transmitter_{[this](const QByteArray &bytes) {
                                 out_ += bytes;
                                 ++pieces_;
                             },
                             [this] { ++sent_; }};
};

TEST_F(SimTransmitter, SendsAtOnceWhatNeedsNoTime) {
    transmitter_.Send({"abc"});
    EXPECT_EQ(out_, "abc");
    EXPECT_EQ(sent_, 1);
    transmitter_.Send({});
    EXPECT_EQ(sent_, 2);
}

TEST_F(SimTransmitter, WaitsBeforeTheFirstByte) {
    QElapsedTimer elapsed;
    elapsed.start();
    transmitter_.Send({"abc", 20});
    EXPECT_EQ(out_, "");
    EXPECT_EQ(sent_, 0);
    ASSERT_TRUE(WaitUntil([this] { return sent_ == 1; }));
    EXPECT_GE(elapsed.elapsed(), 19);
    EXPECT_EQ(out_, "abc");
}

TEST_F(SimTransmitter, SpreadsBytesOverTheirTimeOnTheLine) {
    QElapsedTimer elapsed;
    elapsed.start();
    transmitter_.Send({"0123456789", 0, 4});
    EXPECT_EQ(out_, "");
    ASSERT_TRUE(WaitUntil([this] { return sent_ == 1; }));
    EXPECT_GE(elapsed.elapsed(), 39);
    EXPECT_EQ(out_, "0123456789");
    EXPECT_GT(pieces_, 1);
}

TEST_F(SimTransmitter, KeepsTheOrderAndReportsTheLastOnly) {
    transmitter_.Send({"first", 5});
    transmitter_.Send({"second"});
    EXPECT_EQ(out_, "");
    ASSERT_TRUE(WaitUntil([this] { return sent_ > 0; }));
    EXPECT_EQ(out_, "firstsecond");
    EXPECT_EQ(sent_, 1);
}

TEST_F(SimTransmitter, ForgetsWhatWasCleared) {
    transmitter_.Send({"lost", 5});
    transmitter_.Clear();
    transmitter_.Send({"kept", 10});
    ASSERT_TRUE(WaitUntil([this] { return sent_ == 1; }));
    EXPECT_EQ(out_, "kept");
}

} // namespace
} // namespace sim
