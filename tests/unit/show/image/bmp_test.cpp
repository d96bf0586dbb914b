// BMP export.
#include <gtest/gtest.h>

#include <cstdlib>

#include "show/image/bmp.h"
#include "tests/unit/show/image/support.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

// The file of an image, copied and freed.
Bytes file_of(const ImagePtr& img) {
    std::int32_t size = -1;
    std::uint8_t* file = image_to_bmp(img.get(), &size);
    const Bytes bytes(file, file + size);
    std::free(file);
    return bytes;
}

} // namespace

TEST(ImageToBmp, WritesTheHeader) {
    const Bytes file = file_of(make_filled(300, 2, kImageGrey, 0));
    Bytes header = {'B',  'M',        // signature
                    0x3E, 0x07, 0, 0, // 1854 bytes: 54 + 300 * 2 * 3
                    0,    0,    0, 0, // reserved
                    54,   0,    0, 0, // offset of the pixels
                    40,   0,    0, 0, // size of the information header
                    0x2C, 0x01, 0, 0, // width
                    2,    0,    0, 0, // height
                    1,    0,          // planes
                    24,   0};         // bits per pixel
    header.resize(54, 0);
    EXPECT_EQ(Bytes(file.begin(), file.begin() + 54), header);
    EXPECT_EQ(file.size(), 1854u);
}

TEST(ImageToBmp, WritesTheBottomRowFirstWithoutPadding) {
    Picture picture{3, 2, 2, {}, {}, {}, {}};
    for (std::int32_t i = 0; i < 6; ++i) {
        picture.red.push_back((10 + i) * 257);
        picture.green.push_back((20 + i) * 257);
        picture.blue.push_back((30 + i) * 257);
    }
    const Bytes file = file_of(make_image(picture));
    EXPECT_EQ(file.size(), 54u + 18u);
    EXPECT_EQ(Bytes(file.begin() + 54, file.end()),
              (Bytes{33, 23, 13, 34, 24, 14, 35, 25, 15, 30, 20, 10, 31, 21, 11, 32, 22, 12}));
}

TEST(ImageToBmp, RepeatsGreyAndClamps) {
    const Bytes file = file_of(make_grey(2, 1, {-5, 70000}));
    EXPECT_EQ(Bytes(file.begin() + 54, file.end()), (Bytes{0, 0, 0, 255, 255, 255}));
}

TEST(ImageToBmp, IsNullWhereTheFileWouldBeLargerThan2GiB) {
    // A refusal allocates nothing; a lack of memory would show as an allocation that failed.
    std::int32_t size = 77;
    const auto asks_for_memory = [&size](std::int32_t height) {
        const Image img = {1, height, kImageGrey, nullptr, nullptr, nullptr, nullptr};
        const ScarceMemory memory(0);
        EXPECT_EQ(image_to_bmp(&img, &size), nullptr);
        return memory.ran_out();
    };
    EXPECT_TRUE(asks_for_memory(715827864));  // 54 + 3 * height = 2^31 - 2
    EXPECT_FALSE(asks_for_memory(715827865)); // 2^31 + 1
    EXPECT_FALSE(asks_for_memory(INT32_MAX));
    EXPECT_EQ(size, 77);
}

TEST(ImageToBmp, IsNullForNullAndWithoutMemory) {
    std::int32_t size = 77;
    EXPECT_EQ(image_to_bmp(nullptr, &size), nullptr);
    const ImagePtr img = make_filled(2, 2, kImageGrey, 0);
    const ScarceMemory memory(0);
    EXPECT_EQ(image_to_bmp(img.get(), &size), nullptr);
}
