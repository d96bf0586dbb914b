// The shaders: OpenGL's lighting, texture environment and fog, for vertices that are already transformed.
#pragma once

#include <GL/gl.h>

#include <cstddef>

#include "hosts/common/geometry.h"
#include "hosts/page/gl/lighting.h"
#include "hosts/page/gl/state.h"

namespace page::gl {

class Program {
public:
    // With flat shading a triangle has the colour of its last vertex; with two sides its back has one of its own.
    struct Variant {
        bool flat, two_sided;
    };

    // False, with a report, where the driver cannot make it.
    bool make(Variant variant);
    void release();
    bool exists() const { return name_ != 0; }

    // Makes the driver draw with it.
    void bind() const;

    // These are for the program that is bound. The viewport and the size of points are in the framebuffer's pixels; the
    // size is 0 where no points are drawn. What the driver has already is not told again.
    void set_state(const State& state, const common::Box& viewport, GLfloat point_size);

    // Lights and materials; `number` says whether they are still those of the call before.
    void set_lighting(const LightingBlock& block, unsigned number);

private:
    // The values of the uniform variables; 0 in a new program.
    struct Values {
        GLint switches[4], texture[4];
        GLfloat fog[4], fog_color[4], points[8];
    };

    GLuint name_ = 0;
    GLint switches_ = -1, texture_ = -1, fog_ = -1, fog_color_ = -1, points_ = -1, lighting_ = -1;
    Values values_ = {};
    unsigned lighting_number_ = 0;
};

} // namespace page::gl
