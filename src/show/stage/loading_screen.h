// The screen that is shown while the show loads.
#pragma once

// Texture of the loading picture.
extern unsigned g_loading_texture;

// How many times the loading screen was redrawn. Statically 0; nothing else reads it.
extern int g_loading_steps;

// Clears to white, draws the loading picture (410 by 256 units, centred, its top a third of the way down) and
// swaps buffers.
void draw_loading_screen();

// Redraws the loading screen and counts it. Called between expensive steps, and by every image operation through
// g_progress_hook, so that the display stays alive during the loading call.
void loading_step();
