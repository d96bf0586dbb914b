// The off-screen display: an OpenGL context of the compatibility profile and a framebuffer with a depth buffer, made
// through EGL. Needs neither a display server nor a GPU.
#pragma once

#include <memory>

#include "hosts/common/gl_surface.h"

namespace offscreen {

class EglScreen {
public:
    // Makes a screen for a show that draws for a size of `show` pixels, black, and makes its context current for the
    // calling thread, which stays the only one to use it. Pictures are `scale` times that size. With `supersample` 2
    // or 4 the show is drawn at that multiple of them, and each pixel is the mean of 4 or 16. Throws Failure.
    EglScreen(common::Extent show, int scale, int supersample);
    ~EglScreen();
    EglScreen(const EglScreen&) = delete;
    EglScreen& operator=(const EglScreen&) = delete;

    int width() const { return size_.width; }
    int height() const { return size_.height; }

    // Averages the picture down to its size and binds it for reading. Nothing may be drawn before bind.
    void resolve() const { surface_->average_down_to(size_); }

    // Binds the framebuffer that the show draws into.
    void bind() const { surface_->bind(); }

private:
    void make_context();

    common::Extent size_;
    void* display_ = nullptr;
    void* context_ = nullptr;
    std::unique_ptr<common::GlSurface> surface_;
};

} // namespace offscreen
