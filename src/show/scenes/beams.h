// Beams: rows of cylinders, end to end along z, drawn with the shared quadric. Most are red and glow.
#pragma once

#include <GL/glu.h>

// Sets the state for beams: smooth normals, texture coordinates and orientation (GLU_OUTSIDE or GLU_INSIDE) of
// g_quadric, blending, the texture and a specular highlight.
void set_up_beam(GLenum orientation, unsigned texture);

// Draws one piece, 40 units long, radius 0.3, with the current colour and blend function.
void draw_beam_cylinder();

// Draws piece number i, counted from the origin: a red cylinder, and the same cylinder added over it as a glow.
void draw_glowing_piece(int i);

// Calls draw_piece(i) for those of a beam's 200 pieces that lie within 600 units of scroll_y (g_scroll_y). Each piece
// is taken to lie one length (40 units) before its actual place; intentional.
void draw_visible_pieces(float scroll_y, void (*draw_piece)(int i));
