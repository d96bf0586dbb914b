#define GL_GLEXT_PROTOTYPES
#include "hosts/desktop/display/present.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include "hosts/common/gl_scale.h"

namespace desktop {
namespace {

using common::Box;
using common::Extent;
using common::kPicture;

// The state that drawing to the window changes, put back when this goes out of scope.
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

bool has_size(Extent extent, const Box& box) {
    return extent.width == box.width && extent.height == box.height;
}

} // namespace

Presenter::Presenter(Sharpness sharpness, Extent window)
    : sharpness_(sharpness), largest_(std::numeric_limits<int>::max()), surface_(make_surface(window)) {
    common::draw_scaled(*surface_);
    // A new context has these at the window's size.
    glViewport(0, 0, kPicture.width, kPicture.height);
    glScissor(0, 0, kPicture.width, kPicture.height);
}

// The surface that the window needs, or a smaller one where OpenGL cannot make that.
std::unique_ptr<common::GlSurface> Presenter::make_surface(Extent window) {
    for (int multiple = std::min(sharpness_.multiple_for(window), largest_);; --multiple) {
        try {
            return std::make_unique<common::GlSurface>(kPicture, multiple);
        } catch (const std::runtime_error&) {
            if (multiple == 1) throw;
            largest_ = multiple - 1;
        }
    }
}

void Presenter::draw_to_window(Extent window) const {
    const common::HostCalls host_calls;
    const Box box = picture_place(window);
    const KeptState kept;
    glDisable(GL_SCISSOR_TEST);
    const Extent size = surface_->average_down_to({box.width, box.height}).size;
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    if (!has_size(window, box)) {
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    glBlitFramebuffer(0, 0, size.width, size.height, box.x, box.y, box.x + box.width, box.y + box.height,
                      GL_COLOR_BUFFER_BIT, has_size(size, box) ? GL_NEAREST : GL_LINEAR);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
}

void Presenter::end(Extent window) {
    if (std::min(sharpness_.multiple_for(window), largest_) != multiple()) change_surface(window);
    surface_->bind();
}

// Goes on with the surface that the window needs, if OpenGL can make it.
void Presenter::change_surface(Extent window) {
    std::unique_ptr<common::GlSurface> next;
    {
        const common::HostCalls host_calls;
        common::keep_errors_for_show();
        try {
            next = make_surface(window);
        } catch (const std::runtime_error&) {
            return;
        }
        next->copy_from(*surface_);
    }
    common::draw_scaled(*next);
    surface_ = std::move(next);
}

} // namespace desktop
