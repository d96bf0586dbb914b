#include <GL/gl.h>
#include <gtest/gtest.h>

#include "show/stage/render_state.h"
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

class RenderStateCache : public testing::Test {
protected:
    void SetUp() override { g_render_state = 0; }
};

} // namespace

TEST_F(RenderStateCache, AdditiveBlendingFromAFreshStateIsTwoCallsAndThenNone) {
    EXPECT_EQ(state_calls(0x48), calls_of([] {
                  glEnable(GL_BLEND);
                  glBlendFunc(GL_ONE, GL_ONE);
              }));
    EXPECT_TRUE(state_calls(0x48).empty());
}

TEST_F(RenderStateCache, AZeroBlendFieldKeepsTheMode) {
    set_render_state(0x48);
    EXPECT_TRUE(state_calls(0x08).empty());
    EXPECT_EQ(g_render_state, 0x48);
    EXPECT_TRUE(state_calls(0x48).empty());
}

TEST_F(RenderStateCache, SwitchesTheCapabilitiesInBitOrder) {
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

TEST_F(RenderStateCache, HasThreeBlendModes) {
    EXPECT_EQ(state_calls(0x40), calls_of([] { glBlendFunc(GL_ONE, GL_ONE); }));
    EXPECT_EQ(state_calls(0x80), calls_of([] { glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); }));
    EXPECT_EQ(state_calls(0xC0), calls_of([] { glBlendFunc(GL_ZERO, GL_SRC_COLOR); }));
}

TEST_F(RenderStateCache, CullsTheFrontOrTheBackAndRecordsBothWithoutACall) {
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

TEST_F(RenderStateCache, TheStencilMarkModeWritesOne) {
    EXPECT_EQ(state_calls(0x420), calls_of([] {
                  glEnable(GL_STENCIL_TEST);
                  stencil_mark();
              }));
    EXPECT_TRUE(state_calls(0x020).empty()); // sticky, like every mode
    EXPECT_EQ(g_render_state, 0x420);
}

TEST_F(RenderStateCache, TheStencilShowModeNeverTouchesTheColourMaskUntilItsFieldIsDropped) {
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

TEST_F(RenderStateCache, BothStencilBitsAreRecordedWithoutACallAndDropToTheMarkMode) {
    EXPECT_EQ(state_calls(0xC20), calls_of([] { glEnable(GL_STENCIL_TEST); }));
    EXPECT_EQ(g_render_state, 0xC20);
    EXPECT_EQ(state_calls(0x020), calls_of(colour_writes_on));
    EXPECT_EQ(g_render_state, 0x420);
    EXPECT_TRUE(state_calls(0x420).empty()); // believed to be in force already
    EXPECT_EQ(state_calls(0x820), calls_of(stencil_show));
}

TEST_F(RenderStateCache, FromShowToMarkTheColourMaskIsLeftAlone) {
    set_render_state(0x820);
    EXPECT_EQ(state_calls(0x420), calls_of(stencil_mark));
    EXPECT_EQ(g_render_state, 0x420);
}

TEST_F(RenderStateCache, DoesNotNoticeDirectCalls) {
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

TEST(Specular, SetsOneLevelInAllComponentsAndAnIntegerShininess) {
    EXPECT_EQ(calls_of([] { set_specular(0.25f, 12); }), calls_of([] {
                  const float level[4] = {0.25f, 0.25f, 0.25f, 0.25f};
                  glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, level);
                  glMateriali(GL_FRONT_AND_BACK, GL_SHININESS, 12);
              }));
}
