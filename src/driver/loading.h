// Loading: everything between the warm-up and the first frame, and the screen that is shown meanwhile.
#pragma once

// How many times the loading screen was redrawn. Statically 0; nothing else reads it.
extern int g_loading_steps;

// 1 until every scene is prepared, then 0. Nothing reads it.
extern int g_in_loading;

// Display callback of exactly one, long call: shows the loading picture, opens the music, prepares every
// scene, starts the music and installs the frame function.
void load_show();

// Redraws the loading screen and swaps buffers. Called between expensive steps, and by every image operation
// through g_progress_hook, so that the display stays alive during the loading call.
void loading_step();
