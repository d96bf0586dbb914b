// What every scene draws with: a cached switch of render states, a 2D overlay, rectangles and boxes, a
// material helper, two vector helpers and the loading screen. All of it is immediate-mode OpenGL 1.x.
#pragma once

#include <GL/glu.h>

// The flag word that set_render_state believes to be in force; statically 0. Scenes also call glEnable,
// glDisable and glBlendFunc directly, which this does not follow: the switch then skips calls that it
// believes redundant. That is meant. The flash overlay, for one, blends with whatever function the scene
// before it left.
extern int g_render_state;

// The one quadric that all scenes share. Made during loading, never deleted.
extern GLUquadric* g_quadric;

// Texture of the loading picture.
extern unsigned g_loading_texture;

// Flags of set_render_state.
enum RenderState {
    kDepthTest = 0x001,
    kLighting = 0x002,
    kTexture = 0x004,
    kBlend = 0x008,
    kCull = 0x010,
    kStencilTest = 0x020,

    kBlendMode = 0x0C0,     // field; 0 keeps the mode in force
    kBlendAdd = 0x040,      // GL_ONE, GL_ONE
    kBlendAlpha = 0x080,    // GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA
    kBlendMultiply = 0x0C0, // GL_ZERO, GL_SRC_COLOR

    kCullSide = 0x300, // field; 0 keeps the side in force; 0x300 is recorded and issues no call
    kCullFront = 0x100,
    kCullBack = 0x200,

    kStencilMode = 0xC00, // field; 0 keeps the mode in force; 0xC00 is recorded and issues no call
    kStencilMark = 0x400, // write 1 where anything is drawn
    kStencilShow = 0x800, // draw only where the stencil is not 0

    kColorMask = 0x800 // shares its bit with kStencilShow: colour writes are never turned off, see the source
};

// Switches the capabilities to exactly those in `flags` and the modes to those of its non-zero fields,
// issuing only the calls that differ from g_render_state. The fields are sticky: 0 leaves a mode as it is.
void set_render_state(int flags);

// The fixed state of the whole show. The first cue calls it.
void init_gl_state();

// Pushes both matrices and sets up the overlay: 1024 by 768 units whatever the viewport, origin top left, y
// downwards, z from -100 to 100.
void begin_2d();

// Pops both matrices and leaves the modelview matrix current.
void end_2d();

// Material specular colour, the same `level` in all four components, and shininess exponent (0..128).
void set_specular(float level, int shininess);

// One quad from (x0, y0) to (x1, y1), without texture coordinates.
void draw_rect(double x0, double y0, double x1, double y1);

// The same with texture coordinates (s0, t0) at (x0, y0) and (s1, t1) at (x1, y1).
void draw_rect_tex(double x0, double y0, double x1, double y1, double s0, double t0, double s1, double t1);

// A rectangle as ny strips of nx cells, facing +z. Texture coordinates are the positions times tex_scale: one
// repeat spans 1 / tex_scale units.
void draw_grid_2d(double x0, double y0, double x1, double y1, double tex_scale, int nx, int ny);

// A box between two corners: six faces, each with the whole texture and its outward normal.
void draw_box(double x0, double y0, double z0, double x1, double y1, double z1);

// The same about a centre, with half sizes.
void draw_box_centered(double cx, double cy, double cz, double hx, double hy, double hz);

// The same from {x0, y0, z0, x1, y1, z1}.
void draw_box_array(const double box[6]);

// out = a x b, computed in double and rounded once; returns out, which may be a or b.
float* vec3_cross(float out[3], const float a[3], const float b[3]);

// out = v * |v|, the length rounded to float; returns out, which may be v. Multiplies by the length on
// purpose: the width of the ribbons comes from it.
float* vec3_scale_by_length(float out[3], const float v[3]);

// Clears to white, draws the loading picture (410 by 256 units, centred, its top a third of the way down) and
// swaps buffers.
void draw_loading_screen();
