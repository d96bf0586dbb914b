// Reads pictures from the framebuffer without waiting for them and without copying them: each goes into a pixel buffer
// of GL, and is delivered, in GL's own memory, while later frames are being drawn.
#pragma once

#include <cstdint>
#include <deque>

#include "hosts/offscreen/drawing/egl_screen.h"
#include "hosts/offscreen/output/output_thread.h"

namespace offscreen {

class FrameReader {
public:
    // Pictures are delivered in the order in which they were read.
    FrameReader(const EglScreen& screen, OutputThread& output);
    ~FrameReader(); // after `output` has ended, which reads the buffers
    FrameReader(const FrameReader&) = delete;
    FrameReader& operator=(const FrameReader&) = delete;

    // Starts reading the picture now on the screen. Delivers the oldest pending one when there are kPending.
    void read(const PictureInfo& info);

    // Delivers everything that is pending.
    void drain();

private:
    static constexpr int kPending = 3;
    static constexpr int kBuffers = kPending + OutputThread::kHeld;

    // The buffer of the picture that was, or will be, read as number `picture`, counted from 0.
    unsigned buffer_of(std::int64_t picture) const { return buffers_[picture % kBuffers]; }
    void deliver_oldest();

    const EglScreen& screen_;
    OutputThread& output_;
    unsigned buffers_[kBuffers];
    std::int64_t read_ = 0;           // pictures
    std::deque<PictureInfo> pending_; // those read and not yet delivered
};

} // namespace offscreen
