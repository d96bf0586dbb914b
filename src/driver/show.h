// The show itself: the clock and the frame.
#pragma once

extern double g_demo_time;  // seconds: show time of the current frame
extern double g_scene_time; // seconds: local time of the scene being rendered; rewritten before each render
extern int g_finished;      // set to 1 by the last cue; no frame is drawn after that

// The display callback of the show; statically show_frame.
extern void (*g_frame_fn)();

// One frame: reads the music's position, fires the cues that are due, renders the active scenes in list order
// and swaps buffers. No scene is cleared for; each does its own.
void show_frame();

// A ramp that a scene can run. While *running is non-zero, with d = g_demo_time - t0:
//   duration > 0:  *out = d / duration        and *running = (*out <= 1.0)
//   duration <= 0: *out = 1.0 - d / -duration and *running = (*out >= 0.0)
// and *running is returned. Returns 1 at once, writing nothing, when *running is 0. No scene calls it.
int ramp(int* running, double t0, double duration, double* out);
