// The screen that nobody sees: an OpenGL context of the compatibility profile and a frame buffer with a depth
// buffer, made through EGL. Needs neither a display server nor a GPU.
#pragma once

class EglScreen {
public:
    // Makes a screen of the given size in pixels, black, and makes its context current for the calling
    // thread, which stays the only one to use it. Throws Failure, with a line that says what is missing.
    EglScreen(int width, int height);
    ~EglScreen();
    EglScreen(const EglScreen&) = delete;
    EglScreen& operator=(const EglScreen&) = delete;

    int width() const { return width_; }
    int height() const { return height_; }

    // The frame buffer object that the show draws into. It is bound for drawing and reading.
    unsigned frame_buffer() const { return frame_buffer_; }

private:
    void make_context();
    void make_frame_buffer();

    int width_;
    int height_;
    void* display_ = nullptr;
    void* context_ = nullptr;
    unsigned frame_buffer_ = 0;
    unsigned render_buffers_[2] = {0, 0}; // colour, depth
};
