// Converts what a decoder reads at another rate to 44.1 kHz. Mp3Stream, which is built on it, explains frames
// and threads.
//
// The ratio of the two rates is that of two small whole numbers: `out_step` output frames last exactly as long
// as `in_step` frames of the file. A seek starts the filter at a multiple of these steps, so that the output is
// the same after a seek as without one.
#pragma once

#include <samplerate.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "hosts/common/mp3_decoder.h"

namespace common {

class Mp3Resampler {
public:
    // Returns null if there is no memory for the filter. The decoder stays the caller's and must outlive it.
    static std::unique_ptr<Mp3Resampler> create(Mp3Decoder& decoder);

    std::int64_t length() const; // frames at 44.1 kHz, a started one included

    std::size_t read(float* out, std::size_t frames);
    bool seek(std::int64_t frame);

private:
    struct FilterDeleter {
        void operator()(SRC_STATE* state) const { src_delete(state); }
    };

    Mp3Resampler(Mp3Decoder& decoder, SRC_STATE* filter);
    std::size_t produce(float* out, std::size_t frames);

    Mp3Decoder& decoder_;
    std::unique_ptr<SRC_STATE, FilterDeleter> filter_;
    std::int64_t in_step_;
    std::int64_t out_step_;
    std::int64_t position_ = 0;
    std::vector<float> input_; // decoded frames not yet taken by the filter
    std::size_t input_begin_ = 0;
    std::size_t input_end_ = 0;
    bool input_over_ = false;
};

} // namespace common
