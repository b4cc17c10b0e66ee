#include "chart/Pulse.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace Drawing;

class PulseTest : public testing::Test {
protected:
    PulseTest() { drawing_.At(ControlId::FrameZentrova).width = 3020; } // 200 twips a step

    void Tick(bool echo, int times = 1) {
        for (int i = 0; i < times; ++i) {
            pulse_.Advance(drawing_, echo);
        }
    }

    BasicDrawing drawing_;
    const Line &line_ = drawing_.At(LineId::ZentrovaLine);
    const Control &target_ = drawing_.At(ControlId::FrameTarget);
    Pulse pulse_;
};

TEST_F(PulseTest, StartsWithANewPulseAtTheTransducer) {
    Tick(true);
    EXPECT_EQ(line_.x1, 0);
    EXPECT_EQ(line_.x2, 0);
    EXPECT_EQ(line_.y1, 608); // half of 1335 is 668, to the even neighbour
    EXPECT_EQ(line_.y2, 728);
    EXPECT_TRUE(line_.visible);
}

TEST_F(PulseTest, RestsAsANewPulseAtTheTransducerAndLeavesFromThere) {
    Tick(true, 9);
    EXPECT_GT(line_.x1, 0);
    for (int times = 0; times < 2; ++times) {
        pulse_.Rest(drawing_, true);
        EXPECT_EQ(line_.x1, 0);
        EXPECT_EQ(line_.x2, 0);
        EXPECT_EQ(line_.y1, 608);
        EXPECT_EQ(line_.y2, 728);
        EXPECT_TRUE(line_.visible);
        EXPECT_TRUE(target_.visible);
    }
    pulse_.Rest(drawing_, false);
    EXPECT_TRUE(line_.visible) << "without an echo too";
    EXPECT_FALSE(target_.visible);
    Tick(true);
    EXPECT_EQ(line_.x1, 0);
    EXPECT_EQ(line_.y1, 608);
    Tick(true, 3);
    EXPECT_GT(line_.x1, 0);
}

TEST_F(PulseTest, TakesAHalfOfTheHeightToTheEvenNeighbour) {
    drawing_.At(ControlId::FrameZentrova).height = 1337; // 668.5
    Tick(true);
    EXPECT_EQ(line_.y1, 608);
    EXPECT_EQ(line_.y2, 728);
}

TEST_F(PulseTest, GoesOutAndBackInThirtyTwoTicks) {
    const float places[32] = {0,    200,  400,  600,  800,  1000, 1200, 1400, 1600, 1800, 2000,
                              2200, 2400, 2600, 2800, 3000, 3000, 2800, 2600, 2400, 2200, 2000,
                              1800, 1600, 1400, 1200, 1000, 800,  600,  400,  200,  0};
    Tick(true);
    for (int cycle = 0; cycle < 3; ++cycle) {
        float top = 608;
        float bottom = 728;
        for (int tick = 0; tick < 32; ++tick) {
            SCOPED_TRACE(tick);
            Tick(true);
            top = tick == 31 ? 608 : top - 15; // the last one starts the next pulse
            bottom = tick == 31 ? 728 : bottom + 15;
            EXPECT_EQ(line_.x1, places[tick]);
            EXPECT_EQ(line_.x2, places[tick]);
            EXPECT_EQ(line_.y1, top);
            EXPECT_EQ(line_.y2, bottom);
            EXPECT_TRUE(line_.visible);
            EXPECT_TRUE(target_.visible);
        }
    }
}

TEST_F(PulseTest, ShowsOnlyOnItsWayOutWithoutAnEcho) {
    Tick(false); // the pulse starts
    EXPECT_TRUE(line_.visible);
    for (int cycle = 0; cycle < 3; ++cycle) {
        for (int tick = 0; tick < 32; ++tick) {
            SCOPED_TRACE(tick);
            Tick(false);
            EXPECT_EQ(line_.visible, tick < 15 || tick == 31); // it turns in tick 15, a new one starts in 31
            EXPECT_FALSE(target_.visible);
        }
    }
}

TEST_F(PulseTest, ComesBackAsSoonAsThereIsAnEcho) {
    Tick(false, 1 + 16);
    ASSERT_FALSE(line_.visible);
    Tick(true);
    EXPECT_TRUE(line_.visible);
    EXPECT_TRUE(target_.visible);
    Tick(false);
    EXPECT_FALSE(line_.visible);
    EXPECT_FALSE(target_.visible);
}

TEST_F(PulseTest, ShowsAHiddenPulseAgainOnlyWithTheNextOne) {
    Tick(true, 1 + 5);
    drawing_.At(LineId::ZentrovaLine).visible = false;
    Tick(false);
    EXPECT_FALSE(line_.visible); // outbound, but nothing shows it
    Tick(false, 26);
    EXPECT_TRUE(line_.visible);
}

struct PlaceCase {
    float width;
    int step;
    float x;
};

TEST_F(PulseTest, ScalesItsWayToTheSpaceInSinglePrecision) {
    // (width - 20) x step, rounded, then / 15
    const PlaceCase places[] = {
        {4305, 1, 285.666667F}, {4305, 14, 3999.33333F}, {960, 4, 250.666667F}, {7815, 7, 3637.66667F}};
    for (const PlaceCase &place : places) {
        SCOPED_TRACE(place.x);
        BasicDrawing drawing;
        Pulse pulse;
        drawing.At(ControlId::FrameZentrova).width = place.width;
        for (int i = 0; i < 2 + place.step; ++i) {
            pulse.Advance(drawing, true);
        }
        EXPECT_EQ(drawing.At(LineId::ZentrovaLine).x1, place.x);
    }
}

} // namespace ztv
