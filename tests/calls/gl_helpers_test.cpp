#include <gtest/gtest.h>

#include <cmath>

#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/vectors.h"
#include "tests/hosts/recording/recording.h"

using recording::calls_of;

namespace {

recording::Log state_calls(int flags) {
    return calls_of([flags] { set_render_state(flags); });
}

void stencil_show() {
    glStencilFunc(GL_NOTEQUAL, 0, 255);
    glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
}

void stencil_mark() {
    glStencilFunc(GL_ALWAYS, 1, 255);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
}

void colour_writes_on() { glColorMask(1, 1, 1, 1); }

} // namespace

TEST(RenderState, AdditiveBlendingFromAFreshStateIsTwoCallsAndThenNone) {
    EXPECT_EQ(state_calls(0x48), calls_of([] {
                  glEnable(GL_BLEND);
                  glBlendFunc(GL_ONE, GL_ONE);
              }));
    EXPECT_TRUE(state_calls(0x48).empty());
}

TEST(RenderState, AZeroBlendFieldKeepsTheMode) {
    set_render_state(0x48);
    EXPECT_TRUE(state_calls(0x08).empty());
    EXPECT_EQ(g_render_state, 0x48);
    EXPECT_TRUE(state_calls(0x48).empty());
}

TEST(RenderState, SwitchesTheCapabilitiesInBitOrder) {
    EXPECT_EQ(state_calls(0x3F), calls_of([] {
                  glEnable(GL_DEPTH_TEST);
                  glEnable(GL_LIGHTING);
                  glEnable(GL_TEXTURE_2D);
                  glEnable(GL_BLEND);
                  glEnable(GL_CULL_FACE);
                  glEnable(GL_STENCIL_TEST);
              }));
    EXPECT_EQ(state_calls(0x15), calls_of([] {
                  glDisable(GL_LIGHTING);
                  glDisable(GL_BLEND);
                  glDisable(GL_STENCIL_TEST);
              }));
    EXPECT_EQ(state_calls(0x2A), calls_of([] {
                  glDisable(GL_DEPTH_TEST);
                  glEnable(GL_LIGHTING);
                  glDisable(GL_TEXTURE_2D);
                  glEnable(GL_BLEND);
                  glDisable(GL_CULL_FACE);
                  glEnable(GL_STENCIL_TEST);
              }));
}

TEST(RenderState, HasThreeBlendModes) {
    EXPECT_EQ(state_calls(0x40), calls_of([] { glBlendFunc(GL_ONE, GL_ONE); }));
    EXPECT_EQ(state_calls(0x80), calls_of([] { glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); }));
    EXPECT_EQ(state_calls(0xC0), calls_of([] { glBlendFunc(GL_ZERO, GL_SRC_COLOR); }));
}

TEST(RenderState, CullsTheFrontOrTheBackAndRecordsBothWithoutACall) {
    EXPECT_EQ(state_calls(0x110), calls_of([] {
                  glEnable(GL_CULL_FACE);
                  glCullFace(GL_FRONT);
              }));
    EXPECT_EQ(state_calls(0x210), calls_of([] { glCullFace(GL_BACK); }));
    EXPECT_TRUE(state_calls(0x310).empty());
    EXPECT_EQ(g_render_state, 0x310);
    EXPECT_TRUE(state_calls(0x010).empty());
    EXPECT_EQ(g_render_state, 0x310);
    EXPECT_EQ(state_calls(0x210), calls_of([] { glCullFace(GL_BACK); }));
}

TEST(RenderState, TheStencilMarkModeWritesOne) {
    EXPECT_EQ(state_calls(0x420), calls_of([] {
                  glEnable(GL_STENCIL_TEST);
                  stencil_mark();
              }));
    EXPECT_TRUE(state_calls(0x020).empty()); // sticky, like every mode
    EXPECT_EQ(g_render_state, 0x420);
}

TEST(RenderState, TheStencilShowModeNeverTouchesTheColourMaskUntilItsFieldIsDropped) {
    EXPECT_EQ(state_calls(0x828), calls_of([] {
                  glEnable(GL_BLEND);
                  glEnable(GL_STENCIL_TEST);
                  stencil_show();
              }));
    EXPECT_EQ(g_render_state, 0x828);
    EXPECT_TRUE(state_calls(0x828).empty());
    EXPECT_EQ(state_calls(0x28), calls_of(colour_writes_on));
    EXPECT_EQ(g_render_state, 0x28);
    EXPECT_EQ(state_calls(0x828), calls_of(stencil_show));
}

TEST(RenderState, BothStencilBitsAreRecordedWithoutACallAndDropToTheMarkMode) {
    EXPECT_EQ(state_calls(0xC20), calls_of([] { glEnable(GL_STENCIL_TEST); }));
    EXPECT_EQ(g_render_state, 0xC20);
    EXPECT_EQ(state_calls(0x020), calls_of(colour_writes_on));
    EXPECT_EQ(g_render_state, 0x420);
    EXPECT_TRUE(state_calls(0x420).empty()); // believed to be in force already
    EXPECT_EQ(state_calls(0x820), calls_of(stencil_show));
}

TEST(RenderState, FromShowToMarkTheColourMaskIsLeftAlone) {
    set_render_state(0x820);
    EXPECT_EQ(state_calls(0x420), calls_of(stencil_mark));
    EXPECT_EQ(g_render_state, 0x420);
}

TEST(RenderState, DoesNotNoticeDirectCalls) {
    set_render_state(0x48);
    glDisable(GL_BLEND);
    EXPECT_TRUE(state_calls(0x48).empty());
}

TEST(InitGlState, SetsTheFixedStateInOrder) {
    EXPECT_EQ(calls_of(init_gl_state), calls_of([] {
                  glShadeModel(GL_SMOOTH);
                  glDepthFunc(GL_LEQUAL);
                  glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST);
                  glHint(GL_LINE_SMOOTH_HINT, GL_NICEST);
                  glEnable(GL_COLOR_MATERIAL);
                  glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
                  glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, 1);
                  glEnable(GL_NORMALIZE);
                  glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
              }));
}

TEST(Overlay, PushesBothMatricesAndMeasures1024By768FromTheTopLeft) {
    EXPECT_EQ(calls_of(begin_2d), calls_of([] {
                  glMatrixMode(GL_PROJECTION);
                  glPushMatrix();
                  glLoadIdentity();
                  glOrtho(0, 1024, 768, 0, -100, 100);
                  glMatrixMode(GL_MODELVIEW);
                  glPushMatrix();
                  glLoadIdentity();
              }));
    EXPECT_EQ(calls_of(end_2d), calls_of([] {
                  glMatrixMode(GL_PROJECTION);
                  glPopMatrix();
                  glMatrixMode(GL_MODELVIEW);
                  glPopMatrix();
              }));
    EXPECT_EQ(recording::projection_depth(), 1);
    EXPECT_EQ(recording::modelview_depth(), 1);
}

TEST(Specular, SetsOneLevelInAllComponentsAndAnIntegerShininess) {
    EXPECT_EQ(calls_of([] { set_specular(0.25f, 12); }), calls_of([] {
                  const float level[4] = {0.25f, 0.25f, 0.25f, 0.25f};
                  glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, level);
                  glMateriali(GL_FRONT_AND_BACK, GL_SHININESS, 12);
              }));
}

TEST(Rect, IsOneQuadWithoutTextureCoordinates) {
    EXPECT_EQ(calls_of([] { draw_rect(1, 2, 3, 4); }), calls_of([] {
                  glBegin(GL_QUADS);
                  glVertex2d(1, 2);
                  glVertex2d(3, 2);
                  glVertex2d(3, 4);
                  glVertex2d(1, 4);
                  glEnd();
              }));
}

TEST(Rect, TextureCoordinatesFollowTheCorners) {
    EXPECT_EQ(calls_of([] { draw_rect_tex(1, 2, 3, 4, 0.1, 0.2, 0.3, 0.4); }), calls_of([] {
                  glBegin(GL_QUADS);
                  glTexCoord2d(0.1, 0.2);
                  glVertex2d(1, 2);
                  glTexCoord2d(0.3, 0.2);
                  glVertex2d(3, 2);
                  glTexCoord2d(0.3, 0.4);
                  glVertex2d(3, 4);
                  glTexCoord2d(0.1, 0.4);
                  glVertex2d(1, 4);
                  glEnd();
              }));
}

TEST(Grid, TwoByThreeIsThreeStripsOfSixVertices) {
    const recording::Log calls = calls_of([] { draw_grid_2d(0, 0, 8, 6, 0.5, 2, 3); });
    EXPECT_EQ(calls, calls_of([] {
                  glNormal3d(0, 0, 1);
                  for (double y : {0.0, 2.0, 4.0}) {
                      glBegin(GL_QUAD_STRIP);
                      for (double x : {0.0, 4.0, 8.0}) {
                          glTexCoord2d(x / 2, (y + 2) / 2);
                          glVertex2d(x, y + 2);
                          glTexCoord2d(x / 2, y / 2);
                          glVertex2d(x, y);
                      }
                      glEnd();
                  }
              }));
}

TEST(Grid, AddsUpItsColumns) {
    double x = 0.0; // ten tenths added up are not 1
    for (int i = 0; i < 10; ++i) x += 0.1;
    ASSERT_NE(x, 1.0);
    const recording::Log vertices =
        recording::only(calls_of([] { draw_grid_2d(0, 0, 1, 1, 1, 10, 1); }), "glVertex2d");
    ASSERT_EQ(vertices.size(), 22u);
    EXPECT_EQ(vertices.back(), (recording::Call{"glVertex2d", {x, 0.0}}));
}

TEST(Grid, WithoutRowsDrawsNothing) {
    EXPECT_EQ(calls_of([] { draw_grid_2d(0, 0, 8, 6, 0.5, 2, 0); }), calls_of([] { glNormal3d(0, 0, 1); }));
}

TEST(Box, HasSixFacesWithTheWholeTextureOnEach) {
    const recording::Log calls = calls_of([] { draw_box(1, 2, 3, 4, 5, 6); });
    EXPECT_EQ(calls, calls_of([] {
                  const auto corner = [](double s, double t, double x, double y, double z) {
                      glTexCoord2d(s, t);
                      glVertex3d(x, y, z);
                  };
                  glBegin(GL_QUADS);
                  glNormal3d(0, 0, -1);
                  corner(0, 0, 1, 2, 3);
                  corner(1, 0, 4, 2, 3);
                  corner(1, 1, 4, 5, 3);
                  corner(0, 1, 1, 5, 3);
                  glNormal3d(1, 0, 0);
                  corner(0, 0, 4, 2, 3);
                  corner(1, 0, 4, 2, 6);
                  corner(1, 1, 4, 5, 6);
                  corner(0, 1, 4, 5, 3);
                  glNormal3d(0, 0, 1);
                  corner(0, 0, 4, 2, 6);
                  corner(1, 0, 1, 2, 6);
                  corner(1, 1, 1, 5, 6);
                  corner(0, 1, 4, 5, 6);
                  glNormal3d(-1, 0, 0);
                  corner(0, 0, 1, 2, 6);
                  corner(1, 0, 1, 2, 3);
                  corner(1, 1, 1, 5, 3);
                  corner(0, 1, 1, 5, 6);
                  glNormal3d(0, 1, 0);
                  corner(0, 0, 1, 5, 3);
                  corner(1, 0, 4, 5, 3);
                  corner(1, 1, 4, 5, 6);
                  corner(0, 1, 1, 5, 6);
                  glNormal3d(0, -1, 0);
                  corner(0, 0, 1, 2, 3);
                  corner(1, 0, 1, 2, 6);
                  corner(1, 1, 4, 2, 6);
                  corner(0, 1, 4, 2, 3);
                  glEnd();
              }));
}

TEST(Box, CentredAndArrayFormsAreTheSameBox) {
    const recording::Log box = calls_of([] { draw_box(-1, 0, 1, 3, 6, 9); });
    EXPECT_EQ(calls_of([] { draw_box_centered(1, 3, 5, 2, 3, 4); }), box);
    const double corners[6] = {-1, 0, 1, 3, 6, 9};
    EXPECT_EQ(calls_of([&corners] { draw_box_array(corners); }), box);
}

TEST(Vectors, TheCrossProductIsRightHanded) {
    const float a[3] = {1, 2, 3};
    const float b[3] = {4, 5, 6};
    float out[3];
    EXPECT_EQ(vec3_cross(out, a, b), out);
    EXPECT_EQ(out[0], 2 * 6 - 3 * 5);
    EXPECT_EQ(out[1], 3 * 4 - 1 * 6);
    EXPECT_EQ(out[2], 1 * 5 - 2 * 4);
}

TEST(Vectors, ScalingByTheLengthMultiplies) {
    const float v[3] = {3, 0, 4};
    float out[3];
    EXPECT_EQ(vec3_scale_by_length(out, v), out);
    EXPECT_EQ(out[0], 15);
    EXPECT_EQ(out[1], 0);
    EXPECT_EQ(out[2], 20);
}

TEST(Vectors, TheCrossProductRoundsOnce) {
    const float a[3] = {0, 4097, 4096};
    const float b[3] = {0, 4096, 4095};
    float out[3];
    vec3_cross(out, a, b);
    EXPECT_EQ(out[0], -1.0f); // 4097 * 4095 - 4096 * 4096: the products need more than a float
}

TEST(Vectors, TheLengthIsRoundedToFloatBeforeItMultiplies) {
    int told_apart = 0;
    for (int i = 1; i <= 100; ++i) {
        const float v[3] = {static_cast<float>(i) / 7, 1.3f, 0};
        const double x = v[0], y = v[1];
        const float length = static_cast<float>(std::sqrt(x * x + y * y));
        float out[3];
        vec3_scale_by_length(out, v);
        ASSERT_EQ(out[0], v[0] * length);
        told_apart += out[0] != static_cast<float>(x * std::sqrt(x * x + y * y));
    }
    EXPECT_GT(told_apart, 0);
}

TEST(Vectors, ResultsMayReplaceTheirOperands) {
    float a[3] = {1, 2, 3};
    const float b[3] = {4, 5, 6};
    vec3_cross(a, a, b);
    EXPECT_EQ(a[0], -3);
    EXPECT_EQ(a[1], 6);
    EXPECT_EQ(a[2], -3);
    float v[3] = {3, 0, 4};
    vec3_scale_by_length(v, v);
    EXPECT_EQ(v[0], 15);
    EXPECT_EQ(v[2], 20);
}
