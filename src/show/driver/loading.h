// Loading: everything between the warm-up and the first frame.
#pragma once

// 1 until every scene is prepared, then 0. Nothing reads it.
extern int g_in_loading;

// Display callback that runs once: shows the loading picture, opens the music, prepares every scene, starts the music
// and installs the frame function. Takes as long as loading takes.
void load_show();
