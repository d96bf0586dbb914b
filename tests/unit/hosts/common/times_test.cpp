#include <gtest/gtest.h>

#include "hosts/common/times.h"

namespace common {
namespace {

TEST(Times, ReadsSecondsAndMinutes) {
    EXPECT_EQ(parse_time("0"), 0);
    EXPECT_EQ(parse_time("74"), 74 * kSecond);
    EXPECT_EQ(parse_time("12.5"), 12'500'000);
    EXPECT_EQ(parse_time("0.000001"), 1);
    EXPECT_EQ(parse_time("1:14.3"), 74'300'000);
    EXPECT_EQ(parse_time("2:00"), 120 * kSecond);
}

TEST(Times, ReadsNothingElseAsATime) {
    for (const char* text : {"", ".", "1.", ".5", "-1", "+1", "1e2", "1:", ":1", "1:60", "1:2:3", " 1", "1 ",
                             "1s", "0.0000001", "1000000000000", "nan", "0x10", "1,5"}) {
        EXPECT_FALSE(parse_time(text)) << text;
    }
}

TEST(Times, ReadsWholeFractionalAndDecimalRates) {
    const auto sixty = parse_rate("60");
    ASSERT_TRUE(sixty);
    EXPECT_EQ(sixty->frames, 60);
    EXPECT_EQ(sixty->seconds, 1);
    const auto film = parse_rate("24000/1001");
    ASSERT_TRUE(film);
    EXPECT_EQ(film->frames, 24000);
    EXPECT_EQ(film->seconds, 1001);
    const auto decimal = parse_rate("29.97");
    ASSERT_TRUE(decimal);
    EXPECT_EQ(decimal->frames, 2997);
    EXPECT_EQ(decimal->seconds, 100);
}

TEST(Times, ReadsNothingElseAsARate) {
    for (const char* text : {"", "0", "0.5", "1001", "60/", "/60", "60/0", "60/1/1", "1/2", "sixty", "-60"}) {
        EXPECT_FALSE(parse_rate(text)) << text;
    }
}

TEST(Times, AFrameBeginsAtItsOwnTimeAndNotBefore) {
    const FrameRate rates[] = {{60, 1}, {30000, 1001}, {24000, 1001}, {1, 1}, {1000, 1}};
    for (const FrameRate& rate : rates) {
        for (std::int64_t frame = 0; frame < 5000; ++frame) {
            const ShowTime time = rate.time_of(frame);
            EXPECT_EQ(rate.first_frame_at(time), frame);
            EXPECT_EQ(rate.frame_on_screen_at(time), frame);
            EXPECT_EQ(rate.first_frame_at(time + 1), frame + 1);
            if (frame > 0) {
                EXPECT_EQ(rate.frame_on_screen_at(time - 1), frame - 1);
            }
        }
    }
}

TEST(Times, TextHasThreeDecimalsRoundedDown) {
    EXPECT_EQ(seconds_text(0), "0.000");
    EXPECT_EQ(seconds_text(74'316'667), "74.316");
    EXPECT_EQ(seconds_text(162 * kSecond), "162.000");
}

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

TEST(ShowFrames, ARangeHasTheFramesOfItsTimes) {
    const ShowFrames frames({10, 1});
    EXPECT_EQ(frames.between(73'900'000, 74'500'000), (FrameSet{739, 740, 741}));
    EXPECT_TRUE(frames.between(10'010'000, 10'090'000).empty());
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
} // namespace common
