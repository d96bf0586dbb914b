#include "show/stage/show_time.h"

double g_demo_time = 0.0;
double g_scene_time = 0.0;

int ramp(int* running, double t0, double duration, double* out) {
    if (!*running) return 1;
    const double d = g_demo_time - t0;
    if (duration > 0) {
        *out = d / duration;
        *running = *out <= 1.0;
    } else {
        *out = 1.0 - d / -duration;
        *running = *out >= 0.0;
    }
    return *running;
}
