// The picture of the loading screen, stored inside the program in a small lossy format.
#pragma once

// Makes g_loading_texture and shows it.
void make_loading_picture();
