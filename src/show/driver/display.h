// The GLUT callbacks of the show's start: reshape, idle, and the display callback of the warm-up.
#pragma once

// 1 from just before game mode is requested. For a debugger; nothing reads it.
extern int g_game_mode;

// Number of display callbacks during the warm-up.
extern int g_warmup_frames;

// The callbacks that `main` installs.
extern void (*g_display_cb)();                      // statically warmup_display
extern void (*g_idle_cb)();                         // statically idle_redisplay
extern void (*g_reshape_cb)(int width, int height); // statically reshape

// Reshape callback: full-surface viewport and a 45 degree perspective of aspect width / height (pixels).
void reshape(int width, int height);

// Idle callback: requests the next frame.
void idle_redisplay();

// The same; never installed.
void idle_redisplay_spare();

// Display callback of the warm-up: 100 calls do nothing while the display mode settles, the 101st installs load_show.
void warmup_display();
