// Uploading, by the calls that reach the recording host and the pixels that it was given.
#include <GL/glu.h>
#include <gtest/gtest.h>

#include "show/image/upload.h"
#include "tests/hosts/recording/recording.h"
#include "tests/unit/show/image/support.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using recording::calls_of;

// The calls that make a texture, up to the wrap modes.
void upload_calls(int components, int width, int height, GLenum format, GLint min_filter, GLint mag_filter) {
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    const Bytes pixels(static_cast<std::size_t>((width * components + 3) * height));
    gluBuild2DMipmaps(GL_TEXTURE_2D, components, width, height, format, GL_UNSIGNED_BYTE, pixels.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, min_filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, mag_filter);
}

void clamp_to_edge() {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glGetError();
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

class ImageUpload : public testing::Test {
protected:
    void SetUp() override { recording::restore_gl({}); }

    // What an upload calls, from a fresh GL on.
    recording::Log upload(const ImagePtr& img, int filter = kTextureMipmapped) {
        recording::restore_gl({});
        return calls_of([&] { image_upload(img.get(), filter); });
    }

    // The same calls as they are expected.
    recording::Log expected(const std::function<void()>& calls) {
        const recording::GlModel after = recording::save_gl();
        recording::restore_gl({});
        const recording::Log log = calls_of(calls);
        recording::restore_gl(after);
        return log;
    }

    Bytes pixels() const { return recording::uploads().at(0).pixels; }
};

} // namespace

TEST(ValueToByte, ClampsAndTakesTheHighByte) {
    EXPECT_EQ(value_to_byte(-5), 0);
    EXPECT_EQ(value_to_byte(70000), 255);
    EXPECT_EQ(value_to_byte(0x8080), 128);
    EXPECT_EQ(value_to_byte(0), 0);
    EXPECT_EQ(value_to_byte(255), 0);
    EXPECT_EQ(value_to_byte(256), 1);
    EXPECT_EQ(value_to_byte(65535), 255);
    EXPECT_EQ(value_to_byte(65536), 255);
    EXPECT_EQ(value_to_byte(INT32_MIN), 0);
    EXPECT_EQ(value_to_byte(INT32_MAX), 255);
    for (int b = 0; b < 256; ++b) EXPECT_EQ(value_to_byte(b * 257), b);
}

TEST_F(ImageUpload, OfGreyMakesAMipmappedLuminanceTexture) {
    const ImagePtr img = make_grey(4, 1, {-5, 70000, 0x8080, 65535});
    EXPECT_EQ(upload(img), expected([] {
                  upload_calls(1, 4, 1, GL_LUMINANCE, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR);
                  clamp_to_edge();
              }));
    EXPECT_EQ(pixels(), (Bytes{0, 255, 128, 255}));
}

TEST_F(ImageUpload, InterleavesGreyAndAlpha) {
    EXPECT_EQ(upload(make_image({2, 1, 5, {}, {0x0101, 0x0303}, {}, {0x0202, 0x0404}})), expected([] {
                  upload_calls(2, 2, 1, GL_LUMINANCE_ALPHA, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR);
                  clamp_to_edge();
              }));
    EXPECT_EQ(pixels(), (Bytes{1, 2, 3, 4}));
}

TEST_F(ImageUpload, InterleavesRedGreenBlueAndAlpha) {
    const Picture picture = {2, 1, 6, {0x0101, 0x0505}, {0x0202, 0x0606}, {0x0303, 0x0707}, {0x0404, 0x0808}};
    EXPECT_EQ(upload(make_image(picture)), expected([] {
                  upload_calls(4, 2, 1, GL_RGBA, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR);
                  clamp_to_edge();
              }));
    EXPECT_EQ(pixels(), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(upload(make_image({1, 2, 2, {0x0101, 0x0404}, {0x0202, 0x0505}, {0x0303, 0x0606}, {}})),
              expected([] {
                  upload_calls(3, 1, 2, GL_RGB, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR);
                  clamp_to_edge();
              }));
    EXPECT_EQ(pixels(), (Bytes{1, 2, 3, 4, 5, 6}));
}

TEST_F(ImageUpload, TakesPlaneCountsThatAreNeitherOneNorThreeAsGrey) {
    EXPECT_EQ(upload(make_filled(4, 4, 3, 0)), expected([] {
                  upload_calls(1, 4, 4, GL_LUMINANCE, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR);
                  clamp_to_edge();
              }));
}

TEST_F(ImageUpload, FiltersAsAsked) {
    const ImagePtr img = make_filled(4, 4, kImageGrey, 0);
    EXPECT_EQ(upload(img, kTextureNearest), expected([] {
                  upload_calls(1, 4, 4, GL_LUMINANCE, GL_NEAREST_MIPMAP_NEAREST, GL_NEAREST);
                  clamp_to_edge();
              }));
    for (int filter : {2, 3, -1}) {
        EXPECT_EQ(upload(img, filter), expected([] {
                      upload_calls(1, 4, 4, GL_LUMINANCE, GL_LINEAR, GL_LINEAR);
                      clamp_to_edge();
                  }));
    }
}

TEST_F(ImageUpload, RepeatsATileWithoutAskingForErrors) {
    EXPECT_EQ(upload(make_filled(4, 4, kImageGrey | kImageWrap, 0)), expected([] {
                  upload_calls(1, 4, 4, GL_LUMINANCE, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR);
                  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
                  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
              }));
}

TEST_F(ImageUpload, ClampsPlainlyWhereAnErrorIsPending) {
    glPopMatrix(); // any call may have caused it: the loading screen pops once too often
    ASSERT_NE(recording::pending_error(), 0u);
    const ImagePtr img = make_filled(4, 4, kImageGrey, 0);
    EXPECT_EQ(calls_of([&] { image_upload(img.get(), kTextureMipmapped); }), expected([] {
                  upload_calls(1, 4, 4, GL_LUMINANCE, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR);
                  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
                  glGetError();
                  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
                  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
              }));
    EXPECT_EQ(recording::pending_error(), 0u);
}

TEST_F(ImageUpload, ReturnsTheNameThatGlGave) {
    recording::GlModel gl;
    gl.next_texture = 42;
    recording::restore_gl(gl);
    const ImagePtr img = make_filled(1, 1, kImageGrey, 0);
    EXPECT_EQ(image_upload(img.get(), 1), 42u);
    EXPECT_EQ(image_upload(img.get(), 1), 43u);
    EXPECT_EQ(recording::uploads().at(1).texture, 43u);
}

TEST_F(ImageUpload, LetsGlReadPastRowsThatAreNotMultiplesOfFourBytes) {
    for (std::int32_t width : {1, 2, 3, 5}) {
        for (std::uint32_t flags : {1u, 2u, 5u, 6u}) {
            image_upload(make_filled(width, 7, flags, 65535).get(), 1);
            EXPECT_EQ(recording::uploads().back().padding,
                      Bytes(recording::uploads().back().padding.size(), 0));
        }
    }
}

TEST_F(ImageUpload, FailsForNullAndWithoutMemoryBeforeAnyCall) {
    const ImagePtr img = make_filled(4, 4, kImageGrey, 0);
    const recording::Log calls = calls_of([&] {
        EXPECT_EQ(image_upload(nullptr, 1), 0xFFFFFFFF);
        const ScarceMemory memory(0);
        EXPECT_EQ(image_upload(img.get(), 1), 0xFFFFFFFF);
    });
    EXPECT_TRUE(calls.empty());
}

TEST_F(ImageUpload, LeavesTheImageAlone) {
    Material material(60);
    const Picture picture = material.picture(8, 8, 6);
    const ImagePtr img = make_image(picture);
    image_upload(img.get(), 1);
    EXPECT_EQ(picture_of(img.get()), picture);
}
