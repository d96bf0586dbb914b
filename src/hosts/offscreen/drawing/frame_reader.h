// Reads pictures from the framebuffer without waiting for them: each goes into a pixel buffer of GL and is delivered
// while later frames are being drawn.
#pragma once

#include "hosts/offscreen/drawing/egl_screen.h"
#include "hosts/offscreen/output/output_thread.h"

namespace offscreen {

class FrameReader {
public:
    // Pictures are delivered in the order in which they were read.
    FrameReader(const EglScreen& screen, OutputThread& output);
    ~FrameReader();
    FrameReader(const FrameReader&) = delete;
    FrameReader& operator=(const FrameReader&) = delete;

    // Starts reading the picture now on the screen. Delivers the oldest pending one when all buffers are in use.
    void read(const PictureInfo& info);

    // Delivers everything that is pending.
    void drain();

private:
    static constexpr int kBuffers = 3;

    void deliver_oldest();

    const EglScreen& screen_;
    OutputThread& output_;
    unsigned buffers_[kBuffers];
    PictureInfo infos_[kBuffers];
    int oldest_ = 0;
    int pending_ = 0;
};

} // namespace offscreen
