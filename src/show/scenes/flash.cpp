// The flash overlay: short bell-shaped white flashes at fixed show times, drawn over the other active scenes.
#include <GL/gl.h>

#include <cmath>

#include "show/scenes/scenes.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"

namespace {

// Seconds of show time; a negative value ends the list.
constexpr double kFlashTimes[] = {0.0,  10.0, 11.4, 17.0, 23.0, 28.0, 28.5, 34.0,
                                  40.0, 45.5, 55.0, 56.5, 62.0, 67.5, -1.0};
constexpr double kSharpness = 7.0; // per second
constexpr double kThreshold = 0.01;

// Brightness at show time t: the sum over all flashes, so that overlapping ones add up.
double flash_level(double t) {
    double sum = 0.0;
    for (const double* time = kFlashTimes; *time >= 0.0; ++time) {
        const double x = kSharpness * (t - *time);
        sum += std::exp(-x * x);
    }
    return sum;
}

} // namespace

void flash_prepare() {}
void flash_start() {}

void flash_render() {
    const double level = flash_level(g_demo_time);
    if (level < kThreshold) return;
    // The cache sets the blend function only when its own record differs: after a scene that changed it directly, the
    // flash blends with that scene's function. Intentional.
    set_render_state(kBlend | kBlendAdd);
    begin_2d();
    glColor4f(1.0f, 1.0f, 1.0f, static_cast<float>(level));
    draw_rect_tex(0.0, 0.0, 1024.0, 768.0, 0.0, 0.0, 1.0, 1.0);
    end_2d();
}

void flash_stop() {}
void flash_release() {}
