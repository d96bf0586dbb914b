#include <gtest/gtest.h>

#include "hosts/offscreen/drawing/picture_origin.h"

namespace offscreen {
namespace {

constexpr bool kDrawn = true, kSkipped = false;

// A frame that clears everything, then draws.
void clean_frame(PictureOrigin& origin, bool drawn) {
    origin.begin_frame(drawn);
    origin.cleared_color();
    origin.cleared_depth();
    origin.drew();
}

// A skipped frame that copies its picture to texture 9.
PictureOrigin after_skipped_copy() {
    PictureOrigin origin;
    clean_frame(origin, kSkipped);
    origin.copied_whole(9);
    return origin;
}

TEST(PictureOrigin, AFullClearMakesThePictureTheFramesOwn) {
    PictureOrigin origin;
    clean_frame(origin, kSkipped);
    clean_frame(origin, kDrawn);
    EXPECT_TRUE(origin.all_drawn());
}

TEST(PictureOrigin, AFrameThatClearsNothingNeedsThoseBeforeIt) {
    for (bool before : {kDrawn, kSkipped}) {
        PictureOrigin origin;
        clean_frame(origin, before);
        origin.begin_frame(kDrawn);
        origin.drew();
        EXPECT_EQ(origin.all_drawn(), before);
    }
}

TEST(PictureOrigin, WithoutAnyClearTheLoadingScreenIsNeeded) {
    PictureOrigin origin;
    origin.begin_frame(kDrawn);
    origin.drew();
    EXPECT_FALSE(origin.all_drawn());
}

TEST(PictureOrigin, DrawingOnAnOldDepthBufferNeedsTheFrameThatMadeIt) {
    PictureOrigin origin;
    clean_frame(origin, kSkipped);
    origin.begin_frame(kDrawn);
    origin.cleared_color();
    EXPECT_TRUE(origin.all_drawn());
    origin.drew();
    EXPECT_FALSE(origin.all_drawn());
}

TEST(PictureOrigin, ClearingColourAndDepthInTwoStepsIsAFullClear) {
    PictureOrigin origin;
    clean_frame(origin, kSkipped);
    origin.begin_frame(kDrawn);
    origin.cleared_depth();
    origin.cleared_color();
    origin.drew();
    EXPECT_TRUE(origin.all_drawn());
}

TEST(PictureOrigin, ATextureFromASkippedFrameNeedsThatFrame) {
    PictureOrigin origin = after_skipped_copy();
    clean_frame(origin, kDrawn);
    EXPECT_TRUE(origin.all_drawn());
    origin.sampled(9);
    EXPECT_FALSE(origin.all_drawn());
}

TEST(PictureOrigin, ATextureCopiedAnewInTheSameFrameNeedsNoOther) {
    PictureOrigin origin = after_skipped_copy();
    clean_frame(origin, kDrawn);
    origin.copied_whole(9);
    origin.sampled(9);
    EXPECT_TRUE(origin.all_drawn());
}

TEST(PictureOrigin, ATextureCopiedInPartKeepsNeedingTheRest) {
    PictureOrigin origin = after_skipped_copy();
    clean_frame(origin, kDrawn);
    origin.copied_part(9);
    origin.sampled(9);
    EXPECT_FALSE(origin.all_drawn());
}

TEST(PictureOrigin, ACopyOfAPictureNeedsWhatThePictureNeeds) {
    PictureOrigin origin = after_skipped_copy();
    clean_frame(origin, kDrawn);
    origin.sampled(9);
    origin.copied_whole(8);
    clean_frame(origin, kDrawn);
    origin.sampled(8);
    EXPECT_FALSE(origin.all_drawn());
}

TEST(PictureOrigin, UnknownTexturesCountAsAll) {
    PictureOrigin origin = after_skipped_copy();
    clean_frame(origin, kDrawn);
    origin.sampled_any();
    EXPECT_FALSE(origin.all_drawn());
}

TEST(PictureOrigin, ATextureThatIsNoCopyNeedsNothing) {
    PictureOrigin origin;
    clean_frame(origin, kDrawn);
    origin.sampled(1);
    EXPECT_TRUE(origin.all_drawn());
    EXPECT_FALSE(origin.any_copies());
}

} // namespace
} // namespace offscreen
