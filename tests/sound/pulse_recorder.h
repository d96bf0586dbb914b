// Records what a PulseServer's device really plays, and when each frame of it was audible.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

class PulseRecorder {
public:
    // Starts recording; returns once frames arrive and the server tells their time steadily.
    PulseRecorder();
    ~PulseRecorder();
    PulseRecorder(const PulseRecorder&) = delete;
    PulseRecorder& operator=(const PulseRecorder&) = delete;

    // Ends recording, and the urgency of the calling thread. What follows is only for afterwards.
    void stop();

    // Stereo at 44.1 kHz.
    const std::vector<float>& samples() const;
    std::int64_t frames() const { return static_cast<std::int64_t>(samples().size() / 2); }

    // When the recorded frame `frame` was audible, in seconds of the steady clock: from the server's own
    // timing, the median of what it said within a second around.
    double time_of(std::int64_t frame) const;

    // The recorded frame that was audible at `time`.
    std::int64_t frame_at(double time) const;

private:
    struct Stream;
    std::unique_ptr<Stream> stream_;
};
