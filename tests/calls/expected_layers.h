// What several scenes draw, as the calls that a test expects. Simple rather than fast: every loop runs over everything,
// every value is computed where it is used.
#pragma once

namespace expected {

void bind(unsigned texture);

// One corner of a quad: texture coordinates, then the place.
void corner(double s, double t, double x, double y, double z);

// A quad of the 2D overlay, counter-clockwise from its top left corner, with the whole texture on it.
void overlay_quad(double x0, double y0, double x1, double y1);

// Lights and projection of a scene's start, up to the modelview matrix being current again.
void light_and_projection();

// Linear fog of the show's grey.
void fog(float from, float to);

// The eye that every 3D scene looks through.
void look_at();

// Row `row` of the greeted names, below the picture; none for a negative row.
void caption(unsigned words, int row);

// The black bars above and below the picture.
void letterbox_bars();

// The same as most 3D scenes draw them, turning depth writes on first.
void letterbox();

// How g_quadric, blending, texture and material are set for a beam.
void beam_material(unsigned beam);

// The cylinders of a beam, of those 200 that lie within 600 units of the scroll height.
void red_beam(float scroll);

// One strand of the double helix without its glBegin and glEnd.
void helix_quads(float phase, float scroll);

// The same with them.
void helix_strand(float phase, float scroll);

} // namespace expected
