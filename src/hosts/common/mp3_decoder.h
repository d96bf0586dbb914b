// An MP3 file decoded at its own rate: stereo floats, gapless, seekable to the sample. Mp3Stream, which is built
// on it, explains frames and threads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace common {

// The format of all sound inside the hosts: interleaved stereo floats, left then right, nominally -1..1.
constexpr int kSoundRate = 44100; // frames per second
constexpr int kSoundChannels = 2;

enum class Mp3Error {
    none,
    not_found,  // no file of that name
    unreadable, // there is something, but no byte of it can be read: no permission, a folder, an empty file
    not_mp3,    // readable, but not MPEG audio
    no_memory,
};

class Mp3Decoder {
public:
    // Opens the file at `path` at its frame 0. Returns null on failure; `error` says which, or none.
    static std::unique_ptr<Mp3Decoder> open(const char* path, Mp3Error& error);

    ~Mp3Decoder();
    Mp3Decoder(const Mp3Decoder&) = delete;
    Mp3Decoder& operator=(const Mp3Decoder&) = delete;

    int rate() const { return rate_; }              // frames per second
    std::int64_t length() const { return length_; } // frames

    // Writes up to `frames` frames and returns how many: less than asked for only at the end.
    std::size_t read(float* out, std::size_t frames);

    // Makes `frame` (0..length()) the next one read. Returns false if the file cannot be read there.
    bool seek(std::int64_t frame);

    // Reads the frame headers up to `end` seconds. Returns the time of the first place where one frame does not follow
    // directly on another or the rate changes; none if the file is whole so far. Seek before reading on.
    std::optional<double> find_damage(double end);

private:
    struct File;

    Mp3Decoder();
    bool find_bounds();

    std::unique_ptr<File> file_;
    int rate_ = 0;
    std::int64_t begin_ = 0; // where the music's frame 0 lies in what the file decodes to
    std::int64_t length_ = 0;
    std::int64_t position_ = 0;
};

} // namespace common
