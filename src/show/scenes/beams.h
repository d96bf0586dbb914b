// Beams: tubes of cylinders of the shared quadric, laid end to end along z. Most of them are red and glow.
#pragma once

#include <GL/glu.h>

// The material of a beam: smooth normals and texture coordinates for g_quadric, its orientation (GLU_OUTSIDE
// or GLU_INSIDE), blending, the texture and a specular highlight.
void set_up_beam(GLenum orientation, unsigned texture);

// One piece of the beam, 40 units long and 0.3 thick, in the colour and with the blend function in force.
void draw_beam_cylinder();

// Piece number i of a beam, counted from the origin: a red cylinder and the same once more, added over it as
// its glow.
void draw_glowing_piece(int i);

// Draws the pieces within 600 units of scroll_y (greetings.h) with draw_piece(i), of the 200 that a beam has. A piece
// counts as lying one length before where it is drawn.
void draw_visible_pieces(float scroll_y, void (*draw_piece)(int i));
