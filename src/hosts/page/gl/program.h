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

    // Makes the driver draw with it and with that state. `viewport` and `point_size` are in the framebuffer's pixels.
    void use(const State& state, const common::Box& viewport, GLfloat point_size);

    // Gives it lights and materials; `number` says whether they are still those of the call before.
    void set_lighting(const LightingBlock& block, unsigned number);

private:
    GLuint name_ = 0;
    GLint switches_ = -1, texture_ = -1, fog_ = -1, fog_color_ = -1, points_ = -1, lighting_ = -1;
    bool has_state_ = false;
    State state_ = {};
    common::Box viewport_ = {};
    GLfloat point_size_ = 0;
    unsigned lighting_number_ = 0;
};

} // namespace page::gl
