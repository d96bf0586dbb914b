#include <GL/glu.h>
#include <gtest/gtest.h>

#include <vector>

#include "show/stage/loading_picture.h"
#include "show/stage/loading_picture_data.h"
#include "show/stage/loading_screen.h"
#include "show/stage/packed_picture.h"
#include "tests/hosts/recording/recording.h"

using recording::calls_of;

TEST(LoadingPicture, BecomesAMipmappedTextureAndIsShownOnce) {
    const recording::Log calls = calls_of(make_loading_picture);
    const std::vector<unsigned char> pixels(256 * 256 * 3);
    EXPECT_EQ(calls, calls_of([&] {
                  GLuint texture;
                  glGenTextures(1, &texture);
                  glBindTexture(GL_TEXTURE_2D, g_loading_texture);
                  gluBuild2DMipmaps(GL_TEXTURE_2D, 3, 256, 256, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
                  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
                  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
                  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
                  glGetError();
                  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
                  draw_loading_screen();
              }));
    EXPECT_NE(g_loading_texture, 0u);
    EXPECT_EQ(g_loading_steps, 1);
}

TEST(LoadingPicture, IsStoredAs64By64BlocksWithQuantiser20) {
    begin_bits(kLoadingPicture, kLoadingPictureSize);
    EXPECT_EQ(read_bits(8), 64u);
    EXPECT_EQ(read_bits(8), 64u);
    EXPECT_EQ(read_bits(8), 20u);
}

TEST(LoadingPicture, IsUploadedInTheColoursThatAreStored) {
    make_loading_picture();
    constexpr std::size_t kPixels = 256 * 256;
    std::vector<unsigned char> samples(static_cast<std::size_t>(packed_buffer_size(kLoadingPicture)));
    ASSERT_EQ(decode_packed_n(kLoadingPicture, kLoadingPictureSize, samples.data()), 1);
    std::vector<unsigned char> r(kPixels), g(kPixels), b(kPixels), expected;
    yuv_to_rgb(256, 256, samples.data(), r.data(), g.data(), b.data());
    for (std::size_t i = 0; i < kPixels; ++i) expected.insert(expected.end(), {r[i], g[i], b[i]});
    ASSERT_NE(r, b) << "a grey picture could not show its planes exchanged";

    ASSERT_FALSE(recording::uploads().empty());
    const recording::Upload& upload = recording::uploads().back();
    EXPECT_EQ(upload.texture, g_loading_texture);
    EXPECT_EQ(upload.width, 256);
    EXPECT_EQ(upload.height, 256);
    EXPECT_TRUE(upload.pixels == expected);
}
