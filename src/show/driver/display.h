// The GLUT side of the show: the callbacks that `main` installs.
#pragma once

// 1 from just before game mode is asked for. Kept for a debugger; nothing reads it.
extern int g_game_mode;

// How many display callbacks the warm-up has seen.
extern int g_warmup_frames;

// The callbacks that `main` installs.
extern void (*g_display_cb)();                      // statically warmup_display
extern void (*g_idle_cb)();                         // statically idle_redisplay
extern void (*g_reshape_cb)(int width, int height); // statically reshape

// Reshape callback: full-surface viewport and a 45 degree perspective of aspect width / height (pixels).
void reshape(int width, int height);

// Idle callback: asks for the next frame.
void idle_redisplay();

// The same once more, never installed.
void idle_redisplay_spare();

// Display callback of the warm-up: lets the display mode settle for 100 calls, drawing nothing; the 101st
// installs load_show.
void warmup_display();
