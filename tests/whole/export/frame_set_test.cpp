#include <gtest/gtest.h>

#include <random>
#include <set>

#include "hosts/offscreen/frame_set.h"

namespace {

TEST(FrameSet, RangesThatTouchOrOverlapBecomeOne) {
    FrameSet set;
    set.add(10, 20);
    set.add(30, 40);
    set.add(20, 30);
    EXPECT_EQ(set.size(), 30);
    EXPECT_EQ(set.first(), 10);
    EXPECT_EQ(set.last(), 39);
    set.add(5, 50);
    EXPECT_EQ(set.size(), 45);
}

TEST(FrameSet, AnEmptyRangeAddsNothing) {
    FrameSet set;
    set.add(5, 5);
    EXPECT_TRUE(set.empty());
}

TEST(FrameSet, HoldsExactlyWhatWasAdded) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        FrameSet set;
        std::set<std::int64_t> expected;
        for (int i = 0; i < 12; ++i) {
            const auto first = static_cast<std::int64_t>(random() % 60) - 1;
            const auto end = first + static_cast<std::int64_t>(random() % 9);
            set.add(first, end);
            for (std::int64_t frame = first; frame < end; ++frame) expected.insert(frame);
        }
        for (std::int64_t frame = -3; frame < 80; ++frame)
            EXPECT_EQ(set.contains(frame), expected.count(frame) == 1);
        EXPECT_EQ(set.size(), static_cast<std::int64_t>(expected.size()));
    }
}

} // namespace
