// Uploading, with GL and GLU replaced by a list of the calls.
#include <GL/glu.h>
#include <gtest/gtest.h>

#include <string>

#include "show/image/upload.h"
#include "tests/unit/image/support.h"

namespace {

// What the stand-ins below have seen, and what they answer.
struct {
    std::vector<std::string> calls;
    std::vector<std::uint8_t> pixels;
    GLuint next_name = 1;
    GLenum error = GL_NO_ERROR;
} g_gl;

std::string name_of(GLenum value) {
    switch (value) {
    case GL_TEXTURE_2D:
        return "2D";
    case GL_RGB:
        return "RGB";
    case GL_RGBA:
        return "RGBA";
    case GL_LUMINANCE:
        return "LUMINANCE";
    case GL_LUMINANCE_ALPHA:
        return "LUMINANCE_ALPHA";
    case GL_UNSIGNED_BYTE:
        return "BYTE";
    case GL_TEXTURE_MIN_FILTER:
        return "MIN";
    case GL_TEXTURE_MAG_FILTER:
        return "MAG";
    case GL_TEXTURE_WRAP_S:
        return "S";
    case GL_TEXTURE_WRAP_T:
        return "T";
    case GL_NEAREST:
        return "NEAREST";
    case GL_LINEAR:
        return "LINEAR";
    case GL_NEAREST_MIPMAP_NEAREST:
        return "NEAREST_MIPMAP_NEAREST";
    case GL_LINEAR_MIPMAP_LINEAR:
        return "LINEAR_MIPMAP_LINEAR";
    case GL_REPEAT:
        return "REPEAT";
    case GL_CLAMP:
        return "CLAMP";
    case GL_CLAMP_TO_EDGE:
        return "CLAMP_TO_EDGE";
    default:
        return std::to_string(value);
    }
}

void record(const std::string& call, std::initializer_list<std::string> arguments) {
    std::string text = call;
    for (const std::string& argument : arguments) text += " " + argument;
    g_gl.calls.push_back(text);
}

std::size_t bytes_per_pixel(GLenum format) {
    switch (format) {
    case GL_RGBA:
        return 4;
    case GL_RGB:
        return 3;
    case GL_LUMINANCE_ALPHA:
        return 2;
    default:
        return 1;
    }
}

class ImageUpload : public testing::Test {
protected:
    void SetUp() override { g_gl = {}; }
};

using Calls = std::vector<std::string>;
using Bytes = std::vector<std::uint8_t>;

} // namespace

extern "C" {
void glGenTextures(GLsizei count, GLuint* names) {
    record("glGenTextures", {std::to_string(count)});
    for (GLsizei i = 0; i < count; ++i) names[i] = g_gl.next_name++;
}

void glBindTexture(GLenum target, GLuint name) {
    record("glBindTexture", {name_of(target), std::to_string(name)});
}

void glTexParameteri(GLenum target, GLenum name, GLint value) {
    record("glTexParameteri", {name_of(target), name_of(name), name_of(static_cast<GLenum>(value))});
}

GLenum glGetError() {
    record("glGetError", {});
    return std::exchange(g_gl.error, GL_NO_ERROR);
}

// Reads rows as GL does by default: each starts at a multiple of four bytes.
GLint gluBuild2DMipmaps(GLenum target, GLint components, GLsizei width, GLsizei height, GLenum format,
                        GLenum type, const void* data) {
    record("gluBuild2DMipmaps", {name_of(target), std::to_string(components), std::to_string(width),
                                 std::to_string(height), name_of(format), name_of(type)});
    const std::uint8_t* bytes = static_cast<const std::uint8_t*>(data);
    const std::size_t row = static_cast<std::size_t>(width) * bytes_per_pixel(format);
    const std::size_t stride = (row + 3) / 4 * 4;
    g_gl.pixels.assign(bytes, bytes + row * static_cast<std::size_t>(height));
    unsigned sum = 0;
    for (std::size_t i = 0; i < stride * static_cast<std::size_t>(height); ++i) sum += bytes[i];
    return sum == 0xFFFFFFFF;
}
}

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
    EXPECT_EQ(image_upload(img.get(), kTextureMipmapped), 1u);
    EXPECT_EQ(
        g_gl.calls,
        (Calls{"glGenTextures 1", "glBindTexture 2D 1", "gluBuild2DMipmaps 2D 1 4 1 LUMINANCE BYTE",
               "glTexParameteri 2D MIN LINEAR_MIPMAP_LINEAR", "glTexParameteri 2D MAG LINEAR",
               "glTexParameteri 2D S CLAMP_TO_EDGE", "glGetError", "glTexParameteri 2D T CLAMP_TO_EDGE"}));
    EXPECT_EQ(g_gl.pixels, (Bytes{0, 255, 128, 255}));
}

TEST_F(ImageUpload, InterleavesGreyAndAlpha) {
    const ImagePtr img = make_image({2, 1, 5, {}, {0x0101, 0x0303}, {}, {0x0202, 0x0404}});
    image_upload(img.get(), 1);
    EXPECT_EQ(g_gl.calls[2], "gluBuild2DMipmaps 2D 2 2 1 LUMINANCE_ALPHA BYTE");
    EXPECT_EQ(g_gl.pixels, (Bytes{1, 2, 3, 4}));
}

TEST_F(ImageUpload, InterleavesRedGreenBlueAndAlpha) {
    const Picture picture = {2, 1, 6, {0x0101, 0x0505}, {0x0202, 0x0606}, {0x0303, 0x0707}, {0x0404, 0x0808}};
    image_upload(make_image(picture).get(), 1);
    EXPECT_EQ(g_gl.calls[2], "gluBuild2DMipmaps 2D 4 2 1 RGBA BYTE");
    EXPECT_EQ(g_gl.pixels, (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
    image_upload(make_image({1, 2, 2, {0x0101, 0x0404}, {0x0202, 0x0505}, {0x0303, 0x0606}, {}}).get(), 1);
    EXPECT_EQ(g_gl.calls.at(10), "gluBuild2DMipmaps 2D 3 1 2 RGB BYTE");
    EXPECT_EQ(g_gl.pixels, (Bytes{1, 2, 3, 4, 5, 6}));
}

TEST_F(ImageUpload, TakesPlaneCountsThatAreNeitherOneNorThreeAsGrey) {
    image_upload(make_filled(4, 4, 3, 0).get(), 1);
    EXPECT_EQ(g_gl.calls[2], "gluBuild2DMipmaps 2D 1 4 4 LUMINANCE BYTE");
}

TEST_F(ImageUpload, FiltersAsAsked) {
    const ImagePtr img = make_filled(4, 4, kImageGrey, 0);
    image_upload(img.get(), kTextureNearest);
    EXPECT_EQ(g_gl.calls[3], "glTexParameteri 2D MIN NEAREST_MIPMAP_NEAREST");
    EXPECT_EQ(g_gl.calls[4], "glTexParameteri 2D MAG NEAREST");
    for (int filter : {2, 3, -1}) {
        g_gl.calls.clear();
        image_upload(img.get(), filter);
        EXPECT_EQ(g_gl.calls[3], "glTexParameteri 2D MIN LINEAR");
        EXPECT_EQ(g_gl.calls[4], "glTexParameteri 2D MAG LINEAR");
    }
}

TEST_F(ImageUpload, RepeatsATileWithoutAskingForErrors) {
    image_upload(make_filled(4, 4, kImageGrey | kImageWrap, 0).get(), 1);
    EXPECT_EQ(Calls(g_gl.calls.begin() + 5, g_gl.calls.end()),
              (Calls{"glTexParameteri 2D S REPEAT", "glTexParameteri 2D T REPEAT"}));
}

TEST_F(ImageUpload, ClampsPlainlyWhereAnErrorIsPending) {
    // Whoever caused it: the surplus pop of the loading screen does.
    g_gl.error = GL_STACK_UNDERFLOW;
    image_upload(make_filled(4, 4, kImageGrey, 0).get(), 1);
    EXPECT_EQ(Calls(g_gl.calls.begin() + 5, g_gl.calls.end()),
              (Calls{"glTexParameteri 2D S CLAMP_TO_EDGE", "glGetError", "glTexParameteri 2D S CLAMP",
                     "glTexParameteri 2D T CLAMP"}));
}

TEST_F(ImageUpload, ReturnsTheNameThatGlGave) {
    g_gl.next_name = 42;
    const ImagePtr img = make_filled(1, 1, kImageGrey, 0);
    EXPECT_EQ(image_upload(img.get(), 1), 42u);
    EXPECT_EQ(image_upload(img.get(), 1), 43u);
}

TEST_F(ImageUpload, LetsGlReadPastRowsThatAreNotMultiplesOfFourBytes) {
    for (std::int32_t width : {1, 2, 3, 5}) {
        for (std::uint32_t flags : {1u, 2u, 5u, 6u}) {
            const ImagePtr img = make_filled(width, 7, flags, 65535);
            EXPECT_NE(image_upload(img.get(), 1), 0xFFFFFFFF); // the stand-in reads what GL would
        }
    }
}

TEST_F(ImageUpload, FailsForNullAndWithoutMemoryBeforeAnyCall) {
    EXPECT_EQ(image_upload(nullptr, 1), 0xFFFFFFFF);
    const ImagePtr img = make_filled(4, 4, kImageGrey, 0);
    {
        const ScarceMemory memory(0);
        EXPECT_EQ(image_upload(img.get(), 1), 0xFFFFFFFF);
    }
    EXPECT_TRUE(g_gl.calls.empty());
}

TEST_F(ImageUpload, LeavesTheImageAlone) {
    Material material(60);
    const Picture picture = material.picture(8, 8, 6);
    const ImagePtr img = make_image(picture);
    image_upload(img.get(), 1);
    EXPECT_EQ(picture_of(img.get()), picture);
}
