// The frame: what the display callback draws once the show is loaded.
#pragma once

// The display callback of the show; statically show_frame.
extern void (*g_frame_fn)();

// Draws one frame: reads the music's position, fires the cues that are due, renders the active scenes in list order
// and swaps buffers. Nothing is cleared here; each scene clears for itself.
void show_frame();
