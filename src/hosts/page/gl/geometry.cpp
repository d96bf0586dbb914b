#include "hosts/page/gl/geometry.h"

#include <algorithm>
#include <cstddef>

#include "hosts/page/gl/lists.h"
#include "hosts/page/gl/queue.h"
#include "hosts/page/gl/same_bytes.h"
#include "hosts/page/gl/textures.h"

namespace page::gl {

namespace {

// Vertices that are tried together whether all lie outside the picture; a multiple of the vertices of every part.
constexpr GLuint kTriedTogether = 24;

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

// Sees to it that the last of the queue's lights and materials are those as they are now; its number.
std::size_t queue_lighting() {
    bool changed = false;
    const LightingBlock& block = lighting_block(changed);
    std::vector<LightingBlock>& queued = g_queue.lighting;
    if (queued.empty() || (changed && !same_bytes(queued.back(), block))) queued.push_back(block);
    return queued.size() - 1;
}

// Sees to it that the last item of the queue has the state as it is now.
void prepare_item(GLenum topology) {
    const bool state_changed = take_state_changed() || !g_has_drawn_state;
    if (state_changed) {
        g_drawn_state = state();
        g_has_drawn_state = true;
        if (g_drawn_state.texturing) fill_texture_state(g_drawn_state);
    }
    const std::size_t lighting = g_drawn_state.lighting ? queue_lighting() : 0;
    if (!g_queue.items.empty()) {
        const Item& last = g_queue.items.back();
        if (last.clear == 0 && last.topology == topology && last.lighting == lighting &&
            (!state_changed || same_bytes(last.state, g_drawn_state)))
            return;
    }
    g_queue.items.push_back({0, {}, g_drawn_state, topology, lighting, g_queue.indices.size(), 0});
}

// Appends indices to the queue; vertices are counted from the primitive's first.
class Indices {
public:
    Indices(GLuint first, std::size_t count) : first_(first), next_(g_queue.indices.append(count)) {}

    void add(GLuint a) { *next_++ = first_ + a; }
    void add(GLuint a, GLuint b) {
        add(a);
        add(b);
    }
    void add(GLuint a, GLuint b, GLuint c) {
        add(a, b);
        add(c);
    }

private:
    GLuint first_;
    GLuint* next_;
};

// Quads are cut where the reference renderer cuts them, which is seen in colours and depths between the corners: from
// the first corner to the third, but from the second to the fourth in a display list, with flat shading, and where a
// quad of the same glBegin is clipped.
void add_quads(GLuint first, GLuint count, bool clipped) {
    const bool from_second = is_list_called() || g_drawn_state.flat || clipped;
    Indices indices(first, count / 4 * 6);
    for (GLuint i = 3; i < count; i += 4) {
        if (from_second) {
            indices.add(i - 3, i - 2, i);
            indices.add(i - 2, i - 1, i);
        } else {
            indices.add(i - 3, i - 2, i - 1);
            indices.add(i - 3, i - 1, i);
        }
    }
}

// Cuts the vertices of the queue from `first` on into what the driver draws. The last vertex of each is the one that
// gives a flat colour. `clipped`: whether any vertex of the primitive lies outside the picture.
void add_indices(GLenum mode, GLuint first, bool clipped) {
    const GLuint count = static_cast<GLuint>(g_queue.vertices.size()) - first;
    const GLuint inner = count > 2 ? count - 2 : 0; // triangles of a strip
    switch (mode) {
    case GL_POINTS: {
        Indices indices(first, count);
        for (GLuint i = 0; i < count; ++i) indices.add(i);
        break;
    }
    case GL_LINES: {
        Indices indices(first, count / 2 * 2);
        for (GLuint i = 1; i < count; i += 2) indices.add(i - 1, i);
        break;
    }
    case GL_LINE_STRIP:
    case GL_LINE_LOOP: {
        if (count < 2) break;
        const bool closed = mode == GL_LINE_LOOP;
        Indices indices(first, 2 * (count - 1 + closed));
        for (GLuint i = 1; i < count; ++i) indices.add(i - 1, i);
        if (closed) indices.add(count - 1, 0);
        break;
    }
    case GL_TRIANGLES: {
        Indices indices(first, count / 3 * 3);
        for (GLuint i = 2; i < count; i += 3) indices.add(i - 2, i - 1, i);
        break;
    }
    case GL_TRIANGLE_STRIP: {
        Indices indices(first, 3 * inner);
        for (GLuint i = 2; i < count; ++i) indices.add(i - 2 + i % 2, i - 1 - i % 2, i);
        break;
    }
    case GL_TRIANGLE_FAN: {
        Indices indices(first, 3 * inner);
        for (GLuint i = 2; i < count; ++i) indices.add(0, i - 1, i);
        break;
    }
    case GL_QUADS:
        add_quads(first, count, clipped);
        break;
    case GL_QUAD_STRIP: {
        Indices indices(first, inner / 2 * 6);
        for (GLuint i = 3; i < count; i += 2) {
            indices.add(i - 1, i - 3, i);
            indices.add(i - 3, i - 2, i);
        }
        break;
    }
    case GL_POLYGON: { // its first vertex gives the flat colour
        Indices indices(first, 3 * inner);
        for (GLuint i = 2; i < count; ++i) indices.add(i - 1, i, 0);
        break;
    }
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

// Which vertices lie outside the volume that is drawn.
struct Outside {
    bool any; // one of them
    bool all; // all, and beyond the same side
};

// Fills in the vertices' clip coordinates.
Outside transform_to_clip(const Matrix& clip, const Primitive::Vertex* given, Vertex* vertices,
                          std::size_t count) {
    // The sign bits say what lies beyond each side.
    Int4 any = {}, all_low = ~Int4{}, all_high = ~Int4{};
    for (const Primitive::Vertex* end = given + count; given != end; ++given, ++vertices) {
        const Float4 place = transform(clip, given->x, given->y, given->z);
        vertices->clip = place;
        const Int4 low = as_ints(place[3] + place), high = as_ints(place[3] - place);
        any |= low | high;
        all_low &= low;
        all_high &= high;
    }
    const Int4 all = all_low | all_high;
    return {(any[0] | any[1] | any[2]) < 0, (all[0] | all[1] | all[2]) < 0};
}

// Fills in the rest, for the state as it is now.
void complete_vertices(const Primitive::Vertex* given, Vertex* vertices, std::size_t count) {
    const bool has_texture_matrix = !same_bytes(texture_matrix(), kIdentity);
    const bool needs_eye = g_drawn_state.lighting || g_drawn_state.fog;
    const Matrix eye_matrix = modelview();
    const Float4* normal_columns = g_drawn_state.lighting ? normal_matrix() : nullptr;
    GLuint look = ~0u;
    Float4 normal = {}, color = {};
    for (std::size_t i = 0; i < count; ++i) {
        const Primitive::Vertex& from = given[i];
        if (from.look != look) {
            look = from.look;
            const Primitive::Look& now = g_primitive.looks.data()[look];
            color = now.color;
            if (normal_columns)
                normal = normal_columns[0] * now.normal[0] + normal_columns[1] * now.normal[1] +
                         normal_columns[2] * now.normal[2];
        }
        GLfloat s = from.s, t = from.t;
        if (has_texture_matrix) {
            const Float4 transformed = transform(texture_matrix(), s, t, 0);
            s = transformed[0];
            t = transformed[1];
            if (transformed[3] != 1) report_missing("a texture matrix with a perspective");
        }
        Float4 eye_s = needs_eye ? transform(eye_matrix, from.x, from.y, from.z) : Float4{};
        eye_s[3] = s;
        normal[3] = t;
        vertices[i].eye_s = eye_s;
        vertices[i].normal_t = normal;
        vertices[i].color = color;
    }
}

// Puts what has been collected since glBegin into the queue, where it can be seen.
void draw_primitive() {
    const Primitive& p = g_primitive;
    const std::size_t count = p.vertices.size();
    const std::size_t step = vertices_of_part(p.mode) != 0 ? kTriedTogether : count;
    const Matrix& clip = clip_matrix();
    const std::size_t first = g_queue.vertices.size();
    bool clipped = false, prepared = false;
    for (std::size_t done = 0; done < count; done += step) {
        const std::size_t number = std::min(step, count - done);
        const Primitive::Vertex* given = p.vertices.data() + done;
        const std::size_t before = g_queue.vertices.size();
        Vertex* vertices = g_queue.vertices.append(number);
        const Outside outside = transform_to_clip(clip, given, vertices, number);
        clipped = clipped || outside.any;
        if (outside.all) {
            g_queue.vertices.shrink(before);
            continue;
        }
        if (!prepared) prepare_item(topology_of(p.mode));
        prepared = true;
        complete_vertices(given, vertices, number);
    }
    if (prepared) add_indices(p.mode, static_cast<GLuint>(first), clipped);
}

void clear_primitive() {
    g_primitive.vertices.clear();
    g_primitive.looks.clear();
    g_attributes.look_changed = true;
}

} // namespace

void begin(GLenum mode) {
    if (!outside_begin()) return;
    if (mode > GL_POLYGON) return set_error(GL_INVALID_ENUM);
    g_in_begin = true;
    g_primitive.mode = mode;
    clear_primitive();
}

void end() {
    if (!g_in_begin) return set_error(GL_INVALID_OPERATION);
    g_in_begin = false;
    draw_primitive();
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

void draw_with_old_material() {
    const std::size_t vertices = g_primitive.vertices.size();
    if (!g_in_begin || vertices == 0) return;
    const GLuint part = vertices_of_part(g_primitive.mode);
    if (part == 0 || vertices % part != 0) {
        report_missing("glMaterial between the vertices of one polygon");
        return;
    }
    draw_primitive();
    clear_primitive();
}

void reset_geometry() { g_has_drawn_state = false; }

} // namespace page::gl
