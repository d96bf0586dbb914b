#include "hosts/common/mp3_stream.h"

#include <utility>

#include "hosts/common/mp3_resampler.h"

namespace common {

std::unique_ptr<Mp3Stream> Mp3Stream::open(const char* path, Mp3Error& error) {
    std::unique_ptr<Mp3Decoder> decoder = Mp3Decoder::open(path, error);
    if (!decoder) return nullptr;
    std::unique_ptr<Mp3Resampler> resampler;
    if (decoder->rate() != kSoundRate) {
        resampler = Mp3Resampler::create(*decoder);
        if (!resampler) {
            error = Mp3Error::no_memory;
            return nullptr;
        }
    }
    return std::unique_ptr<Mp3Stream>(new Mp3Stream(std::move(decoder), std::move(resampler)));
}

Mp3Stream::Mp3Stream(std::unique_ptr<Mp3Decoder> decoder, std::unique_ptr<Mp3Resampler> resampler)
    : decoder_(std::move(decoder)), resampler_(std::move(resampler)) {}

Mp3Stream::~Mp3Stream() = default;

std::int64_t Mp3Stream::length() const { return resampler_ ? resampler_->length() : decoder_->length(); }

std::size_t Mp3Stream::read(float* out, std::size_t frames) {
    const std::size_t got = resampler_ ? resampler_->read(out, frames) : decoder_->read(out, frames);
    position_ += static_cast<std::int64_t>(got);
    return got;
}

bool Mp3Stream::seek(std::int64_t frame) {
    if (!(resampler_ ? resampler_->seek(frame) : decoder_->seek(frame))) return false;
    position_ = frame;
    return true;
}

} // namespace common
