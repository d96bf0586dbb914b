#define GL_GLEXT_PROTOTYPES
#include "hosts/common/gl_surface.h"

#include <GL/glext.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

namespace common {
namespace {

const char* gl_string(GLenum name) { return reinterpret_cast<const char*>(glGetString(name)); }

std::string text_of(Extent size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

bool is_within(Extent size, Extent limit) { return size.width <= limit.width && size.height <= limit.height; }

// Throws where GL's limits are below `size`.
void check_limits(Extent size) {
    for (const GLenum limit : {GL_MAX_RENDERBUFFER_SIZE, GL_MAX_TEXTURE_SIZE}) {
        GLint largest = 0;
        glGetIntegerv(limit, &largest);
        if (is_within(size, {largest, largest})) continue;
        throw std::runtime_error("a picture of " + text_of(size) + " is more than this OpenGL can draw (" +
                                 std::to_string(largest) + " pixels at most)");
    }
}

// A new renderbuffer, attached to the framebuffer that is bound.
GLuint attach_renderbuffer(GLenum attachment, GLenum format, Extent size) {
    GLuint name = 0;
    glGenRenderbuffers(1, &name);
    glBindRenderbuffer(GL_RENDERBUFFER, name);
    glRenderbufferStorage(GL_RENDERBUFFER, format, size.width, size.height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, name);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    return name;
}

// Reads all of GL's error flags; whether one was set.
bool take_errors() {
    bool any = false;
    while (glGetError() != GL_NO_ERROR) any = true;
    return any;
}

} // namespace

bool lists_extension(const char* list, const char* name) {
    const std::size_t length = std::strlen(name);
    for (const char* at = list; at && (at = std::strstr(at, name)); at += length) {
        const bool starts = at == list || at[-1] == ' ';
        if (starts && (at[length] == ' ' || at[length] == '\0')) return true;
    }
    return false;
}

bool has_framebuffer_objects() {
    const char* version = gl_string(GL_VERSION);
    if (version && std::atoi(version) >= 3) return true;
    return lists_extension(gl_string(GL_EXTENSIONS), "GL_ARB_framebuffer_object");
}

GlSurface::GlSurface(Extent size, Extent smallest) {
    check_limits(size);
    try {
        add_level(size);
        while (size.width % 2 == 0 && size.height % 2 == 0) {
            size = {size.width / 2, size.height / 2};
            if (!is_within(smallest, size)) break;
            add_level(size);
        }
    } catch (...) {
        release();
        throw;
    }
    bind();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

GlSurface::~GlSurface() { release(); }

void GlSurface::add_level(Extent size) {
    levels_.push_back({size, 0, 0, 0});
    Level& level = levels_.back();
    glGenFramebuffers(1, &level.framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, level.framebuffer);
    // No alpha: the show asks GLUT for none, and what blending finds there is 1.
    level.color = attach_renderbuffer(GL_COLOR_ATTACHMENT0, GL_RGB8, size);
    const bool is_surface = levels_.size() == 1;
    if (is_surface) level.depth = attach_renderbuffer(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24, size);
    const bool is_complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    if (take_errors() || !is_complete) {
        throw std::runtime_error("this OpenGL cannot make a picture of " + text_of(size) +
                                 " pixels with a depth buffer");
    }
}

void GlSurface::release() {
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    for (const Level& level : levels_) {
        glDeleteFramebuffers(1, &level.framebuffer);
        glDeleteRenderbuffers(1, &level.color);
        glDeleteRenderbuffers(1, &level.depth);
    }
}

void GlSurface::bind() const { glBindFramebuffer(GL_FRAMEBUFFER, levels_.front().framebuffer); }

const GlSurface::Level& GlSurface::average_down_to(Extent least) const {
    const GLboolean scissor = glIsEnabled(GL_SCISSOR_TEST);
    if (scissor) glDisable(GL_SCISSOR_TEST);
    std::size_t chosen = 0;
    while (chosen + 1 < levels_.size() && is_within(least, levels_[chosen + 1].size)) {
        const Level &from = levels_[chosen], &to = levels_[chosen + 1];
        glBindFramebuffer(GL_READ_FRAMEBUFFER, from.framebuffer);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to.framebuffer);
        // At half the size a linear filter takes the mean of exactly four pixels.
        glBlitFramebuffer(0, 0, from.size.width, from.size.height, 0, 0, to.size.width, to.size.height,
                          GL_COLOR_BUFFER_BIT, GL_LINEAR);
        ++chosen;
    }
    if (scissor) glEnable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, levels_[chosen].framebuffer);
    return levels_[chosen];
}

} // namespace common
