#include "driver/loading_picture.h"

#include <GL/glu.h>
#include <gtest/gtest.h>

#include <vector>

#include "driver/gl_helpers.h"
#include "driver/loading.h"
#include "recording.h"

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
