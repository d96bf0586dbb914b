// A music file as the hosts play it: an MP3 stream that lasts as long as the show needs it. Where the file ends before
// that, or breaks off before the length that its frames had when it was opened, silence follows, and one line on
// standard error says so.
//
// Frames and threads are those of Mp3Stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "hosts/common/mp3_stream.h"

namespace common {

class Music {
public:
    // Opens the file at `path` at its frame 0. Returns null on failure; `error` says which, or none. What the show
    // needs goes by the name as the show opens it.
    static std::unique_ptr<Music> open(const std::string& path, Mp3Error& error);

    // Frames: the file's, or a second more than what the show needs, whichever is longer.
    std::int64_t length() const { return length_; }
    unsigned length_ms() const { return static_cast<unsigned>(length_ * 1000 / kSoundRate); } // rounded down

    // The frame that the next read starts with.
    std::int64_t position() const { return position_; }

    // Writes up to `frames` frames to `out` and returns how many: less than asked for only at the length.
    std::size_t read(float* out, std::size_t frames);

    // Makes `frame` (0..length()) the next one read.
    void seek(std::int64_t frame);

private:
    Music(std::string name, std::unique_ptr<Mp3Stream> stream);
    void report_break();

    std::string name_;
    std::unique_ptr<Mp3Stream> stream_;
    std::int64_t needed_; // frames
    std::int64_t length_;
    std::int64_t position_ = 0;
    bool broken_ = false;   // the file cannot be read at position_
    bool reported_ = false; // said so
};

} // namespace common
