#include "hosts/offscreen/soundtrack.h"

#include <algorithm>

#include "hosts/offscreen/failure.h"

void Soundtrack::append(const PictureInfo& frame, std::vector<float>& samples) {
    const std::int64_t begin = samples_before(frame.frame);
    const auto wanted = static_cast<std::size_t>(samples_before(frame.frame + 1) - begin);
    const std::size_t old_size = samples.size();
    samples.resize(old_size + wanted * kChannels, 0.0f);
    if (!frame.sound) return;
    if (frame.sound != piece_) open(*frame.sound);
    piece_ = frame.sound;

    const std::int64_t position = begin - samples_before(piece_->from_frame);
    if (position >= stream_->length()) return;
    if (stream_->position() != position && !stream_->seek(position)) {
        throw Failure("cannot read " + piece_->file + " at " + std::to_string(position / kRate) + " s");
    }
    stream_->read(samples.data() + old_size, wanted);
}

void Soundtrack::open(const Played& piece) {
    Mp3Error error = Mp3Error::none;
    stream_ = Mp3Stream::open(piece.file.c_str(), error);
    if (!stream_) throw Failure("cannot decode the music in " + piece.file);
}

std::int64_t Soundtrack::samples_before(std::int64_t frame) const {
    return frame * kRate * rate_.seconds / rate_.frames;
}
