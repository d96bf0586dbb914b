// The one channel: what the device gets to play, and the record of it.
//
// Threads: play() and stop() belong to the controlling thread, skip() to the one that watches the device. render()
// belongs to whoever feeds the device; it never locks, allocates, waits, reads files or decodes. handed_out() and
// segments() are for any other thread.
#pragma once

#include <array>
#include <atomic>
#include <boost/lockfree/spsc_queue.hpp>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

#include "hosts/desktop/sound/streamed_sound.h"

namespace desktop {

// From device frame `device` on, until the next segment, the play number `play` is at music frame `music`:
// running on from it frame by frame, or standing at it in silence.
struct Segment {
    double device;
    double music;
    std::uint64_t play;
    bool running;

    // The music frame at the device frame `at`.
    double music_at(double at) const { return running ? music + at - device : music; }
};

// Which part of the music the device plays at which of its own frames.
//
// Device frames count everything ever rendered, silence included. A new segment is made only where the relation
// between device and music changes: at a start, a seek, the end, and both ends of a gap in which the decoder was
// late. Only the newest segments are kept, many more than the device's delay can hold.
class SegmentLog {
public:
    static constexpr std::size_t kKept = 256;

    // Adds a segment that begins no earlier than the last one. One thread at a time; wait-free. It is lost if
    // kKept segments were added since the last call of collect() or at().
    void add(const Segment& segment) { added_.push(segment); }

    // Takes in what was added. To be called now and then. Any thread but the one that renders.
    void collect() const;

    // The segment that device frame `device` lies in; none before the first one, or if it is no longer kept.
    // Any thread but the one that renders.
    std::optional<Segment> at(double device) const;

private:
    mutable boost::lockfree::spsc_queue<Segment, boost::lockfree::capacity<kKept>> added_;
    mutable std::mutex mutex_;
    mutable std::deque<Segment> kept_; // guarded by mutex_
};

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

    // The number of what plays, 0 for nothing.
    std::uint64_t play_number() const { return play_number_.load(std::memory_order_acquire); }

    // Leaves out what the play number `play` has not delivered before the music's frame `frame`.
    void skip_to(std::uint64_t play, double frame);

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
        std::int64_t end;
    };

    void replace(std::unique_ptr<Play> play);
    void change_to(const Play* play);
    bool leave_out(const Play& play, float* scratch, std::size_t frames);
    void add_tail(float* out, std::size_t frames);

    std::unique_ptr<Play> owned_play_; // the controlling thread's
    std::atomic<Play*> play_{nullptr};
    std::atomic<std::uint64_t> play_number_{0};
    std::atomic<bool> rendering_{false};
    std::atomic<std::uint64_t> handed_out_{0};
    std::atomic<std::uint64_t> skip_{0}; // a play number, and in the lower half the frame to skip to
    SegmentLog segments_;

    // Only render() touches these.
    std::uint64_t rendered_play_ = 0; // number of the play last rendered, 0 for none
    std::int64_t music_ = 0;          // its next frame
    bool running_ = false;            // it delivered the frame before
    std::array<float, 2> last_{};     // the frame before
    std::array<float, 2> tail_{};     // what is left of music that broke off, dying away without a click
};

} // namespace desktop
