// One music file on its way to the device: the file, the thread that decodes it ahead of time, and the queue between
// that thread and the one that plays.
//
// Opening decodes the first half second at once, so that the sound can start with the very next request of
// the device; from then on the decoder keeps about one and a half seconds ahead.
//
// Threads: the thread that opened it owns it (length, begin, seek, destruction). take() belongs to the
// thread that plays, and may not run while seek() or the destructor does: Mixer sees to that.
#pragma once

#include <atomic>
#include <boost/lockfree/spsc_queue.hpp>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

#include "hosts/common/music.h"
#include "hosts/common/sound_calls.h"

namespace desktop {

class StreamedSound : public common::Sound {
public:
    // Opens the file at `path` at its frame 0. Returns null on failure; `error` says which, or none.
    static std::unique_ptr<StreamedSound> open(const char* path, common::Mp3Error& error);

    // Stops the decoder; takes as long as one block of decoding at most.
    ~StreamedSound() override;

    std::int64_t length() const { return music_->length(); } // frames

    // The frame that was first in the queue after opening or the last seek.
    std::int64_t begin() const { return begin_; }

    // Empties the queue and fills it again from `frame` (0..length()) on.
    void seek(std::int64_t frame);

    // True once take() was called after opening or the last seek.
    bool taken_from() const { return taken_from_.load(std::memory_order_relaxed); }

    // Writes the next frames, up to `frames`, to `out` and returns how many: less than asked for at the end
    // of the music, or when the decoder is late. Wait-free.
    std::size_t take(float* out, std::size_t frames);

    // How many frames take() would give now.
    std::size_t decoded() const { return queue_.read_available() / common::kSoundChannels; }

private:
    explicit StreamedSound(std::unique_ptr<common::Music> music);

    void start_decoder();
    void stop_decoder();
    void decode_ahead();
    bool decode_block();

    std::unique_ptr<common::Music> music_;     // the decoder thread's while it runs
    boost::lockfree::spsc_queue<float> queue_; // decoded samples
    std::int64_t begin_ = 0;
    std::atomic<bool> taken_from_{false};
    bool all_decoded_ = false; // the decoder thread's while it runs

    std::mutex mutex_;
    std::condition_variable wake_;
    bool stop_ = false; // guarded by mutex_
    std::thread decoder_;
};

} // namespace desktop
