// Render states: a cache of capabilities and modes, the fixed state of the show, and states that scenes set directly.
#pragma once

// Flags of set_render_state.
enum RenderState {
    kDepthTest = 0x001,
    kLighting = 0x002,
    kTexture = 0x004,
    kBlend = 0x008,
    kCull = 0x010,
    kStencilTest = 0x020,

    kBlendMode = 0x0C0,     // field; 0 keeps the current mode
    kBlendAdd = 0x040,      // GL_ONE, GL_ONE
    kBlendAlpha = 0x080,    // GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA
    kBlendMultiply = 0x0C0, // GL_ZERO, GL_SRC_COLOR

    kCullSide = 0x300, // field; 0 keeps the current side; 0x300 is recorded and issues no call
    kCullFront = 0x100,
    kCullBack = 0x200,

    kStencilMode = 0xC00, // field; 0 keeps the current mode; 0xC00 is recorded and issues no call
    kStencilMark = 0x400, // write 1 where anything is drawn
    kStencilShow = 0x800, // draw only where the stencil is not 0

    kColorMask = 0x800 // shares its bit with kStencilShow: colour writes are never turned off
};

// The flags that set_render_state takes for the current state; statically 0. Scenes also call glEnable, glDisable and
// glBlendFunc directly, which the cache does not follow: set_render_state then skips calls that are not redundant.
// Intentional. The flash overlay, for example, blends with the function that the scene before it left.
extern int g_render_state;

// Switches the capabilities to exactly those in `flags` and the modes to those of its non-zero fields, issuing only
// the calls that differ from g_render_state. After kStencilShow, a stencil field of 0 turns colour writes on once more
// and forgets the mode, so that the next kStencilShow issues its calls again.
void set_render_state(int flags);

// Sets the state that stays the same during the whole show. Called by the first cue.
void init_gl_state();

// Sets the blend function GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA; does not enable blending.
void blend_alpha();

// Sets the colour white with an alpha, which GL clamps to 0..1.
void set_white(double alpha);

// Sets the material's specular colour, `level` in all four components, and its shininess exponent (0..128).
void set_specular(float level, int shininess);
