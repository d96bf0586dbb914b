// What stands around every scene's own picture: the lights, projection and fog it starts with, the black bars
// above and below it, and the flat pieces of its 2D overlays.
#pragma once

// --- Starting a scene ---

// Light model ambient 0.8, light 0 diffuse and specular 0.5, enabled. Lighting itself is not switched on.
void set_up_lights();

// 70 degrees, 4:3, from 0.1 to 500 units; leaves the modelview matrix current and as it was.
void set_up_projection();

// Linear grey fog between two distances (units), enabled.
void set_up_fog(float start, float end);

// Multiplies the modelview matrix by the one view of the show: from (0, 0, 35) to the origin. Its up vector
// (0, 1, 1) is not upright and is meant.
void look_at_origin();

// --- The 2D overlay, units of 1024 by 768 ---

// GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, without switching blending on.
void blend_alpha();

// White with an alpha, which GL clamps.
void set_white(double alpha);

// One quad at z = 1 that shows the rows t0..t1 (fractions) of the bound texture over its whole width: the
// corners go down the left side and up the right one.
void draw_flat(double x0, double y0, double x1, double y1, double t0 = 0.0, double t1 = 1.0);

// --- The bars ---

// The rows of the whole window and of the picture between the bars.
void set_full_viewport();
void set_picture_viewport();

// The two bars in the window's viewport, with blending, lighting and depth writes off, inside a begin_2d that
// is left open. Texturing stays as it is.
void begin_letterbox();

// Switches blending, lighting and depth writes on again, but leaves the overlay and the viewport.
void restore_after_letterbox();

// The bars from start to end: enters with any state, leaves blending, lighting and depth writes on, texturing
// as it was, and the viewport of the picture.
void draw_letterbox();
