#include <GL/gl.h>
#include <gtest/gtest.h>

#include <cmath>

#include "show/driver/scene_table.h"
#include "show/scenes/scenes.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"
#include "tests/hosts/recording/recording.h"

using recording::calls_of;

namespace {

recording::Log flash_at(double time) {
    g_demo_time = time;
    return calls_of(flash_render);
}

// Alpha of the flash at a time, 0 when nothing is drawn.
double alpha_at(double time) {
    const recording::Log colors = recording::only(flash_at(time), "glColor4f");
    return colors.empty() ? 0.0 : std::get<double>(colors.at(0).arguments.at(3));
}

} // namespace

TEST(Clear, ClearsTheColourBufferAndNothingElse) {
    EXPECT_EQ(calls_of(clear_render), calls_of([] { glClear(GL_COLOR_BUFFER_BIT); }));
}

TEST(Flash, DrawsAWhiteOverlayWithTheUnclampedSumAsAlpha) {
    const recording::Log calls = flash_at(10.0);
    // 10.0 itself, and the tail of 11.4: exp(-(7 * 1.4)^2), far below what a float of 1 can hold
    const float alpha = static_cast<float>(1.0 + std::exp(-9.8 * 9.8));
    g_render_state = 0;
    EXPECT_EQ(calls, calls_of([alpha] {
                  set_render_state(0x48);
                  begin_2d();
                  glColor4f(1.0f, 1.0f, 1.0f, alpha);
                  draw_rect_tex(0.0, 0.0, 1024.0, 768.0, 0.0, 0.0, 1.0, 1.0);
                  end_2d();
              }));
}

TEST(Flash, IsAtLeastFullAtItsTime) {
    for (double time : {0.0, 10.0, 11.4, 17.0, 23.0, 28.0, 28.5, 34.0, 40.0, 45.5, 55.0, 56.5, 62.0, 67.5}) {
        EXPECT_GE(alpha_at(time), 1.0) << time;
    }
}

TEST(Flash, FarFromEveryFlashNothingIsDrawnAndNoStateTouched) {
    set_render_state(kLighting);
    EXPECT_TRUE(flash_at(5.0).empty());
    EXPECT_EQ(g_render_state, kLighting);
}

TEST(Flash, OverlappingFlashesAdd) {
    EXPECT_FLOAT_EQ(static_cast<float>(alpha_at(28.25)), static_cast<float>(2.0 * std::exp(-3.0625)));
}

TEST(Flash, IsSymmetricInTime) {
    EXPECT_EQ(alpha_at(34.125), alpha_at(33.875));
    EXPECT_GT(alpha_at(34.125), 0.0);
}

TEST(Flash, IsSeenWhileItsLevelReachesOneHundredth) {
    const double reach = std::sqrt(std::log(100.0)) / 7.0; // where exp(-(7d)^2) is 0.01
    EXPECT_GT(alpha_at(17.0 + reach - 0.0001), 0.0);
    EXPECT_TRUE(flash_at(17.0 + reach + 0.0001).empty());
    EXPECT_GT(alpha_at(17.0 - reach + 0.0001), 0.0);
    EXPECT_TRUE(flash_at(17.0 - reach - 0.0001).empty());
}

TEST(Flash, TheLastOneIsOverForGood) {
    EXPECT_GT(alpha_at(67.5 + 0.30), 0.0);
    for (double time = 67.5 + 0.31; time < 162.0; time += 0.01) ASSERT_TRUE(flash_at(time).empty()) << time;
}

TEST(Flash, UsesShowTimeAndNotSceneTime) {
    g_scene_time = 10.0;
    EXPECT_TRUE(flash_at(5.0).empty());
}

TEST(Flash, BlendsWithWhatTheSceneBeforeLeftWhenTheCacheIsContent) {
    flash_at(10.0);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); // as a scene would, past the cache
    EXPECT_EQ(recording::count(flash_at(10.0), "glBlendFunc"), 0);
}
