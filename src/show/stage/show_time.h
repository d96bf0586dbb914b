// The time that scenes draw by, in seconds.
#pragma once

// Show time of the current frame.
extern double g_demo_time;

// Time since the cue that started the scene being rendered. Set before each render.
extern double g_scene_time;

// A linear ramp over show time, seconds. No scene calls it. While *running is non-zero, with d = g_demo_time - t0:
//   duration > 0:  *out = d / duration        and *running = (*out <= 1.0)
//   duration <= 0: *out = 1.0 - d / -duration and *running = (*out >= 0.0)
// and *running is returned. When *running is 0 it writes nothing and returns 1.
int ramp(int* running, double t0, double duration, double* out);
