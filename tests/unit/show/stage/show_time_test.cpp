#include <gtest/gtest.h>

#include <cmath>

#include "show/stage/show_time.h"

TEST(Ramp, RunsUpToOneAndThenStops) {
    int running = 1;
    double out = -1.0;
    g_demo_time = 11.0;
    EXPECT_EQ(ramp(&running, 10.0, 2.0, &out), 1);
    EXPECT_EQ(out, 0.5);
    g_demo_time = 12.0;
    EXPECT_EQ(ramp(&running, 10.0, 2.0, &out), 1);
    EXPECT_EQ(out, 1.0);
    g_demo_time = 12.5;
    EXPECT_EQ(ramp(&running, 10.0, 2.0, &out), 0);
    EXPECT_EQ(out, 1.25);
    EXPECT_EQ(running, 0);
}

TEST(Ramp, RunsDownToZeroForANegativeDuration) {
    int running = 1;
    double out = -1.0;
    g_demo_time = 11.0;
    EXPECT_EQ(ramp(&running, 10.0, -4.0, &out), 1);
    EXPECT_EQ(out, 0.75);
    g_demo_time = 14.0;
    EXPECT_EQ(ramp(&running, 10.0, -4.0, &out), 1);
    EXPECT_EQ(out, 0.0);
    g_demo_time = 15.0;
    EXPECT_EQ(ramp(&running, 10.0, -4.0, &out), 0);
    EXPECT_EQ(out, -0.25);
}

TEST(Ramp, AStoppedOneWritesNothingAndSaysOne) {
    int running = 0;
    double out = 7.0;
    EXPECT_EQ(ramp(&running, 0.0, 1.0, &out), 1);
    EXPECT_EQ(out, 7.0);
}

TEST(Ramp, WithoutADurationItFollowsTheFallingFormula) {
    int running = 1;
    double out = 0.0;
    g_demo_time = 1.0;
    EXPECT_EQ(ramp(&running, 0.0, 0.0, &out), 1); // 1 - 1 / -0; the rising formula would stop
    EXPECT_TRUE(std::isinf(out));
}
