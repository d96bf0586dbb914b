// The picture of the loading screen, stored inside the program in its own small format (packed_picture.h).
#pragma once

// Decodes the stored picture, makes it the texture g_loading_texture and shows it by one loading_step.
void make_loading_picture();
