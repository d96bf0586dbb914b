#include "hosts/page/gl/renderer.h"

#include <GL/glext.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "hosts/page/gl/driver.h"
#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/program.h"
#include "hosts/page/gl/queue.h"

namespace page::gl {

namespace {

// The framebuffer and its size.
int g_width, g_height;
GLuint g_framebuffer, g_color_buffer, g_depth_buffer;

// Where the queue's vertices and indices go.
GLuint g_vertex_array, g_vertex_buffer, g_index_buffer;

Program g_programs[4];    // by the two bits of a variant
const Program* g_program; // the one that is bound
unsigned g_lights_seen;   // number of the last lights and materials that were drawn with, 1 and up

// What the driver has been told, so as not to repeat it.
State g_applied;
bool g_has_applied;
GLuint g_bound_texture;

GLint g_most_texture_size;

// Makes the framebuffer's buffers of the current size.
bool make_buffers() {
    const auto renderbuffer = [](GLuint& name, GLenum format, GLenum attachment) {
        if (name != 0) driver().DeleteRenderbuffers(1, &name);
        driver().GenRenderbuffers(1, &name);
        driver().BindRenderbuffer(GL_RENDERBUFFER, name);
        driver().RenderbufferStorage(GL_RENDERBUFFER, format, g_width, g_height);
        driver().FramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, name);
    };
    driver().BindFramebuffer(GL_FRAMEBUFFER, g_framebuffer);
    renderbuffer(g_color_buffer, GL_RGB8, GL_COLOR_ATTACHMENT0);
    renderbuffer(g_depth_buffer, GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT);
    if (driver().CheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        char line[100];
        std::snprintf(line, sizeof line, "OpenGL on WebGL: no framebuffer of %dx%d pixels", g_width,
                      g_height);
        report(line);
        return false;
    }
    const GLboolean on = GL_TRUE;
    driver().ColorMask(on, on, on, on);
    driver().DepthMask(on);
    driver().ClearColor(0, 0, 0, 0);
    driver().Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    g_has_applied = false;
    return true;
}

// Tells the driver how a Vertex lies in the buffer: four times four floats.
void make_vertex_array() {
    driver().GenVertexArrays(1, &g_vertex_array);
    driver().GenBuffers(1, &g_vertex_buffer);
    driver().GenBuffers(1, &g_index_buffer);
    driver().BindVertexArray(g_vertex_array);
    driver().BindBuffer(GL_ARRAY_BUFFER, g_vertex_buffer);
    driver().BindBuffer(GL_ELEMENT_ARRAY_BUFFER, g_index_buffer);
    for (GLuint i = 0; i < 4; ++i) {
        const std::size_t offset = i * sizeof(Float4);
        driver().EnableVertexAttribArray(i);
        driver().VertexAttribPointer(i, 4, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                                     reinterpret_cast<void*>(offset));
    }
}

void apply_switch(GLenum capability, GLint State::*member, const State& s) {
    if (g_has_applied && s.*member == g_applied.*member) return;
    if (s.*member) {
        driver().Enable(capability);
    } else {
        driver().Disable(capability);
    }
}

// Whether any of those members of `s` is not what the driver has.
template <class... Members>
bool differs(const State& s, Members... members) {
    return !g_has_applied || ((s.*members != g_applied.*members) || ...);
}

template <class T, std::size_t kCount>
bool array_differs(const T (&wanted)[kCount], const T (&applied)[kCount]) {
    return !g_has_applied || !std::equal(wanted, wanted + kCount, applied);
}

void apply_masks(const State& s) {
    if (array_differs(s.color_mask, g_applied.color_mask)) {
        const auto mask = [&s](int i) { return static_cast<GLboolean>(s.color_mask[i]); };
        driver().ColorMask(mask(0), mask(1), mask(2), mask(3));
    }
    if (differs(s, &State::depth_mask)) driver().DepthMask(static_cast<GLboolean>(s.depth_mask));
}

// Gives the driver what of the state is its own.
void apply(const State& s) {
    apply_switch(GL_BLEND, &State::blend, s);
    apply_switch(GL_CULL_FACE, &State::cull, s);
    apply_switch(GL_DEPTH_TEST, &State::depth_test, s);
    apply_switch(GL_STENCIL_TEST, &State::stencil_test, s);
    if (differs(s, &State::blend_source, &State::blend_destination))
        driver().BlendFunc(s.blend_source, s.blend_destination);
    if (differs(s, &State::cull_face)) driver().CullFace(s.cull_face);
    if (differs(s, &State::depth_function)) driver().DepthFunc(s.depth_function);
    if (differs(s, &State::stencil_function, &State::stencil_reference, &State::stencil_mask))
        driver().StencilFunc(s.stencil_function, s.stencil_reference, s.stencil_mask);
    if (array_differs(s.stencil_operations, g_applied.stencil_operations)) {
        const GLenum* o = s.stencil_operations;
        driver().StencilOp(o[0], o[1], o[2]);
    }
    if (array_differs(s.viewport, g_applied.viewport)) {
        const common::Box box = to_pixels(s.viewport[0], s.viewport[1], s.viewport[2], s.viewport[3]);
        driver().Viewport(box.x, box.y, box.width, box.height);
    }
    apply_masks(s);
    g_applied = s;
    g_has_applied = true;
}

void clear_buffers(const Item& item) {
    apply(item.state);
    const GLfloat* c = item.clear_color;
    driver().ClearColor(c[0], c[1], c[2], c[3]);
    driver().Clear(item.clear);
}

// A point's size in pixels, a whole number.
GLfloat pixel_point_size(GLfloat size) {
    const float scaled = size * static_cast<float>(g_height) / common::kPicture.height;
    return std::max(1.0f, std::ceil(scaled - 0.5f));
}

void draw(const Item& item) {
    const State& s = item.state;
    apply(s);
    Program& program = g_programs[(s.flat ? 1 : 0) + (s.two_sided ? 2 : 0)];
    if (!program.exists() && !program.make({s.flat != 0, s.two_sided != 0})) return;
    const common::Box viewport = to_pixels(s.viewport[0], s.viewport[1], s.viewport[2], s.viewport[3]);
    if (&program != g_program) program.bind();
    g_program = &program;
    program.set_state(s, viewport, item.topology == GL_POINTS ? pixel_point_size(s.point_size) : 0);
    if (s.lighting)
        program.set_lighting(g_queue.lighting[item.lighting],
                             g_lights_seen + 1 + static_cast<unsigned>(item.lighting));
    if (s.texture != 0) bind_driver_texture(s.texture);
    driver().DrawElements(item.topology, static_cast<GLsizei>(item.count), GL_UNSIGNED_INT,
                          reinterpret_cast<void*>(item.first * sizeof(GLuint)));
}

} // namespace

void draw_queue() {
    if (g_queue.items.empty()) return;
    if (g_queue.indices.size() != 0) {
        const auto fill = [](GLenum target, const auto& buffer) {
            driver().BufferData(target, static_cast<std::ptrdiff_t>(buffer.size() * sizeof *buffer.data()),
                                buffer.data(), GL_STREAM_DRAW);
        };
        fill(GL_ARRAY_BUFFER, g_queue.vertices);
        fill(GL_ELEMENT_ARRAY_BUFFER, g_queue.indices);
    }
    for (const Item& item : g_queue.items) {
        if (item.clear) {
            clear_buffers(item);
        } else if (item.count != 0) {
            draw(item);
        }
    }
    g_lights_seen += static_cast<unsigned>(g_queue.lighting.size());
    g_queue.clear();
}

common::Box to_pixels(GLint x, GLint y, GLint width, GLint height) {
    const auto across = [](GLint at) {
        return static_cast<GLint>(std::lround(double(at) * g_width / common::kPicture.width));
    };
    const auto up = [](GLint at) {
        return static_cast<GLint>(std::lround(double(at) * g_height / common::kPicture.height));
    };
    return {across(x), up(y), across(x + width) - across(x), up(y + height) - up(y)};
}

GLint most_texture_size() { return g_most_texture_size; }

void bind_driver_texture(GLuint texture) {
    if (texture == g_bound_texture) return;
    driver().BindTexture(GL_TEXTURE_2D, texture);
    g_bound_texture = texture;
}

bool start_renderer(int width, int height) {
    g_width = width;
    g_height = height;
    g_has_applied = false;
    g_bound_texture = 0;
    g_lights_seen = 0;
    g_program = nullptr;
    driver().GetIntegerv(GL_MAX_TEXTURE_SIZE, &g_most_texture_size); // the driver may take long to answer
    g_queue.clear();
    driver().GenFramebuffers(1, &g_framebuffer);
    if (!make_buffers()) return false;
    make_vertex_array();
    return g_programs[0].make({false, false});
}

void stop_renderer() {
    g_queue.clear();
    g_queue.vertices.release();
    g_queue.indices.release();
    for (Program& program : g_programs) program.release();
    driver().DeleteVertexArrays(1, &g_vertex_array);
    for (const GLuint buffer : {g_vertex_buffer, g_index_buffer}) driver().DeleteBuffers(1, &buffer);
    driver().DeleteFramebuffers(1, &g_framebuffer);
    for (GLuint* buffer : {&g_color_buffer, &g_depth_buffer}) {
        driver().DeleteRenderbuffers(1, buffer);
        *buffer = 0;
    }
}

void resize_framebuffer(int width, int height) {
    if (width == g_width && height == g_height) return;
    draw_queue();
    g_width = width;
    g_height = height;
    make_buffers();
}

void bind_framebuffer() { driver().BindFramebuffer(GL_FRAMEBUFFER, g_framebuffer); }

void copy_to_screen() {
    driver().BindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    driver().BlitFramebuffer(0, 0, g_width, g_height, 0, 0, g_width, g_height, GL_COLOR_BUFFER_BIT,
                             GL_NEAREST);
    bind_framebuffer();
}

} // namespace page::gl
