// The screen shown while the show loads.
#pragma once

// Texture of the loading picture; 0 until make_loading_picture.
extern unsigned g_loading_texture;

// Number of loading_step calls. For a debugger; nothing reads it.
extern int g_loading_steps;

// Clears to white, draws the loading picture (410 by 256 units, centred across, its top a third of the way down) and
// swaps buffers.
void draw_loading_screen();

// Draws the loading screen and counts it. Called between expensive steps, and by every image operation through
// g_progress_hook, so that the display keeps being updated while the show loads.
void loading_step();
