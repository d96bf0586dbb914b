#include <gtest/gtest.h>

#include "hosts/offscreen/running_order.h"
#include "hosts/offscreen/show_frames.h"

namespace {

TEST(ShowFrames, TheWholeShowLasts161Point7SecondsBecauseItsClockJumps) {
    EXPECT_EQ(ShowFrames({60, 1}).count(), 9702);
    EXPECT_EQ(ShowFrames({30, 1}).count(), 4851);
    EXPECT_EQ(ShowFrames({10, 1}).count(), 1617);
}

TEST(ShowFrames, TheClockJumpsAfterTheFrameThatSwitchesTheMusic) {
    const ShowFrames frames({60, 1});
    EXPECT_EQ(frames.switch_frame(), 4440);
    EXPECT_EQ(frames.time_of(4440), 74'000'000);
    EXPECT_EQ(frames.time_of(4441), 74'316'667);
}

TEST(ShowFrames, ATimeThatTheClockJumpsOverShowsTheSwitchFrame) {
    const ShowFrames frames({60, 1});
    EXPECT_EQ(frames.frame_on_screen_at(74'000'000), 4440);
    EXPECT_EQ(frames.frame_on_screen_at(74'200'000), 4440);
    EXPECT_EQ(frames.frame_on_screen_at(74'316'666), 4440);
    EXPECT_EQ(frames.frame_on_screen_at(74'316'667), 4441);
}

TEST(ShowFrames, TheEndShowsTheLastFrame) {
    const ShowFrames frames({60, 1});
    EXPECT_EQ(frames.frame_on_screen_at(kShowEnd), 9701);
    EXPECT_EQ(frames.first_frame_at(kShowEnd), 9702);
}

TEST(ShowFrames, RangesThatMeetShareNoFrameAndMissNone) {
    for (const FrameRate& rate : {FrameRate{60, 1}, FrameRate{30000, 1001}, FrameRate{7, 1}}) {
        const ShowFrames frames(rate);
        std::int64_t next = 0;
        for (ShowTime cut = 0; cut <= kShowEnd; cut += 37'000) {
            const std::int64_t first = frames.first_frame_at(cut);
            EXPECT_GE(first, next);
            for (; next < first; ++next) EXPECT_LT(frames.time_of(next), cut);
            if (first < frames.count()) {
                EXPECT_GE(frames.time_of(first), cut);
            }
        }
    }
}

TEST(ShowFrames, TimesOnlyGrow) {
    const ShowFrames frames({30000, 1001});
    for (std::int64_t frame = 1; frame < frames.count(); ++frame) {
        EXPECT_GT(frames.time_of(frame), frames.time_of(frame - 1));
        EXPECT_EQ(frames.frame_on_screen_at(frames.time_of(frame)), frame);
    }
}

TEST(ShowFrames, TheLoadingScreenComesBeforeTheFirstFrame) {
    EXPECT_EQ(ShowFrames({60, 1}).frame_on_screen_at(kLoadingTime), kLoadingFrame);
}

} // namespace
