#include <gtest/gtest.h>

#include "hosts/offscreen/picture_origin.h"

namespace {

// A frame that clears everything, then draws.
void clean_frame(PictureOrigin& origin, std::int64_t frame, bool drawn) {
    origin.begin_frame(frame, drawn);
    origin.cleared_color();
    origin.cleared_depth();
    origin.drew();
}

TEST(PictureOrigin, AFullClearMakesThePictureTheFramesOwn) {
    PictureOrigin origin;
    clean_frame(origin, 7, true);
    EXPECT_TRUE(origin.all_drawn());
    EXPECT_EQ(origin.since(), 7);
}

TEST(PictureOrigin, AFrameThatClearsNothingNeedsThoseBeforeIt) {
    PictureOrigin origin;
    clean_frame(origin, 3, false);
    origin.begin_frame(4, true);
    origin.drew();
    EXPECT_FALSE(origin.all_drawn());
    EXPECT_EQ(origin.since(), 3);
}

TEST(PictureOrigin, WithoutAnyClearTheLoadingScreenIsNeeded) {
    PictureOrigin origin;
    origin.begin_frame(0, true);
    origin.drew();
    EXPECT_FALSE(origin.all_drawn());
    EXPECT_EQ(origin.since(), kLoadingFrame);
}

TEST(PictureOrigin, DrawingOnAnOldDepthBufferNeedsTheFrameThatMadeIt) {
    PictureOrigin origin;
    clean_frame(origin, 3, false);
    origin.begin_frame(4, true);
    origin.cleared_color();
    EXPECT_TRUE(origin.all_drawn());
    origin.drew();
    EXPECT_FALSE(origin.all_drawn());
    EXPECT_EQ(origin.since(), 3);
}

TEST(PictureOrigin, ClearingColourAndDepthInTwoStepsIsAFullClear) {
    PictureOrigin origin;
    clean_frame(origin, 3, false);
    origin.begin_frame(4, true);
    origin.cleared_depth();
    origin.cleared_color();
    origin.drew();
    EXPECT_TRUE(origin.all_drawn());
    EXPECT_EQ(origin.since(), 4);
}

TEST(PictureOrigin, ATextureFromASkippedFrameNeedsThatFrame) {
    PictureOrigin origin;
    clean_frame(origin, 3, false);
    origin.copied_whole(9);
    clean_frame(origin, 40, true);
    EXPECT_TRUE(origin.all_drawn());
    origin.sampled(9);
    EXPECT_FALSE(origin.all_drawn());
    EXPECT_EQ(origin.since(), 3);
}

TEST(PictureOrigin, ATextureCopiedAnewInTheSameFrameNeedsNoOther) {
    PictureOrigin origin;
    clean_frame(origin, 3, false);
    origin.copied_whole(9);
    clean_frame(origin, 40, true);
    origin.copied_whole(9);
    origin.sampled(9);
    EXPECT_TRUE(origin.all_drawn());
    EXPECT_EQ(origin.since(), 40);
}

TEST(PictureOrigin, ATextureCopiedInPartKeepsNeedingTheRest) {
    PictureOrigin origin;
    clean_frame(origin, 3, false);
    origin.copied_whole(9);
    clean_frame(origin, 40, true);
    origin.copied_part(9);
    origin.sampled(9);
    EXPECT_FALSE(origin.all_drawn());
    EXPECT_EQ(origin.since(), 3);
}

TEST(PictureOrigin, WhatATextureIsMadeOfIsHandedOnByCopies) {
    PictureOrigin origin;
    clean_frame(origin, 3, false);
    origin.copied_whole(9);
    clean_frame(origin, 4, true);
    origin.sampled(9);
    origin.copied_whole(8);
    clean_frame(origin, 5, true);
    origin.sampled(8);
    EXPECT_FALSE(origin.all_drawn());
    EXPECT_EQ(origin.since(), 3);
}

TEST(PictureOrigin, TexturesThatCannotBeToldCountAsAll) {
    PictureOrigin origin;
    clean_frame(origin, 3, false);
    origin.copied_whole(9);
    clean_frame(origin, 4, true);
    origin.sampled_any();
    EXPECT_FALSE(origin.all_drawn());
}

TEST(PictureOrigin, ATextureThatIsNoCopyNeedsNothing) {
    PictureOrigin origin;
    clean_frame(origin, 4, true);
    origin.sampled(1);
    EXPECT_TRUE(origin.all_drawn());
    EXPECT_FALSE(origin.any_copies());
}

} // namespace
