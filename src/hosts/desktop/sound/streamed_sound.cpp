#include "hosts/desktop/sound/streamed_sound.h"

#include <array>
#include <chrono>
#include <utility>

namespace desktop {

namespace {

constexpr std::size_t kQueueFrames = 65536;
constexpr std::size_t kBlockFrames = 1152;
constexpr std::int64_t kDecodedAtOnce = common::kSoundRate / 2;
constexpr std::chrono::milliseconds kDecoderPause{20}; // a small part of what the queue holds

} // namespace

std::unique_ptr<StreamedSound> StreamedSound::open(const char* path, common::Mp3Error& error) {
    std::unique_ptr<common::Music> music = common::Music::open(path, error);
    if (!music) return nullptr;
    std::unique_ptr<StreamedSound> sound(new StreamedSound(std::move(music)));
    sound->start_decoder();
    return sound;
}

StreamedSound::StreamedSound(std::unique_ptr<common::Music> music)
    : Sound(music->length_ms()), music_(std::move(music)), queue_(common::kSoundChannels * kQueueFrames) {}

StreamedSound::~StreamedSound() { stop_decoder(); }

void StreamedSound::seek(std::int64_t frame) {
    stop_decoder();
    queue_.reset();
    begin_ = frame;
    taken_from_.store(false, std::memory_order_relaxed);
    music_->seek(frame);
    all_decoded_ = false;
    start_decoder();
}

std::size_t StreamedSound::take(float* out, std::size_t frames) {
    taken_from_.store(true, std::memory_order_relaxed);
    return queue_.pop(out, common::kSoundChannels * frames) / common::kSoundChannels;
}

// Decodes the first half second on the calling thread and leaves the rest to the decoder thread.
void StreamedSound::start_decoder() {
    while (music_->position() - begin_ < kDecodedAtOnce && decode_block()) {
    }
    stop_ = false;
    decoder_ = std::thread([this] { decode_ahead(); });
}

void StreamedSound::stop_decoder() {
    if (!decoder_.joinable()) return;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stop_ = true;
    }
    wake_.notify_one();
    decoder_.join();
}

// The decoder thread: fills the queue, then looks again every now and then. The playing thread never wakes
// it, for that could make the playing thread wait.
void StreamedSound::decode_ahead() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!stop_) {
        lock.unlock();
        const bool room_left =
            queue_.write_available() >= common::kSoundChannels * kBlockFrames && decode_block();
        lock.lock();
        if (!room_left) wake_.wait_for(lock, kDecoderPause, [this] { return stop_; });
    }
}

// Decodes one block into the queue, which has room for it. Returns false at the end of the music.
bool StreamedSound::decode_block() {
    if (all_decoded_) return false;
    std::array<float, 2 * kBlockFrames> block;
    const std::size_t frames = music_->read(block.data(), kBlockFrames);
    queue_.push(block.data(), common::kSoundChannels * frames);
    all_decoded_ = frames < kBlockFrames;
    return !all_decoded_;
}

} // namespace desktop
