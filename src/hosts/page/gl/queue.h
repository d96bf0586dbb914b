// What is to be drawn, in order. It is collected while the show calls, and drawn when the frame ends or something must
// be read back: the driver then gets all vertices at once.
#pragma once

#include <GL/gl.h>

#include <cstddef>
#include <vector>

#include "hosts/page/gl/buffer.h"
#include "hosts/page/gl/lighting.h"
#include "hosts/page/gl/matrices.h"
#include "hosts/page/gl/state.h"

namespace page::gl {

struct Vertex {
    Float4 clip;     // clip coordinates
    Float4 eye_s;    // x, y, z in eye coordinates; texture coordinate s
    Float4 normal_t; // in eye coordinates, not normalised; t
    Float4 color;    // as given, not clamped
};

// One clear, or what is drawn with one state.
struct Item {
    GLbitfield clear; // the buffers; 0: something is drawn
    GLfloat clear_color[4];
    State state;
    GLenum topology;          // GL_POINTS, GL_LINES or GL_TRIANGLES
    std::size_t lighting;     // index in Queue::lighting, where the state has lighting
    std::size_t first, count; // in Queue::indices
};

struct Queue {
    Buffer<Vertex> vertices;
    Buffer<GLuint> indices;
    std::vector<LightingBlock> lighting;
    std::vector<Item> items;

    void clear() {
        vertices.clear();
        indices.clear();
        lighting.clear();
        items.clear();
    }
};

inline Queue g_queue;

} // namespace page::gl
