// From glBegin to glEnd: vertices are collected as they are given. Then they are transformed, cut into points, lines
// and triangles, and put into the queue, without those that lie outside the picture.
#pragma once

#include <GL/gl.h>

#include "hosts/page/gl/attributes.h"
#include "hosts/page/gl/buffer.h"
#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/matrices.h"

namespace page::gl {

// The primitive between glBegin and glEnd.
struct Primitive {
    struct Vertex {
        GLfloat x, y, z, s, t;
        GLuint look; // index in `looks`
    };
    // What consecutive vertices often share.
    struct Look {
        Float4 normal, color;
    };

    GLenum mode;
    Buffer<Vertex> vertices;
    Buffer<Look> looks;
    GLuint look; // of the next vertex, unless that has changed
};

inline Primitive g_primitive;

// Commands.
void begin(GLenum mode);
void end();
void clear(GLbitfield buffers);

inline void vertex(GLfloat x, GLfloat y, GLfloat z) {
    if (!g_in_begin) return;
    Attributes& now = g_attributes;
    Primitive& p = g_primitive;
    if (now.look_changed) {
        now.look_changed = false;
        p.look = static_cast<GLuint>(p.looks.size());
        *p.looks.append(1) = {now.normal, now.color};
    }
    *p.vertices.append(1) = {x, y, z, now.s, now.t, p.look};
}

// A material is about to change: what is between glBegin and here is drawn with the old one.
void draw_with_old_material();

void reset_geometry();

} // namespace page::gl
