#include "hosts/desktop/sound/mixer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

namespace desktop {

namespace {

constexpr float kTailDecay = 0.98f;  // per frame: inaudible after some 10 ms
constexpr float kTailSilent = 1e-5f; // below the smallest step of 16 bits
constexpr std::uint64_t kSkipFrame = 0xffffffff;

} // namespace

void SegmentLog::collect() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    added_.consume_all([this](const Segment& segment) { kept_.push_back(segment); });
    while (kept_.size() > kKept) kept_.pop_front();
}

std::optional<Segment> SegmentLog::at(double device) const {
    collect();
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = std::find_if(kept_.rbegin(), kept_.rend(),
                                    [device](const Segment& segment) { return segment.device <= device; });
    return found == kept_.rend() ? std::nullopt : std::make_optional(*found);
}

void Mixer::play(StreamedSound& sound, std::uint64_t play) {
    replace(std::make_unique<Play>(Play{&sound, play, sound.begin(), sound.length()}));
}

void Mixer::stop() { replace(nullptr); }

void Mixer::skip_to(std::uint64_t play, double frame) {
    skip_.store(play << 32 | static_cast<std::uint32_t>(frame), std::memory_order_release);
}

// Shows render() the new play, and waits until no call that may have seen the old one is under way. Both
// sides store first and look then, in one order for all threads: either this sees the call, or the call sees
// the new play.
void Mixer::replace(std::unique_ptr<Play> play) {
    play_number_.store(play ? play->number : 0, std::memory_order_release);
    play_.store(play.get(), std::memory_order_seq_cst);
    while (rendering_.load(std::memory_order_seq_cst))
        std::this_thread::sleep_for(std::chrono::microseconds(50));
    owned_play_ = std::move(play);
}

void Mixer::render(float* out, std::size_t frames) {
    if (rendering_.exchange(true, std::memory_order_seq_cst)) {
        std::fill_n(out, 2 * frames, 0.0f);
        return;
    }
    const std::uint64_t device = handed_out_.load(std::memory_order_relaxed);
    const Play* play = play_.load(std::memory_order_seq_cst);
    change_to(play);

    const bool plays = play && !leave_out(*play, out, frames);
    const std::size_t taken = plays ? play->sound->take(out, frames) : 0;
    if (taken > 0 && !running_) {
        segments_.add({static_cast<double>(device), static_cast<double>(music_), play->number, true});
        running_ = true;
    }
    music_ += static_cast<std::int64_t>(taken);
    if (taken > 0) last_ = {out[2 * taken - 2], out[2 * taken - 1]};
    std::size_t tail_begin = 0;
    if (taken < frames && running_) { // the music's end, or the decoder is late: the music stands still
        const auto end = static_cast<double>(device + taken);
        segments_.add({end, static_cast<double>(music_), play->number, false});
        running_ = false;
        tail_ = last_;
        tail_begin = taken;
    }
    std::fill_n(out + 2 * taken, 2 * (frames - taken), 0.0f);
    add_tail(out + 2 * tail_begin, frames - tail_begin);

    handed_out_.store(device + frames, std::memory_order_release);
    rendering_.store(false, std::memory_order_seq_cst);
}

// Notes what plays from here on, null for nothing.
void Mixer::change_to(const Play* play) {
    const std::uint64_t number = play ? play->number : 0;
    if (number == rendered_play_) return;
    if (running_) tail_ = last_;
    running_ = false;
    rendered_play_ = number;
    music_ = play ? play->begin : 0;
}

// Drops what is to be skipped of `play`, as far as it is decoded. True while there is more to drop.
bool Mixer::leave_out(const Play& play, float* scratch, std::size_t frames) {
    const std::uint64_t skip = skip_.load(std::memory_order_acquire);
    const std::int64_t to = std::min(static_cast<std::int64_t>(skip & kSkipFrame), play.end);
    if (skip >> 32 != play.number || to <= music_) return false;
    if (running_) tail_ = last_;
    running_ = false;
    std::size_t dropped = 0;
    do {
        dropped = play.sound->take(scratch, std::min(frames, static_cast<std::size_t>(to - music_)));
        music_ += static_cast<std::int64_t>(dropped);
    } while (dropped > 0 && music_ < to);
    segments_.add({static_cast<double>(handed_out()), static_cast<double>(music_), play.number, false});
    return music_ < to;
}

void Mixer::add_tail(float* out, std::size_t frames) {
    for (std::size_t i = 0; i < frames; ++i) {
        if (std::fabs(tail_[0]) < kTailSilent && std::fabs(tail_[1]) < kTailSilent) return;
        for (std::size_t side = 0; side < 2; ++side) {
            tail_[side] *= kTailDecay;
            out[2 * i + side] += tail_[side];
        }
    }
}

} // namespace desktop
