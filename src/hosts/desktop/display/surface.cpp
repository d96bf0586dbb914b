#include "hosts/desktop/display/surface.h"

#include "hosts/desktop/display/gl_framebuffer.h"

namespace desktop {
namespace {

constexpr Extent kSmallestLevel = {64, 48};

// The state that copying has to set aside, put back when this goes out of scope.
class KeptState {
public:
    KeptState() {
        scissor_ = glIsEnabled(GL_SCISSOR_TEST);
        glGetBooleanv(GL_COLOR_WRITEMASK, mask_);
        glGetFloatv(GL_COLOR_CLEAR_VALUE, clear_);
    }
    ~KeptState() {
        if (scissor_) glEnable(GL_SCISSOR_TEST);
        glColorMask(mask_[0], mask_[1], mask_[2], mask_[3]);
        glClearColor(clear_[0], clear_[1], clear_[2], clear_[3]);
    }
    KeptState(const KeptState&) = delete;
    KeptState& operator=(const KeptState&) = delete;

private:
    GLboolean scissor_;
    GLboolean mask_[4];
    GLfloat clear_[4];
};

bool same_size(Extent extent, const Box& box) {
    return extent.width == box.width && extent.height == box.height;
}

bool has_twice_the_size(Extent extent, const Box& box) {
    return extent.width >= 2 * box.width && extent.height >= 2 * box.height;
}

void attach_renderbuffer(GLenum attachment, GLenum format, Extent size) {
    const FramebufferCalls& gl = *framebuffer_calls();
    GLuint name = 0;
    gl.gen_renderbuffers(1, &name);
    gl.bind_renderbuffer(GL_RENDERBUFFER, name);
    gl.renderbuffer_storage(GL_RENDERBUFFER, format, size.width, size.height);
    gl.framebuffer_renderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, name);
    gl.bind_renderbuffer(GL_RENDERBUFFER, 0);
}

// A new framebuffer, left bound; only the surface itself has depth.
GLuint make_framebuffer(Extent size, bool with_depth) {
    const FramebufferCalls& gl = *framebuffer_calls();
    GLuint name = 0;
    gl.gen_framebuffers(1, &name);
    gl.bind_framebuffer(GL_FRAMEBUFFER, name);
    attach_renderbuffer(GL_COLOR_ATTACHMENT0, GL_RGB8, size);
    if (with_depth) attach_renderbuffer(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24, size);
    return name;
}

} // namespace

std::unique_ptr<Surface> Surface::create() {
    if (!framebuffer_calls()) return nullptr;
    const FramebufferCalls& gl = *framebuffer_calls();

    std::unique_ptr<Surface> surface(new Surface);
    bool complete = true;
    for (Extent size = kPicture; size.width >= kSmallestLevel.width;
         size = {size.width / 2, size.height / 2}) {
        const bool is_surface = surface->levels_.empty();
        surface->levels_.push_back({make_framebuffer(size, is_surface), size});
        complete = complete && gl.check_framebuffer_status(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }
    while (glGetError() != GL_NO_ERROR) { // of this function: the show has made no GL call yet
        complete = false;
    }
    if (!complete) {
        gl.bind_framebuffer(GL_FRAMEBUFFER, 0);
        return nullptr;
    }
    surface->bind();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    return surface;
}

void Surface::bind() const { framebuffer_calls()->bind_framebuffer(GL_FRAMEBUFFER, levels_[0].framebuffer); }

void Surface::copy(const Level& from, GLuint to, const Box& box, GLenum filter) const {
    const FramebufferCalls& gl = *framebuffer_calls();
    gl.bind_framebuffer(GL_READ_FRAMEBUFFER, from.framebuffer);
    gl.bind_framebuffer(GL_DRAW_FRAMEBUFFER, to);
    gl.blit_framebuffer(0, 0, from.size.width, from.size.height, box.x, box.y, box.x + box.width,
                        box.y + box.height, GL_COLOR_BUFFER_BIT, filter);
}

void Surface::draw_to_window(Extent window) const {
    const FramebufferCalls& gl = *framebuffer_calls();
    const Box box = fit(kPicture, window);
    const KeptState kept;
    glDisable(GL_SCISSOR_TEST);

    const Level* level = &levels_.front();
    while (level != &levels_.back() && has_twice_the_size(level->size, box)) {
        const Level* half = level + 1;
        copy(*level, half->framebuffer, {0, 0, half->size.width, half->size.height}, GL_LINEAR);
        level = half;
    }

    if (!same_size(window, box)) {
        gl.bind_framebuffer(GL_DRAW_FRAMEBUFFER, 0);
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    copy(*level, 0, box, same_size(level->size, box) ? GL_NEAREST : GL_LINEAR);
    gl.bind_framebuffer(GL_READ_FRAMEBUFFER, 0);
}

} // namespace desktop
