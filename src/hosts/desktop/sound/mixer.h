// The one channel: what the device gets to play, and the record of it.
//
// Threads: play() and stop() belong to the controlling thread. render() belongs to whoever feeds the device;
// it never locks, allocates, waits, reads files or decodes. handed_out() and segments() are for any thread.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "hosts/desktop/sound/segment_log.h"
#include "hosts/desktop/sound/streamed_sound.h"

namespace sound {

class Mixer {
public:
    Mixer() = default;
    Mixer(const Mixer&) = delete;
    Mixer& operator=(const Mixer&) = delete;

    // Plays `sound` from its begin() on, in place of what plays now, as play number `play` (a new one each
    // time, not 0). The sound stays the caller's and must live until the next stop() or play() has returned.
    void play(StreamedSound& sound, std::uint64_t play);

    // Silence. When this returns, render() no longer touches the sound that played.
    void stop();

    // Writes the next `frames` frames for the device to `out`: music as far as it is decoded, silence where
    // it is not or nothing plays. A call that overlaps another gets silence and counts for nothing.
    void render(float* out, std::size_t frames);

    // Frames ever rendered: the device frame that the next render() starts with.
    std::uint64_t handed_out() const { return handed_out_.load(std::memory_order_acquire); }

    // What was rendered where, in device frames.
    const SegmentLog& segments() const { return segments_; }

private:
    struct Play {
        StreamedSound* sound;
        std::uint64_t number;
        std::int64_t begin;
    };

    void replace(std::unique_ptr<Play> play);
    void change_to(const Play* play);
    void add_tail(float* out, std::size_t frames);

    std::unique_ptr<Play> owned_play_; // the controlling thread's
    std::atomic<Play*> play_{nullptr};
    std::atomic<bool> rendering_{false};
    std::atomic<std::uint64_t> handed_out_{0};
    SegmentLog segments_;

    // Only render() touches these.
    std::uint64_t rendered_play_ = 0; // number of the play last rendered, 0 for none
    std::int64_t music_ = 0;          // its next frame
    bool running_ = false;            // it delivered the frame before
    std::array<float, 2> last_{};     // the frame before
    std::array<float, 2> tail_{};     // what is left of music that broke off, dying away without a click
};

} // namespace sound
