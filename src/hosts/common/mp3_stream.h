// An MP3 file as a stream of stereo floats at 44.1 kHz, whatever the file's own rate and channel count.
//
//     common::Mp3Error error;
//     auto music = common::Mp3Stream::open("music.mp3", error);
//     std::vector<float> block(2 * 1024);
//     while (std::size_t frames = music->read(block.data(), 1024)) play(block.data(), frames);
//
// A frame is one sample of both channels: two floats, left then right, nominally within -1..1 (a loud file
// may decode to more). Frame 0 is the first sample of the music: the encoder's delay and padding, where the
// file tells them, are cut off, so the frames are those that were encoded.
//
// The file is read and decoded piece by piece and is never in memory as a whole. Opening walks once through
// the frame headers, so that the length is known exactly even where the file promises another one. Files at
// 44.1 kHz are handed out untouched; others go through a band-limited resampler. Mono goes to both sides.
//
// One thread at a time may use a stream. Nothing is ever printed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "hosts/common/mp3_decoder.h"

namespace common {

class Mp3Resampler;

class Mp3Stream {
public:
    // Opens the file at `path` at its frame 0. Returns null on failure; `error` says which, or none.
    static std::unique_ptr<Mp3Stream> open(const char* path, Mp3Error& error);

    ~Mp3Stream();
    Mp3Stream(const Mp3Stream&) = delete;
    Mp3Stream& operator=(const Mp3Stream&) = delete;

    // How many frames the file holds. A truncated file counts only what is there.
    std::int64_t length() const;

    // The frame that the next read starts with.
    std::int64_t position() const { return position_; }

    // Writes up to `frames` frames to `out` (2 * frames floats) and returns how many: less than asked for
    // only at the end of the music, or where the file turned out to be unreadable.
    std::size_t read(float* out, std::size_t frames);

    // Makes `frame` (0..length()) the next one read, exact to the sample. Returns false, and leaves the
    // stream at an unspecified position, if the file cannot be read there.
    bool seek(std::int64_t frame);

private:
    Mp3Stream(std::unique_ptr<Mp3Decoder> decoder, std::unique_ptr<Mp3Resampler> resampler);

    std::unique_ptr<Mp3Decoder> decoder_;
    std::unique_ptr<Mp3Resampler> resampler_; // null at 44.1 kHz
    std::int64_t position_ = 0;
};

} // namespace common
