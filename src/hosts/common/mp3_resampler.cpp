#include "hosts/common/mp3_resampler.h"

#include <algorithm>
#include <numeric>

namespace common {

namespace {

constexpr std::size_t kInputFrames = 1152;

// Frames of the file that the filter sees before a seek's target: more than its longest half.
constexpr std::int64_t kFilterReach = 4096;

} // namespace

std::unique_ptr<Mp3Resampler> Mp3Resampler::create(Mp3Decoder& decoder) {
    int error = 0;
    SRC_STATE* filter = src_new(SRC_SINC_MEDIUM_QUALITY, kSoundChannels, &error);
    if (!filter) return nullptr;
    return std::unique_ptr<Mp3Resampler>(new Mp3Resampler(decoder, filter));
}

Mp3Resampler::Mp3Resampler(Mp3Decoder& decoder, SRC_STATE* filter)
    : decoder_(decoder), filter_(filter), input_(kInputFrames * kSoundChannels) {
    const int common = std::gcd(decoder.rate(), kSoundRate);
    in_step_ = decoder.rate() / common;
    out_step_ = kSoundRate / common;
}

std::int64_t Mp3Resampler::length() const {
    return (decoder_.length() * out_step_ + in_step_ - 1) / in_step_;
}

// Lets the filter make some of the next `frames` frames; 0 at the end of the music.
std::size_t Mp3Resampler::produce(float* out, std::size_t frames) {
    for (;;) {
        if (input_begin_ == input_end_ && !input_over_) {
            input_begin_ = 0;
            input_end_ = decoder_.read(input_.data(), kInputFrames);
            input_over_ = input_end_ < kInputFrames;
        }
        SRC_DATA data{};
        data.data_in = input_.data() + input_begin_ * kSoundChannels;
        data.input_frames = static_cast<long>(input_end_ - input_begin_);
        data.data_out = out;
        data.output_frames = static_cast<long>(frames);
        data.src_ratio = static_cast<double>(out_step_) / static_cast<double>(in_step_);
        data.end_of_input = input_over_;
        if (src_process(filter_.get(), &data) != 0) return 0;
        input_begin_ += static_cast<std::size_t>(data.input_frames_used);
        if (data.output_frames_gen > 0) return static_cast<std::size_t>(data.output_frames_gen);
        if (input_over_) return 0;
    }
}

std::size_t Mp3Resampler::read(float* out, std::size_t frames) {
    const auto left = static_cast<std::size_t>(length() - position_);
    const std::size_t wanted = std::min(frames, left);
    std::size_t got = 0;
    while (got < wanted) {
        const std::size_t more = produce(out + got * kSoundChannels, wanted - got);
        if (more == 0) break;
        got += more;
    }
    position_ += static_cast<std::int64_t>(got);
    return got;
}

bool Mp3Resampler::seek(std::int64_t frame) {
    const std::int64_t steps_before = kFilterReach / in_step_ + 1;
    const std::int64_t step = std::max<std::int64_t>(0, frame / out_step_ - steps_before);
    if (!decoder_.seek(std::min(step * in_step_, decoder_.length()))) return false;
    src_reset(filter_.get());
    input_begin_ = input_end_ = 0;
    input_over_ = false;
    position_ = step * out_step_;

    std::vector<float> skipped(kInputFrames * kSoundChannels);
    while (position_ < frame) {
        const auto left = static_cast<std::size_t>(frame - position_);
        if (read(skipped.data(), std::min(left, kInputFrames)) == 0) return false;
    }
    return true;
}

} // namespace common
