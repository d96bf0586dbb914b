// 2D overlays: drawing flat on the screen, in units of 1/1024 of the viewport's width and 1/768 of its height.
#pragma once

// Pushes both matrices and sets up the overlay: 1024 by 768 units whatever the viewport, origin top left, y
// downwards, z from -100 to 100.
void begin_2d();

// Pops both matrices and leaves the modelview matrix current.
void end_2d();

// Draws a quad at z = 1 with the rows t0..t1 (fractions) of the bound texture over its whole width. The vertices go
// down the left side and up the right one.
void draw_flat(double x0, double y0, double x1, double y1, double t0 = 0.0, double t1 = 1.0);
