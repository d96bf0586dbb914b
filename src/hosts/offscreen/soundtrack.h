// What is heard while frames are on screen, cut into their lengths.
#pragma once

#include <memory>
#include <vector>

#include "hosts/common/mp3_stream.h"
#include "hosts/offscreen/picture.h"

class Soundtrack {
public:
    static constexpr int kRate = kSoundRate;
    static constexpr int kChannels = kSoundChannels;

    explicit Soundtrack(FrameRate rate) : rate_(rate) {}

    // Appends the samples (left, right, left, ...) that are heard while the frame is on screen: those from
    // its first moment up to the next frame's, counted from the start of the show. However the show is cut
    // into ranges, their sounds join to the sample. Silence where nothing plays, and after a file's end.
    // Throws Failure when the music cannot be read.
    void append(const PictureInfo& frame, std::vector<float>& samples);

private:
    void open(const Played& piece);
    std::int64_t samples_before(std::int64_t frame) const;

    FrameRate rate_;
    std::shared_ptr<const Played> piece_;
    std::unique_ptr<Mp3Stream> stream_;
};
