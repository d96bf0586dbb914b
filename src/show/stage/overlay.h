// 2D overlays: 1024 by 768 units whatever the viewport, and what is drawn flat on them.
#pragma once

// Pushes both matrices and sets up the overlay: 1024 by 768 units whatever the viewport, origin top left, y
// downwards, z from -100 to 100.
void begin_2d();

// Pops both matrices and leaves the modelview matrix current.
void end_2d();

// GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, without switching blending on.
void blend_alpha();

// White with an alpha, which GL clamps.
void set_white(double alpha);

// One quad at z = 1 that shows the rows t0..t1 (fractions) of the bound texture over its whole width: the
// corners go down the left side and up the right one.
void draw_flat(double x0, double y0, double x1, double y1, double t0 = 0.0, double t1 = 1.0);
