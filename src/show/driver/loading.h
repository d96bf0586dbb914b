// Loading: everything between the warm-up and the first frame.
#pragma once

// 1 until every scene is prepared, then 0. Nothing reads it.
extern int g_in_loading;

// Display callback of exactly one, long call: shows the loading picture, opens the music, prepares every
// scene, starts the music and installs the frame function.
void load_show();
