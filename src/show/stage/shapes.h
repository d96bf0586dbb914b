// Rectangles and boxes as immediate-mode quads, and the quadric that draws cylinders.
#pragma once

#include <GL/glu.h>

// The quadric that the scenes share. Made during loading, never deleted.
extern GLUquadric* g_quadric;

// One quad from (x0, y0) to (x1, y1), without texture coordinates.
void draw_rect(double x0, double y0, double x1, double y1);

// The same with texture coordinates (s0, t0) at (x0, y0) and (s1, t1) at (x1, y1).
void draw_rect_tex(double x0, double y0, double x1, double y1, double s0, double t0, double s1, double t1);

// A rectangle as ny strips of nx cells, facing +z. Texture coordinates are the positions times tex_scale: the texture
// repeats every 1 / tex_scale units.
void draw_grid_2d(double x0, double y0, double x1, double y1, double tex_scale, int nx, int ny);

// A box between two corners: six faces, each with the whole texture and its outward normal.
void draw_box(double x0, double y0, double z0, double x1, double y1, double z1);

// The same about a centre, with half sizes.
void draw_box_centered(double cx, double cy, double cz, double hx, double hy, double hz);

// The same from {x0, y0, z0, x1, y1, z1}.
void draw_box_array(const double box[6]);
