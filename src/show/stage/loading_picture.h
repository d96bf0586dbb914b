// The picture of the loading screen, stored in the program in its own format (packed_picture.h).
#pragma once

// Decodes the stored picture, uploads it as g_loading_texture and shows it with one loading_step.
void make_loading_picture();
