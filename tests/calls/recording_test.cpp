// The host that the other tests of this folder trust.
#include <GL/glu.h>
#include <gtest/gtest.h>

#include "tests/calls/scene_test.h"
#include "tests/hosts/recording/recording.h"

namespace {

unsigned new_texture() {
    unsigned name = 0;
    glGenTextures(1, &name);
    return name;
}

} // namespace

TEST(RecordingHost, RejectsWhatMustNotStandBetweenBeginAndEnd) {
    EXPECT_EQ(rejected_calls_of([] {
                  glBegin(GL_QUADS);
                  glColor4f(1, 1, 1, 1);
                  glNormal3d(0, 0, 1);
                  glTexCoord2d(0, 0);
                  glVertex3d(0, 0, 0);
                  glEnable(GL_BLEND);
                  glPushMatrix();
                  glTranslated(0, 0, 0);
                  glBegin(GL_QUADS);
                  glEnd();
              }),
              (std::vector<std::string>{"glEnable", "glPushMatrix", "glTranslated", "glBegin"}));
    EXPECT_EQ(recording::modelview_depth(), 1); // a rejected call does nothing
    EXPECT_EQ(recording::pending_error(), static_cast<unsigned>(GL_INVALID_OPERATION));
}

TEST(RecordingHost, RejectsASurplusEndAndASurplusPop) {
    EXPECT_EQ(rejected_calls_of([] {
                  glEnd();
                  glPopMatrix();
              }),
              (std::vector<std::string>{"glEnd", "glPopMatrix"}));
}

TEST(RecordingHost, KeepsThePixelsOfAnUploadWithTheTextureTheyWentTo) {
    const unsigned char pixels[2 * 3 * 2] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    new_texture();
    const unsigned texture = new_texture();
    glBindTexture(GL_TEXTURE_2D, texture);
    gluBuild2DMipmaps(GL_TEXTURE_2D, 2, 2, 3, GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, pixels);
    ASSERT_EQ(recording::uploads().size(), 1u);
    const recording::Upload& upload = recording::uploads()[0];
    EXPECT_EQ(upload.texture, texture);
    EXPECT_EQ(upload.width, 2);
    EXPECT_EQ(upload.height, 3);
    EXPECT_EQ(upload.format, static_cast<unsigned>(GL_LUMINANCE_ALPHA));
    EXPECT_EQ(upload.pixels, std::vector<unsigned char>(pixels, pixels + 12));
}

TEST(RecordingHost, GivesTheSameNamesAgainFromASavedState) {
    new_texture();
    const recording::GlModel saved = recording::save_gl();
    const unsigned texture = new_texture();
    const unsigned list = glGenLists(2);
    glPopMatrix();
    recording::restore_gl(saved);
    EXPECT_EQ(new_texture(), texture);
    EXPECT_EQ(glGenLists(1), list);
    EXPECT_TRUE(recording::errors().empty());
}

TEST(Comparison, SeesAnotherCallAnotherOrderAndAnotherNumberOfCalls) {
    const auto calls = [] {
        glEnable(GL_BLEND);
        glDepthMask(GL_TRUE);
    };
    EXPECT_TRUE(same_calls(calls, calls));
    EXPECT_FALSE(same_calls(calls, [] { glEnable(GL_BLEND); }));
    EXPECT_FALSE(same_calls([] { glEnable(GL_BLEND); }, calls));
    EXPECT_FALSE(same_calls(calls, [] {
        glDepthMask(GL_TRUE);
        glEnable(GL_BLEND);
    }));
}

TEST(Comparison, SeesAnotherNumberTypeTheLastBitAndTheSignOfZero) {
    const double nearly = 1.0 - 0x1p-53;
    EXPECT_FALSE(same_calls([] { glTranslated(1, 0, 0); }, [] { glTranslatef(1, 0, 0); }));
    EXPECT_FALSE(same_calls([] { glTranslated(1, 0, 0); }, [nearly] { glTranslated(nearly, 0, 0); }));
    EXPECT_FALSE(same_calls([] { glTranslated(0.0, 0, 0); }, [] { glTranslated(-0.0, 0, 0); }));
}

TEST(Comparison, SeesOtherPixels) {
    const auto upload = [](unsigned char level) {
        return [level] {
            glBindTexture(GL_TEXTURE_2D, new_texture());
            gluBuild2DMipmaps(GL_TEXTURE_2D, 1, 1, 1, GL_LUMINANCE, GL_UNSIGNED_BYTE, &level);
        };
    };
    EXPECT_TRUE(same_calls(upload(7), upload(7)));
    EXPECT_FALSE(same_calls(upload(7), upload(8)));
}
