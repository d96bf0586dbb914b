#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "hosts/desktop/sound/mixer.h"

namespace {

using desktop::Segment;
using desktop::SegmentLog;

TEST(SegmentLog, KnowsNothingBeforeTheFirstSegment) {
    SegmentLog log;
    EXPECT_FALSE(log.at(0).has_value());
    log.add({100, 0, 1, true});
    EXPECT_FALSE(log.at(99.5).has_value());
}

TEST(SegmentLog, FindsTheSegmentThatAFrameLiesIn) {
    SegmentLog log;
    log.add({100, 0, 1, true});
    log.add({200, 100, 1, false});
    log.add({300, 100, 1, true});
    EXPECT_EQ(log.at(100)->device, 100);
    EXPECT_EQ(log.at(199.9)->device, 100);
    EXPECT_EQ(log.at(200)->device, 200);
    EXPECT_FALSE(log.at(200)->running);
    EXPECT_EQ(log.at(1e9)->device, 300);
}

TEST(SegmentLog, PrefersTheLaterOfTwoAtOneFrame) {
    SegmentLog log;
    log.add({100, 7, 1, true});
    log.add({100, 0, 2, true});
    EXPECT_EQ(log.at(100)->play, 2u);
}

TEST(SegmentLog, ForgetsTheOldest) {
    SegmentLog log;
    for (int i = 0; i < 1000; ++i) {
        log.add({static_cast<double>(i), 0, 1, true});
        if (i % 100 == 0) log.at(0); // asked now and then, or new ones are lost
    }
    EXPECT_EQ(log.at(999)->device, 999);
    EXPECT_EQ(log.at(999.0 - SegmentLog::kKept / 2)->device, 999.0 - SegmentLog::kKept / 2);
    EXPECT_FALSE(log.at(10).has_value());
}

TEST(SegmentLog, NeverShowsATornSegment) {
    SegmentLog log;
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (std::uint64_t i = 1; i < 300000; ++i) {
            const auto value = static_cast<double>(i);
            log.add({value, 2 * value, i, i % 2 == 0});
        }
        done = true;
    });
    int torn = 0;
    while (!done) {
        const auto segment = log.at(1e9);
        if (!segment) continue;
        const auto number = static_cast<double>(segment->play);
        if (segment->device != number || segment->music != 2 * number ||
            segment->running != (segment->play % 2 == 0))
            ++torn;
    }
    writer.join();
    EXPECT_EQ(torn, 0);
}

} // namespace
