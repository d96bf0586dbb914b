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

bool is_power_of_two(int number) { return (number & (number - 1)) == 0; }

bool is_multiple_of(Extent size, Extent unit) {
    return size.width % unit.width == 0 && size.height % unit.height == 0;
}

// Copies from the framebuffer that is bound for reading to the one that is bound for drawing. No scissor may be on.
void copy(Extent from, Extent to, GLbitfield buffers, GLenum filter) {
    glBlitFramebuffer(0, 0, from.width, from.height, 0, 0, to.width, to.height, buffers, filter);
}

// No scissor test while one lives.
class NoScissor {
public:
    NoScissor() : was_on_(glIsEnabled(GL_SCISSOR_TEST)) {
        if (was_on_) glDisable(GL_SCISSOR_TEST);
    }
    ~NoScissor() {
        if (was_on_) glEnable(GL_SCISSOR_TEST);
    }
    NoScissor(const NoScissor&) = delete;
    NoScissor& operator=(const NoScissor&) = delete;

private:
    GLboolean was_on_;
};

constexpr Extent kSmallestLevel = {64, 48};

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

GlSurface::GlSurface(Extent picture, int multiple) : picture_(picture), multiple_(multiple) {
    Extent size = {picture.width * multiple, picture.height * multiple};
    check_limits(size);
    take_errors();
    try {
        add_level(size);
        while (size.width % 2 == 0 && size.height % 2 == 0) {
            size = {size.width / 2, size.height / 2};
            if (!is_within(kSmallestLevel, size)) break;
            add_level(size);
        }
        halves_ = levels_.size();
        if (!is_power_of_two(multiple)) add_level(picture);
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

void GlSurface::copy_from(const GlSurface& other) const {
    const NoScissor no_scissor;
    const Level &to = levels_.front(), &all = other.levels_.front();
    const Extent averaged = other.average_down_to(to.size).size;
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to.framebuffer);
    copy(averaged, to.size, GL_COLOR_BUFFER_BIT, is_multiple_of(to.size, averaged) ? GL_NEAREST : GL_LINEAR);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, all.framebuffer);
    copy(all.size, to.size, GL_DEPTH_BUFFER_BIT, GL_NEAREST);
}

const GlSurface::Level& GlSurface::average_down_to(Extent least) const {
    const NoScissor no_scissor;
    std::size_t chosen = 0;
    while (chosen + 1 < halves_ && is_within(least, levels_[chosen + 1].size)) {
        const Level &from = levels_[chosen], &to = levels_[chosen + 1];
        glBindFramebuffer(GL_READ_FRAMEBUFFER, from.framebuffer);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to.framebuffer);
        // At half the size a linear filter takes the mean of exactly four pixels.
        copy(from.size, to.size, GL_COLOR_BUFFER_BIT, GL_LINEAR);
        ++chosen;
    }
    glBindFramebuffer(GL_READ_FRAMEBUFFER, levels_[chosen].framebuffer);
    return levels_[chosen];
}

void GlSurface::average_down_to_picture() const {
    const Extent averaged = average_down_to(picture_).size;
    if (halves_ == levels_.size()) return;
    const NoScissor no_scissor;
    const GLuint framebuffer = levels_.back().framebuffer;
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer);
    copy(averaged, picture_, GL_COLOR_BUFFER_BIT, GL_LINEAR);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer);
}

} // namespace common
