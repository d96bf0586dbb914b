// The exporter's table of the show against the show's own timeline.
#include <gtest/gtest.h>

#include "hosts/offscreen/frames/running_order.h"
#include "show/driver/scene_table.h"
#include "show/driver/timeline.h"
#include "show/stage/show_time.h"
#include "tests/hosts/recording/recording.h"

namespace offscreen {
namespace {

void mute(Scene& scene) {
    scene.prepare = scene.start = scene.render = scene.stop = [] {};
}

TEST(RunningOrder, EveryCueOpensAChapterAndTheLastOneEndsTheShow) {
    for (Scene& scene : g_scenes) mute(scene);
    int chapter = 0;
    int cue = -1;
    bool ended = false;
    for (int ms = 0; ms <= 163'000 && !ended; ms += 100) {
        g_demo_time = ms * 0.001;
        try {
            run_timeline();
        } catch (const recording::Exited&) {
            EXPECT_EQ(ms * 1000, common::kShowEnd);
            ended = true;
        }
        if (g_cue == cue || ended) continue;
        cue = g_cue;
        ASSERT_LT(chapter, kChapterCount);
        EXPECT_EQ(kChapters[chapter].time, ms * 1000) << kChapters[chapter].name;
        ++chapter;
    }
    EXPECT_TRUE(ended);
    EXPECT_EQ(chapter, kChapterCount);
}

TEST(RunningOrder, TheStoryboardHasAPictureAfterEveryCueInOrder) {
    for (int i = 1; i < kMomentCount; ++i) EXPECT_GT(kMoments[i].time, kMoments[i - 1].time);
    EXPECT_LT(kMoments[kMomentCount - 1].time, common::kShowEnd);
    for (int i = 0; i < kChapterCount; ++i) {
        const common::ShowTime end = i + 1 < kChapterCount ? kChapters[i + 1].time : common::kShowEnd;
        bool seen = false;
        for (const Moment& moment : kMoments) seen |= moment.time >= kChapters[i].time && moment.time < end;
        EXPECT_TRUE(seen) << kChapters[i].name;
    }
}

} // namespace
} // namespace offscreen
