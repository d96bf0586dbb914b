// The image record and its elementary operations.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdlib>
#include <cstring>

#include "show/image/image.h"
#include "tests/unit/show/image/support.h"

TEST(ImageCreate, AllocatesOnePlaneForGrey) {
    const ImagePtr img = owned(image_create(3, 2, kImageGrey));
    EXPECT_EQ(img->width, 3);
    EXPECT_EQ(img->height, 2);
    EXPECT_EQ(img->flags, 1u);
    EXPECT_NE(img->green, nullptr);
    EXPECT_EQ(img->red, nullptr);
    EXPECT_EQ(img->blue, nullptr);
    EXPECT_EQ(img->alpha, nullptr);
}

TEST(ImageCreate, AllocatesThreePlanesForColorAndAlphaWhereAsked) {
    const ImagePtr img = owned(image_create(3, 2, kImageColor | kImageAlpha));
    EXPECT_NE(img->red, nullptr);
    EXPECT_NE(img->green, nullptr);
    EXPECT_NE(img->blue, nullptr);
    EXPECT_NE(img->alpha, nullptr);
}

TEST(ImageCreate, TakesAnyOtherPlaneCountAsOne) {
    for (std::uint32_t flags : {0u, 3u}) {
        const ImagePtr img = owned(image_create(3, 2, flags));
        EXPECT_EQ(img->flags, flags);
        EXPECT_NE(img->green, nullptr);
        EXPECT_EQ(img->red, nullptr);
        EXPECT_EQ(img->blue, nullptr);
    }
}

TEST(ImageCreate, RefusesSizesThatNoPlaneCanHave) {
    EXPECT_EQ(image_create(0, 5, 1), nullptr);
    EXPECT_EQ(image_create(5, 0, 1), nullptr);
    EXPECT_EQ(image_create(-1, 5, 1), nullptr);
    EXPECT_EQ(image_create(INT32_MIN, INT32_MIN, 1), nullptr);
    EXPECT_EQ(image_create(65536, 65536, 1), nullptr);
    EXPECT_EQ(image_create(INT32_MAX, 2, 2), nullptr);
}

TEST(ImageCreate, GivesNullWhereverMemoryRunsOut) {
    for (int successes = 0;; ++successes) {
        ScarceMemory memory(successes);
        const ImagePtr img = owned(image_create(3, 2, kImageColor | kImageAlpha));
        EXPECT_EQ(img == nullptr, memory.ran_out());
        if (!memory.ran_out()) {
            EXPECT_EQ(successes, 5) << "the record and four planes";
            return;
        }
    }
}

TEST(ImageCreate, MakesLargeImages) {
    const ImagePtr img = owned(image_create(4096, 4096, kImageGrey));
    image_fill(img.get(), 0xFF);
    EXPECT_EQ(img->green[4096 * 4096 - 1], 65535);
}

TEST(ImageCreateLike, TakesSizeAndFlags) {
    const ImagePtr img = owned(image_create(3, 2, 6 | kImageWrap));
    const ImagePtr like = owned(image_create_like(img.get()));
    EXPECT_EQ(like->width, 3);
    EXPECT_EQ(like->height, 2);
    EXPECT_EQ(like->flags, 14u);
    EXPECT_EQ(image_create_like(nullptr), nullptr);
}

TEST(ImageCopy, CopiesEveryPlaneToMemoryOfItsOwn) {
    Material material(1);
    for (std::uint32_t flags : {1u, 2u, 5u, 6u, 14u, 0u}) {
        const Picture picture = material.picture(5, 4, flags);
        const ImagePtr img = make_image(picture);
        const ImagePtr copy = owned(image_copy(img.get()));
        EXPECT_NE(copy->green, img->green);
        EXPECT_EQ(picture_of(copy.get()), picture);
    }
    EXPECT_EQ(image_copy(nullptr), nullptr);
}

TEST(ImageFree, IgnoresNull) { image_free(nullptr); }

TEST(ImageReplace, ShowsTheSourceInTheDestination) {
    Material material(2);
    const Picture picture = material.picture(4, 7, kImageColor | kImageAlpha);
    const ImagePtr dst = make_filled(3, 3, kImageGrey, 5);
    image_replace(dst.get(), make_image(picture).release());
    EXPECT_EQ(picture_of(dst.get()), picture);
}

TEST(ImageReplace, LeavesNoPlaneBehindThatTheSourceLacks) {
    const ImagePtr dst = make_filled(3, 3, kImageColor | kImageAlpha, 5);
    image_replace(dst.get(), make_filled(2, 2, kImageGrey, 7).release());
    EXPECT_EQ(picture_of(dst.get()), (Picture{2, 2, 1, {}, {7, 7, 7, 7}, {}, {}}));
}

TEST(ImageReplace, OfAnImageByItselfChangesNothing) {
    const ImagePtr img = make_filled(2, 1, kImageColor | kImageAlpha, 5);
    const Picture before = picture_of(img.get());
    image_replace(img.get(), img.get());
    EXPECT_EQ(picture_of(img.get()), before);
}

TEST(ImageReplace, IgnoresNull) {
    const ImagePtr img = make_filled(2, 1, kImageGrey, 5);
    image_replace(img.get(), nullptr);
    image_replace(nullptr, img.get());
    EXPECT_EQ(grey_of(img), (Values{5, 5}));
}

TEST(ImageSetAlpha, CopiesTheGreyPlaneAndSetsTheFlag) {
    const ImagePtr img = make_grey(2, 2, {1, 2, 3, 4});
    const ImagePtr color = make_filled(2, 2, kImageColor, 9);
    image_set_alpha(color.get(), img.get());
    EXPECT_EQ(color->flags, 6u);
    EXPECT_EQ(values_of(color.get(), color->alpha), (Values{1, 2, 3, 4}));
    EXPECT_EQ(values_of(color.get(), color->green), (Values{9, 9, 9, 9}));
}

TEST(ImageSetAlpha, GivesAnImageItsOwnGreyAsAlpha) {
    const ImagePtr img = make_grey(2, 1, {1, 70000}, kImageGrey | kImageWrap);
    image_set_alpha(img.get(), img.get());
    EXPECT_EQ(img->flags, 13u);
    EXPECT_NE(img->alpha, img->green);
    EXPECT_EQ(values_of(img.get(), img->alpha), (Values{1, 70000}));
}

TEST(ImageSetAlpha, OverwritesAnAlphaPlaneThatIsThere) {
    const ImagePtr dst = make_filled(2, 1, kImageGrey | kImageAlpha, 9);
    const std::int32_t* const plane = dst->alpha;
    image_set_alpha(dst.get(), make_grey(2, 1, {3, 4}).get());
    EXPECT_EQ(dst->alpha, plane);
    EXPECT_EQ(values_of(dst.get(), dst->alpha), (Values{3, 4}));
}

TEST(ImageSetAlpha, RefusesOtherSizesAndNull) {
    const ImagePtr dst = make_filled(2, 2, kImageGrey, 9);
    const ProgressCount progress;
    image_set_alpha(dst.get(), make_filled(2, 3, kImageGrey, 1).get());
    image_set_alpha(dst.get(), make_filled(4, 1, kImageGrey, 1).get());
    image_set_alpha(dst.get(), nullptr);
    image_set_alpha(nullptr, dst.get());
    EXPECT_EQ(dst->flags, 1u);
    EXPECT_EQ(dst->alpha, nullptr);
    EXPECT_EQ(progress.calls(), 0);
}

TEST(ImageSetAlpha, LeavesTheImageAloneWithoutMemory) {
    const ImagePtr dst = make_filled(2, 2, kImageGrey, 9);
    const ScarceMemory memory(0);
    image_set_alpha(dst.get(), dst.get());
    EXPECT_EQ(dst->flags, 1u);
    EXPECT_EQ(dst->alpha, nullptr);
}

TEST(PlaneFill, RepeatsTheByteInTheValue) {
    Values values(5, -1);
    plane_fill(values.data(), 4, 0x80);
    EXPECT_EQ(values, (Values{0x8080, 0x8080, 0x8080, 0x8080, -1}));
    plane_fill(values.data(), 1, 0xFF);
    EXPECT_EQ(values[0], 0xFFFF);
    plane_fill(values.data(), 0, 1);
    EXPECT_EQ(values[0], 0xFFFF);
}

TEST(ImageFill, GivesAGreyPlaneTheBlueByte) {
    const ImagePtr img = owned(image_create(2, 2, kImageGrey));
    image_fill(img.get(), 0xFF123456);
    EXPECT_EQ(grey_of(img), Values(4, 0x5656));
}

TEST(ImageFill, GivesAlphaTheHighestByte) {
    const ImagePtr img = owned(image_create(2, 2, kImageGrey | kImageAlpha));
    image_fill(img.get(), 0xFF123456);
    EXPECT_EQ(grey_of(img), Values(4, 0x5656));
    EXPECT_EQ(values_of(img.get(), img->alpha), Values(4, 0xFFFF));
}

TEST(ImageFill, GivesEachColorPlaneItsByte) {
    const ImagePtr img = owned(image_create(1, 1, kImageColor | kImageAlpha));
    image_fill(img.get(), 0x01BA5C07);
    EXPECT_EQ(picture_of(img.get()), (Picture{1, 1, 6, {0xBABA}, {0x5C5C}, {0x0707}, {0x0101}}));
}

TEST(ImageFill, TakesTheGreenByteWhereThePlaneCountIsNeitherOneNorThree) {
    for (std::uint32_t flags : {0u, 3u}) {
        const ImagePtr img = owned(image_create(1, 1, flags));
        image_fill(img.get(), 0x01BA5C07);
        EXPECT_EQ(grey_of(img), Values(1, 0x5C5C));
    }
}

TEST(ImageFillRect, FillsOnlyTheRectangle) {
    const ImagePtr img = make_filled(4, 3, kImageGrey, 1);
    image_fill_rect(img.get(), 1, 1, 2, 1, 0xFF0000FF);
    EXPECT_EQ(grey_of(img), (Values{1, 1, 1, 1, 1, 65535, 65535, 1, 1, 1, 1, 1}));
}

TEST(ImageFillRect, IsCutAtTheRightAndBottomEdges) {
    const ImagePtr img = make_filled(3, 3, kImageGrey, 1);
    image_fill_rect(img.get(), 2, 1, 100, 100, 0xFF);
    EXPECT_EQ(grey_of(img), (Values{1, 1, 1, 1, 1, 65535, 1, 1, 65535}));
}

TEST(ImageFillRect, DrawsNothingBeyondTheEdges) {
    const ImagePtr img = make_filled(3, 3, kImageGrey, 1);
    image_fill_rect(img.get(), 3, 0, 2, 2, 0xFF);
    image_fill_rect(img.get(), 0, 3, 2, 2, 0xFF);
    image_fill_rect(img.get(), 0, 0, 0, 3, 0xFF);
    image_fill_rect(img.get(), 0, 0, -3, 3, 0xFF);
    image_fill_rect(img.get(), INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, 0xFF);
    EXPECT_EQ(grey_of(img), Values(9, 1));
}

TEST(ImageFillRect, IsNotCutAtTheLeftEdge) {
    const ImagePtr img = make_filled(3, 3, kImageGrey, 1);
    image_fill_rect(img.get(), -1, 1, 2, 1, 0xFF);
    EXPECT_EQ(grey_of(img), (Values{1, 1, 65535, 65535, 1, 1, 1, 1, 1})) << "it starts in the row above";
}

TEST(ImageFillRect, NeverLeavesThePlane) {
    const ImagePtr img = make_filled(3, 3, kImageGrey, 1);
    image_fill_rect(img.get(), -2, -5, 3, 6, 0xFF);
    EXPECT_EQ(grey_of(img), (Values{65535, 1, 1, 1, 1, 1, 1, 1, 1}));
    image_fill_rect(img.get(), INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX, 0xFF);
}

TEST(ImageFillRect, GivesEachPlaneItsByte) {
    const ImagePtr img = make_filled(2, 1, kImageColor | kImageAlpha, 0);
    image_fill_rect(img.get(), 1, 0, 1, 1, 0xE95E5801);
    EXPECT_EQ(picture_of(img.get()), (Picture{2, 1, 6, {0, 0x5E5E}, {0, 0x5858}, {0, 0x0101}, {0, 0xE9E9}}));
}

TEST(ImageLine, PlotsTwoPixelsWhereTheEndsTouch) {
    for (int dx = -1; dx <= 1; ++dx) {
        for (int dy = -1; dy <= 1; ++dy) {
            const ImagePtr img = make_filled(3, 3, kImageGrey, 0);
            image_line(img.get(), 1, 1, 1 + dx, 1 + dy, 0xFF);
            Values expected(9, 0);
            expected[4] = 65535;
            expected[static_cast<std::size_t>(4 + dx + 3 * dy)] = 65535;
            EXPECT_EQ(grey_of(img), expected) << dx << ", " << dy;
        }
    }
}

TEST(ImageLine, DrawsRowsAndColumnsWithoutGaps) {
    const ImagePtr img = make_filled(6, 6, kImageGrey, 0);
    image_line(img.get(), 0, 2, 5, 2, 0xFF);
    image_line(img.get(), 3, 5, 3, 0, 0xFF);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(img->green[2 * 6 + i], 65535);
        EXPECT_EQ(img->green[i * 6 + 3], 65535);
    }
}

TEST(ImageLine, RoundsMidpointsTowardsZero) {
    // (0, 0)-(1, 4) halves at (0, 2), and (0, 2)-(1, 4) at (0, 3).
    const ImagePtr img = make_filled(2, 5, kImageGrey, 0);
    image_line(img.get(), 0, 0, 1, 4, 0xFF);
    const std::int32_t w = 65535;
    EXPECT_EQ(grey_of(img), (Values{w, 0, w, 0, w, 0, w, 0, 0, w}));
}

TEST(PlaneLine, ReachesTheFarEndOfTheLargestPlane) {
    // Of the plane's 8 GiB only the pages that the line touches come to be.
    constexpr std::int32_t kLength = INT32_MAX;
    const std::size_t bytes = std::size_t{kLength} * sizeof(std::int32_t);
    void* const memory =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) GTEST_SKIP() << "no address space for a plane of 8 GiB";
    std::int32_t* const plane = static_cast<std::int32_t*>(memory);
    plane_line(plane, kLength, kLength - 9, 0, kLength - 1, 0, 255); // a row
    for (std::int32_t i = 1; i <= 9; ++i) EXPECT_EQ(plane[kLength - i], 65535) << i;
    EXPECT_EQ(plane[kLength - 10], 0);
    plane_line(plane, 1, 0, kLength - 9, 0, kLength - 1, 1); // a column
    for (std::int32_t i = 1; i <= 9; ++i) EXPECT_EQ(plane[kLength - i], 257) << i;
    munmap(memory, bytes);
}

TEST(ImageLine, DrawsTheSteepEdgeOfTheRibbon) {
    // One column to the right over the whole height: only the last pixel lies in the next column.
    const ImagePtr img = make_filled(256, 256, kImageGrey, 0);
    image_line(img.get(), 12, 0, 13, 255, 0xFFFFFFFF);
    for (std::size_t y = 0; y < 255; ++y) EXPECT_EQ(img->green[y * 256 + 12], 65535) << y;
    EXPECT_EQ(img->green[255 * 256 + 13], 65535);
    EXPECT_EQ(img->green[255 * 256 + 12], 0);
}

TEST(ImageLine, GivesEachPlaneItsByte) {
    const ImagePtr img = make_filled(2, 1, kImageColor | kImageAlpha, 0);
    image_line(img.get(), 1, 0, 1, 0, 0x01020304);
    EXPECT_EQ(picture_of(img.get()), (Picture{2, 1, 6, {0, 0x0202}, {0, 0x0303}, {0, 0x0404}, {0, 0x0101}}));
}

TEST(ImageLine, IsNotDrawnWithAnEndOutside) {
    const ImagePtr img = make_filled(3, 3, kImageGrey, 0);
    const ProgressCount progress;
    image_line(img.get(), -1, 0, 2, 2, 0xFF);
    image_line(img.get(), 0, 0, 3, 2, 0xFF);
    image_line(img.get(), 0, INT32_MIN, 1, INT32_MAX, 0xFF);
    EXPECT_EQ(grey_of(img), Values(9, 0));
    EXPECT_EQ(progress.calls(), 0);
}
