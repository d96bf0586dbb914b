#include "hosts/page/gl/geometry.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "hosts/page/gl/attributes.h"
#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/lists.h"
#include "hosts/page/gl/queue.h"
#include "hosts/page/gl/textures.h"

namespace page::gl {

namespace {

// The primitive between glBegin and glEnd.
GLenum g_mode;
GLuint g_first; // its first vertex in the queue

// How its vertices are transformed.
const Transform* g_transform;
bool g_needs_eye;          // lighting or fog is on
bool g_has_texture_matrix; // other than the identity
Float4 g_eye_normal;       // the current normal, unless that or the matrices have changed

// The state of the last item, whose texture members are filled.
State g_drawn_state;
bool g_has_drawn_state = false;

GLenum topology_of(GLenum mode) {
    switch (mode) {
    case GL_POINTS:
        return GL_POINTS;
    case GL_LINES:
    case GL_LINE_STRIP:
    case GL_LINE_LOOP:
        return GL_LINES;
    default:
        return GL_TRIANGLES;
    }
}

template <class T>
bool same_bytes(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Number in the queue of the lights and materials as they are now.
std::size_t queue_lighting() {
    bool changed = false;
    const LightingBlock& block = lighting_block(changed);
    std::vector<LightingBlock>& queued = g_queue.lighting;
    if (queued.empty() || (changed && !same_bytes(queued.back(), block))) queued.push_back(block);
    return queued.size() - 1;
}

// Sees to it that the last item of the queue has the state as it is now.
void prepare_item(GLenum topology) {
    if (take_state_changed() || !g_has_drawn_state) {
        g_drawn_state = state();
        g_has_drawn_state = true;
        if (g_drawn_state.texturing) fill_texture_state(g_drawn_state);
    }
    const std::size_t lighting = g_drawn_state.lighting ? queue_lighting() : 0;
    if (!g_queue.items.empty()) {
        const Item& last = g_queue.items.back();
        if (last.clear == 0 && last.topology == topology && last.lighting == lighting &&
            same_bytes(last.state, g_drawn_state))
            return;
    }
    g_queue.items.push_back({0, {}, g_drawn_state, topology, lighting, g_queue.indices.size(), 0});
}

// These append to the indices; vertices are counted from the primitive's first.
void add_point(GLuint a) { *g_queue.indices.append(1) = g_first + a; }

void add_line(GLuint a, GLuint b) {
    GLuint* line = g_queue.indices.append(2);
    line[0] = g_first + a;
    line[1] = g_first + b;
}

void add_triangle(GLuint a, GLuint b, GLuint c) {
    GLuint* triangle = g_queue.indices.append(3);
    triangle[0] = g_first + a;
    triangle[1] = g_first + b;
    triangle[2] = g_first + c;
}

// Whether any vertex of the primitive lies outside the volume that is drawn.
bool is_clipped() {
    const auto is_outside = [](const Vertex& v) {
        const GLfloat x = std::fabs(v.clip[0]), y = std::fabs(v.clip[1]), z = std::fabs(v.clip[2]);
        return !(x <= v.clip[3] && y <= v.clip[3] && z <= v.clip[3]);
    };
    return std::any_of(g_queue.vertices.data() + g_first, g_queue.vertices.end(), is_outside);
}

// Quads are cut where the reference renderer cuts them, which is seen in colours and depths between the corners: from
// the first corner to the third, but from the second to the fourth in a display list, with flat shading, and where a
// quad of the same glBegin is clipped.
void add_quads(GLuint count) {
    const bool from_second = is_list_called() || g_drawn_state.flat || is_clipped();
    for (GLuint i = 3; i < count; i += 4) {
        if (from_second) {
            add_triangle(i - 3, i - 2, i);
            add_triangle(i - 2, i - 1, i);
        } else {
            add_triangle(i - 3, i - 2, i - 1);
            add_triangle(i - 3, i - 1, i);
        }
    }
}

// Cuts the primitive's vertices into what the driver draws. The last vertex of each is the one that gives a flat
// colour.
void add_indices() {
    const GLuint count = static_cast<GLuint>(g_queue.vertices.size()) - g_first;
    switch (g_mode) {
    case GL_POINTS:
        for (GLuint i = 0; i < count; ++i) add_point(i);
        break;
    case GL_LINES:
        for (GLuint i = 1; i < count; i += 2) add_line(i - 1, i);
        break;
    case GL_LINE_STRIP:
    case GL_LINE_LOOP:
        for (GLuint i = 1; i < count; ++i) add_line(i - 1, i);
        if (g_mode == GL_LINE_LOOP && count > 1) add_line(count - 1, 0);
        break;
    case GL_TRIANGLES:
        for (GLuint i = 2; i < count; i += 3) add_triangle(i - 2, i - 1, i);
        break;
    case GL_TRIANGLE_STRIP:
        for (GLuint i = 2; i < count; ++i) add_triangle(i - 2 + i % 2, i - 1 - i % 2, i);
        break;
    case GL_TRIANGLE_FAN:
        for (GLuint i = 2; i < count; ++i) add_triangle(0, i - 1, i);
        break;
    case GL_QUADS:
        add_quads(count);
        break;
    case GL_QUAD_STRIP:
        for (GLuint i = 3; i < count; i += 2) {
            add_triangle(i - 1, i - 3, i);
            add_triangle(i - 3, i - 2, i);
        }
        break;
    case GL_POLYGON: // its first vertex gives the flat colour
        for (GLuint i = 2; i < count; ++i) add_triangle(i - 1, i, 0);
        break;
    }
    Item& item = g_queue.items.back();
    item.count = g_queue.indices.size() - item.first;
}

// Vertices of one whole part of a primitive of that mode; 0: all vertices belong together.
GLuint vertices_of_part(GLenum mode) {
    switch (mode) {
    case GL_POINTS:
        return 1;
    case GL_LINES:
        return 2;
    case GL_TRIANGLES:
        return 3;
    case GL_QUADS:
        return 4;
    default:
        return 0;
    }
}

void begin_part() {
    prepare_item(topology_of(g_mode));
    g_first = static_cast<GLuint>(g_queue.vertices.size());
    g_needs_eye = g_drawn_state.lighting || g_drawn_state.fog;
}

} // namespace

void begin(GLenum mode) {
    if (!outside_begin()) return;
    if (mode > GL_POLYGON) return set_error(GL_INVALID_ENUM);
    g_in_begin = true;
    g_mode = mode;
    g_transform = &current_transform(g_attributes.normal_changed);
    g_has_texture_matrix = !same_bytes(texture_matrix(), kIdentity);
    begin_part();
}

void end() {
    if (!g_in_begin) return set_error(GL_INVALID_OPERATION);
    g_in_begin = false;
    add_indices();
}

void vertex(GLfloat x, GLfloat y, GLfloat z) {
    if (!g_in_begin) return;
    Attributes& now = g_attributes;
    Float4 eye = {};
    if (g_needs_eye) {
        eye = transform(g_transform->eye, x, y, z);
        if (now.normal_changed) {
            const Float4* columns = g_transform->normal;
            g_eye_normal =
                columns[0] * now.normal[0] + columns[1] * now.normal[1] + columns[2] * now.normal[2];
            now.normal_changed = false;
        }
    }
    GLfloat s = now.s, t = now.t;
    if (g_has_texture_matrix) {
        const Float4 transformed = transform(texture_matrix(), s, t, 0);
        s = transformed[0];
        t = transformed[1];
        if (transformed[3] != 1) report_missing("a texture matrix with a perspective");
    }
    Vertex* v = g_queue.vertices.append(1);
    v->clip = transform(g_transform->clip, x, y, z);
    eye[3] = s;
    v->eye_s = eye;
    Float4 normal_t = g_eye_normal;
    normal_t[3] = t;
    v->normal_t = normal_t;
    v->color = now.color;
}

void clear(GLbitfield buffers) {
    constexpr GLbitfield kBuffers = GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT;
    if (!outside_begin()) return;
    if (buffers & ~(kBuffers | GL_ACCUM_BUFFER_BIT)) return set_error(GL_INVALID_VALUE);
    if ((buffers & kBuffers) == 0) return;
    Item item = {buffers & kBuffers, {}, state(), GL_TRIANGLES, 0, g_queue.indices.size(), 0};
    std::copy(clear_color(), clear_color() + 4, item.clear_color);
    g_queue.items.push_back(item);
}

void material_changed() {
    if (!g_in_begin) return;
    const GLuint vertices = static_cast<GLuint>(g_queue.vertices.size()) - g_first;
    const GLuint part = vertices_of_part(g_mode);
    if (vertices != 0 && (part == 0 || vertices % part != 0)) {
        report_missing("glMaterial between the vertices of one polygon");
        return;
    }
    add_indices();
    begin_part();
}

void reset_geometry() { g_has_drawn_state = false; }

} // namespace page::gl
