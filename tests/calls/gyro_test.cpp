#include <GL/glu.h>

#include <cmath>

#include "show/image/filters.h"
#include "show/image/generators.h"
#include "show/image/image.h"
#include "show/image/upload.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"
#include "tests/calls/expected_layers.h"
#include "tests/calls/scene_test.h"

namespace {

void make_glow_texture() {
    Image* a = image_create(256, 256, 1);
    image_fill(a, 0xff000000);
    Image* b = image_create(256, 256, 1);
    image_fill(b, 0xff000000);
    image_radial(b, 0.0, 1.0);
    image_levels(b, 7, 0, 65535, 65535, 0);
    image_set_alpha(a, b);
    Image* m = image_create(256, 256, 6);
    image_fill(m, 0xffba0000);
    image_blend(m, b, 2, 200);
    image_set_alpha(m, b);
    image_upload(m, 1);
    image_free(a);
    image_free(b);
    image_free(m);
}

void place_camera(int pass, float t) {
    switch (pass) {
    case 1:
        expected::look_at();
        glRotatef(70, -1, 0, 0);
        glTranslated(0, 100, -70);
        glRotatef(-30 * t, 0, 0, 1);
        break;
    case 2:
        expected::look_at();
        glRotatef(70, -1, 0, 0);
        glTranslated(0, 70, -10);
        glRotatef(-25 * t, 0, 0, 1);
        glRotatef(25 * t, 1, 1, 0);
        break;
    case 3:
        glRotatef(-100 * t, 1, 1, 1);
        glTranslated(0, 0, -0.0);
        expected::look_at();
        break;
    default:
        break;
    }
}

void draw_slabs() {
    const double k = 0.15915494327375637;
    glTranslated(-120, -120, -40);
    for (int i = 0; i <= 19; ++i) {
        for (int j = 0; j <= 19; ++j) {
            const double cx = std::pow(std::cos(j * k) * 1.1, 12);
            const double cy = std::pow(std::cos(i * k) * 1.1, 12);
            const double sx = std::pow(std::sin(j * k) * 0.9, 2);
            const double sy = std::pow(std::sin(i * k) * 0.9, 2);
            glPushMatrix();
            glScaled(12, 12, 12);
            draw_box(j, i, 0, j + 1, i + 1, cx + 1 + cy + sx + 1 + sy - 2);
            draw_box(j, i, -1 - cx - 1 - cy + 20, j + 1, i + 1, 20);
            glPopMatrix();
        }
    }
}

void draw_flat_ring(float inner, float outer) {
    for (int i = 0; i <= 358; ++i) {
        const double here = i * 0.01768388258597293;
        const double next = (i + 1) * 0.01768388258597293;
        glPushMatrix();
        glScaled(5, 5, 5);
        glNormal3d(0, 0, -1);
        glBegin(GL_QUADS);
        expected::corner(0, 0, outer * std::sin(here), outer * std::cos(here), 0);
        expected::corner(0, 1, inner * std::sin(here), inner * std::cos(next), 0);
        expected::corner(1, 1, inner * std::sin(next), inner * std::cos(next), 0);
        expected::corner(1, 0, outer * std::sin(next), outer * std::cos(here), 0);
        glEnd();
        glPopMatrix();
    }
}

void draw_ring_band(float radius) {
    const double k = 0.0017683882585972932;
    for (int i = 0; i <= 35; ++i) {
        const double here = i * 0.1768388258597293;
        const double next = (i + 1) * 0.1768388258597293;
        glPushMatrix();
        glScaled(5, 5, 5);
        glNormal3d(0, 0, -1);
        glBegin(GL_QUADS);
        expected::corner(0, 0, radius * std::sin(here), radius * std::cos(here), -0.5);
        expected::corner(0, 1, radius * std::sin(here), radius * std::cos(100 * i * k), 0.5);
        expected::corner(1, 1, radius * std::sin(next), radius * std::cos((100 * i + 100) * k), 0.5);
        expected::corner(1, 0, radius * std::sin(next), radius * std::cos(next), -0.5);
        glEnd();
        glPopMatrix();
    }
}

void draw_gyroscope(double time) {
    glPushMatrix();
    glColor3f(0, 1, 0);
    glTranslated(-120, -120, 120);
    glRotatef(rounded(time * 50), 1, 0.5f, 0.1f);
    draw_flat_ring(8, 10);
    draw_ring_band(10);
    draw_ring_band(8);
    glPopMatrix();

    glPushMatrix();
    glColor3f(1, 0, 0);
    glTranslated(-120, -120, 120);
    glRotatef(rounded(time * 100), 0.5f, 0.1f, 0.3f);
    draw_flat_ring(5, 8);
    draw_ring_band(7.9f);
    draw_ring_band(5);
    glPopMatrix();

    glPushMatrix();
    glColor3f(0, 0, 1);
    glTranslated(-120, -120, 120);
    glRotatef(rounded(time * 200), 0.3f, 0.5f, 0.9f);
    draw_flat_ring(3, 5);
    draw_ring_band(4.9f);
    draw_ring_band(3);
    glPopMatrix();
}

void draw_column(unsigned beam, int x, int y) {
    glPushMatrix();
    glTranslated(x, y, 0);
    glRotatef(90, 0, 0, -1);
    expected::beam_material(beam);
    expected::red_beam(0);
    glPopMatrix();
}

void draw_helix(int x, int z, int direction, double time) {
    glPushMatrix();
    glTranslated(x, -0.0, z);
    glRotatef(rounded(direction * time * 300), 0, 1, 0);
    expected::helix_strand(0.0f, 0);
    expected::helix_strand(18.0f, 0);
    glPopMatrix();
}

void draw_letterbox() {
    glDepthMask(1);
    glEnable(GL_LIGHTING);
    end_2d();
    glPushMatrix();
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDisable(0x1702);
    glColor4f(0, 0, 0, 0);
    glViewport(0, 0, 1024, 768);
    begin_2d();
    glDepthMask(0);
    draw_rect(0, 0, 1024, 76.8);
    draw_rect(0, 691.2, 1024, 768);
    glColor4f(1, 1, 1, 0);
    glEnable(GL_BLEND);
    glEnable(GL_LIGHTING);
    glEnable(0x1702);
    glDepthMask(1);
    glPopMatrix();
    glViewport(0, 76, 1024, 614);
    end_2d();
}

int caption_row(int pass) {
    switch (pass) {
    case 1:
        return 4;
    case 2:
        return 5;
    case 3:
        return 6;
    default:
        return -1;
    }
}

// The frame of a pass at a show time, t seconds after its start.
void draw_frame(const Names& names, int pass, float t, double time) {
    glLoadIdentity();
    set_render_state(7);
    place_camera(pass, t);
    glClearColor(0.5f, 0.5f, 0.5f, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    glDisable(GL_BLEND);
    expected::bind(names.wall);
    draw_slabs();
    glTranslated(240, 240, -40);
    glDisable(GL_CULL_FACE);
    glEnable(GL_BLEND);
    expected::bind(names.glow);
    draw_gyroscope(time);
    glDepthMask(1);
    draw_column(names.beam, -60, -60);
    draw_column(names.beam, -180, -60);
    draw_column(names.beam, -180, -180);
    draw_column(names.beam, -60, -180);
    glDepthMask(0);
    glPushMatrix();
    glRotatef(90, 1, 0, 0);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(1, 1, 1, 1);
    expected::bind(names.ribbon);
    draw_helix(-180, 60, 1, time);
    draw_helix(-180, 180, -1, time);
    draw_helix(-60, 180, 1, time);
    draw_helix(-60, 60, -1, time);
    glDepthMask(1);
    glPopMatrix();
    expected::caption(names.words, caption_row(pass));
    draw_letterbox();
}

class Gyro : public SceneTest {
protected:
    Gyro() : SceneTest(kGyro, {kGreetings}) {}
    void draw_expected(double time) override { draw_frame(names_, pass(), seconds_in(time), time); }
};

} // namespace

TEST(GyroTexture, IsARedDiscMadeInSteps) { EXPECT_TRUE(prepares(kGyro, make_glow_texture)); }

TEST_F(Gyro, ThePassOneFrameTurnsAboutTheRoomsAxis) {
    start_pass(1, 34.0);
    expect_right_frames({34.0, 34.016, 36.7, 39.99});
}

TEST_F(Gyro, ThePassTwoFrameTiltsTheRoomToo) {
    start_pass(2, 40.0);
    expect_right_frames({40.0, 42.1, 45.49});
}

TEST_F(Gyro, ThePassThreeFrameTumblesBeforeItLooks) {
    start_pass(3, 45.5);
    expect_right_frames({45.5, 47.3, 54.99});
}

TEST_F(Gyro, AFourthStartLeavesTheViewAndTheCaptionOut) {
    start_pass(4, 60.0);
    EXPECT_TRUE(frame_is_right(61.0));
    EXPECT_EQ(recording::count(frame(61.0), "gluLookAt"), 0);
}

TEST_F(Gyro, BeforeItsFirstStartItLeavesThemOutToo) { EXPECT_TRUE(frame_is_right(1.0)); }

TEST_F(Gyro, TheTimeOfAPassIsSinglePrecision) {
    start_pass(1, 34.1);
    EXPECT_TRUE(frame_is_right(34.1));
    EXPECT_TRUE(frame_is_right(35.3));
}

TEST_F(Gyro, ItDrawsFromScrollHeightZeroWhateverTheGreetingsLeft) {
    leave_greetings_scrolled();
    start_pass(1, 34.0);
    EXPECT_TRUE(frame_is_right(34.0));
}

TEST_F(Gyro, TurnsLightingOnAgainInTheCache) {
    start_pass(1, 34.0);
    set_render_state(5); // as the greetings leave it
    EXPECT_TRUE(frame_is_right(35.0));
    EXPECT_EQ(g_render_state, 7);
}
