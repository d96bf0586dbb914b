#define GL_GLEXT_PROTOTYPES
#include "hosts/desktop/display/present.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>

namespace desktop {
namespace {

using common::Box;
using common::Extent;

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

// value * numerator / denominator, rounded to the nearest, at least 1.
int scaled(int value, int numerator, int denominator) {
    const long long product = static_cast<long long>(value) * numerator;
    return static_cast<int>(std::max(1LL, (product + denominator / 2) / denominator));
}

bool has_size(Extent extent, const Box& box) {
    return extent.width == box.width && extent.height == box.height;
}

// Where a picture goes in a window: as large as fits with its aspect kept, centred. At least one pixel each way; both
// sizes must be positive.
Box fit(Extent picture, Extent window) {
    Box box = {0, 0, window.width, window.height};
    const bool window_is_wider = static_cast<long long>(window.width) * picture.height >
                                 static_cast<long long>(window.height) * picture.width;
    if (window_is_wider) {
        box.width = scaled(window.height, picture.width, picture.height);
    } else {
        box.height = scaled(window.width, picture.height, picture.width);
    }
    box.x = (window.width - box.width) / 2;
    box.y = (window.height - box.height) / 2;
    return box;
}

} // namespace

void draw_to_window(const common::GlSurface& surface, Extent window) {
    const Box box = fit(common::kPicture, window);
    const KeptState kept;
    glDisable(GL_SCISSOR_TEST);
    const Extent size = surface.average_down_to({box.width, box.height}).size;
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

} // namespace desktop
