// Getting pictures out of the frame buffer without waiting for them: each is read into a buffer on the GL
// side, and handed on while later frames are being drawn.
#pragma once

#include <functional>
#include <vector>

#include "hosts/offscreen/egl_screen.h"
#include "hosts/offscreen/picture.h"

class FrameReader {
public:
    // `blank` gives a picture whose pixels will be overwritten; `deliver` takes a finished one. Pictures are
    // delivered in the order in which they were read.
    FrameReader(const EglScreen& screen, std::function<PicturePtr()> blank,
                std::function<void(PicturePtr)> deliver);
    ~FrameReader();
    FrameReader(const FrameReader&) = delete;
    FrameReader& operator=(const FrameReader&) = delete;

    // Reads the picture now on the screen; `about` tells which it is. Delivers the oldest one under way when
    // too many are.
    void read(const PictureInfo& about);

    // Delivers everything that is under way.
    void drain();

private:
    static constexpr int kBuffers = 3;

    void deliver_oldest();

    const EglScreen& screen_;
    std::function<PicturePtr()> blank_;
    std::function<void(PicturePtr)> deliver_;
    unsigned buffers_[kBuffers];
    PictureInfo abouts_[kBuffers];
    int oldest_ = 0;
    int under_way_ = 0;
};
