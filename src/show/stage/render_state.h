// The render states that every scene switches: a cache of capabilities and modes, the fixed state of the show, and
// the specular material. All of it is OpenGL 1.x.
#pragma once

// The flag word that set_render_state believes to be in force; statically 0. Scenes also call glEnable, glDisable and
// glBlendFunc directly, which the cache does not follow: set_render_state then skips calls that it believes
// redundant. This is intentional. The flash overlay, for one, blends with whatever function the scene before it left.
extern int g_render_state;

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

// Material specular colour, the same `level` in all four components, and shininess exponent (0..128).
void set_specular(float level, int shininess);
