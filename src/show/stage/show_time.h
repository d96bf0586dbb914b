// The show's time, which every scene draws by.
#pragma once

extern double g_demo_time;  // seconds: show time of the current frame
extern double g_scene_time; // seconds: local time of the scene being rendered; rewritten before each render

// A ramp that a scene can run. While *running is non-zero, with d = g_demo_time - t0:
//   duration > 0:  *out = d / duration        and *running = (*out <= 1.0)
//   duration <= 0: *out = 1.0 - d / -duration and *running = (*out >= 0.0)
// and *running is returned. Returns 1 at once, writing nothing, when *running is 0. No scene calls it.
int ramp(int* running, double t0, double duration, double* out);
