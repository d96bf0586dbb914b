// The off-screen display: an OpenGL context of the compatibility profile and a framebuffer with a depth buffer, made
// through EGL. Needs neither a display server nor a GPU.
#pragma once

#include <vector>

namespace offscreen {

class EglScreen {
public:
    // Makes a screen whose pictures are `width` x `height` pixels, black, and makes its context current for the
    // calling thread, which stays the only one to use it. With `supersample` 2 or 4 the show is drawn at that
    // multiple, and each pixel of a picture is the mean of 4 or 16. Throws Failure.
    EglScreen(int width, int height, int supersample);
    ~EglScreen();
    EglScreen(const EglScreen&) = delete;
    EglScreen& operator=(const EglScreen&) = delete;

    int width() const { return width_; }
    int height() const { return height_; }

    // Scales the picture down to its size and makes it the read framebuffer. Nothing may be drawn before bind.
    void resolve() const;

    // Binds the framebuffer that the show draws into.
    void bind() const;

private:
    struct FrameBuffer {
        int width;
        int height;
        unsigned name;
        unsigned color;
        unsigned depth; // 0: none
    };

    void make_context();
    void add_frame_buffer(int width, int height, bool with_depth);

    int width_;
    int height_;
    void* display_ = nullptr;
    void* context_ = nullptr;
    std::vector<FrameBuffer> buffers_; // what the show draws into, then each half the size of the one before
};

} // namespace offscreen
