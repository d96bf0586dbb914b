#include <gtest/gtest.h>

#include "hosts/desktop/display/sharpness.h"

namespace {

using common::Box;
using common::Extent;
using desktop::Sharpness;

void expect_place(Extent window, Box expected) {
    const Box place = desktop::picture_place(window);
    EXPECT_EQ(expected.x, place.x);
    EXPECT_EQ(expected.y, place.y);
    EXPECT_EQ(expected.width, place.width);
    EXPECT_EQ(expected.height, place.height);
}

TEST(PicturePlace, IsAsLargeAsFitsAndCentred) {
    expect_place({1024, 768}, {0, 0, 1024, 768});
    expect_place({1920, 1080}, {240, 0, 1440, 1080});
    expect_place({1080, 1920}, {0, 555, 1080, 810});
    expect_place({1, 1000}, {0, 499, 1, 1});
}

TEST(Multiple, IsTheSmallestThatCoversThePicturesPlaceUpTo4) {
    const Sharpness sharpness;
    EXPECT_EQ(1, sharpness.multiple_for({320, 240}));
    EXPECT_EQ(1, sharpness.multiple_for({1024, 768}));
    EXPECT_EQ(2, sharpness.multiple_for({1025, 769}));
    EXPECT_EQ(1, sharpness.multiple_for({1920, 768})) << "only the picture's place counts";
    EXPECT_EQ(2, sharpness.multiple_for({1920, 1080}));
    EXPECT_EQ(2, sharpness.multiple_for({2048, 1536}));
    EXPECT_EQ(2, sharpness.multiple_for({1080, 1920}));
    EXPECT_EQ(3, sharpness.multiple_for({3840, 2160}));
    EXPECT_EQ(4, sharpness.multiple_for({4096, 3072}));
    EXPECT_EQ(4, sharpness.multiple_for({15360, 8640}));
}

TEST(Multiple, IsOneInSoftwareUnlessItIsForced) {
    Sharpness sharpness;
    sharpness.in_software = true;
    EXPECT_EQ(1, sharpness.multiple_for({4096, 3072}));
    sharpness.forced = 3;
    EXPECT_EQ(3, sharpness.multiple_for({320, 240}));
}

TEST(Multiple, IsOneMoreWhenSmooth) {
    Sharpness sharpness;
    sharpness.smooth = true;
    EXPECT_EQ(2, sharpness.multiple_for({1024, 768}));
    EXPECT_EQ(5, sharpness.multiple_for({4096, 3072}));
    sharpness.forced = 2;
    EXPECT_EQ(3, sharpness.multiple_for({1024, 768}));
}

TEST(Software, IsToldByTheNameOfTheRenderer) {
    for (const char* name : {"llvmpipe (LLVM 15.0.6, 256 bits)", "softpipe", "Software Rasterizer",
                             "SWR (LLVM 11.0.1, 256 bits)", "virgl (LLVMPIPE (LLVM 15.0.6, 256 bits))",
                             "zink Vulkan 1.3(llvmpipe (LLVM 15.0.6, 256 bits) (MESA_LLVMPIPE))",
                             "D3D12 (Microsoft Basic Render Driver)"}) {
        EXPECT_TRUE(desktop::draws_in_software(name)) << name;
    }
    for (const char* name : {"Mesa Intel(R) UHD Graphics 620 (KBL GT2)", "AMD Radeon RX 580 Series",
                             "NVIDIA GeForce GTX 1060/PCIe/SSE2", "SVGA3D; build: RELEASE;  LLVM;",
                             "virgl (Mesa Intel(R) HD Graphics)", "V3D 4.2", "llvm", ""}) {
        EXPECT_FALSE(desktop::draws_in_software(name)) << name;
    }
    EXPECT_FALSE(desktop::draws_in_software(nullptr));
}

} // namespace
