#include <gtest/gtest.h>

#include "hosts/offscreen/frames/chapters.h"
#include "hosts/offscreen/frames/running_order.h"

namespace offscreen {
namespace {

TEST(Chapters, OfTheWholeShowFollowEachOtherFromItsFirstFrameToItsLast) {
    const common::ShowFrames frames(common::FrameRate{60, 1});
    const std::vector<VideoChapter> chapters = chapters_of(frames, 0, frames.count());
    ASSERT_EQ(chapters.size(), static_cast<std::size_t>(kChapterCount));
    std::int64_t end = 0;
    for (std::size_t i = 0; i < chapters.size(); ++i) {
        EXPECT_EQ(chapters[i].begin, end);
        EXPECT_EQ(chapters[i].begin, frames.first_frame_at(kChapters[i].time));
        EXPECT_STREQ(chapters[i].name, kChapters[i].name);
        end = chapters[i].end;
    }
    EXPECT_EQ(end, frames.count());
}

TEST(Chapters, OfARangeBeginAndEndWithIt) {
    const common::ShowFrames frames(common::FrameRate{10, 1});
    const std::vector<VideoChapter> chapters = chapters_of(frames, 50, 105);
    ASSERT_EQ(chapters.size(), 3u);
    EXPECT_STREQ(chapters[0].name, "Title");
    EXPECT_EQ(chapters[0].begin, 0);
    EXPECT_EQ(chapters[1].begin, 12);
    EXPECT_EQ(chapters[2].begin, 50);
    EXPECT_EQ(chapters[2].end, 55);
}

} // namespace
} // namespace offscreen
