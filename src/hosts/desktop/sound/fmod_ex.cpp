// The desktop's player: a mixer, the output that feeds it to the sound device, and the position of what is heard.
//
// Threads: the calls come from one thread, the controlling one. Behind it run
//   - a decoder per sound, which fills that sound's queue (StreamedSound),
//   - the device library's own thread, which empties it through Mixer::render and never waits,
//   - one that watches the device and publishes the position (Output),
//   - one that opens and closes devices and may wait for a sound server for ever (CubebDevices).
// No call waits for a sound server. position_ms() waits for nothing; the other calls wait at most for a block of
// decoding and a block of rendering to end; play() and seek_ms() also decode the first half second of a sound that is
// not ready.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

#include "hosts/common/skip_ahead.h"
#include "hosts/desktop/sound/cubeb_devices.h"
#include "hosts/desktop/sound/mixer.h"
#include "hosts/desktop/sound/output.h"
#include "hosts/desktop/sound/streamed_sound.h"

namespace desktop {

namespace {

// The first frame that counts as `ms`.
std::int64_t to_frame(unsigned ms) {
    return (static_cast<std::int64_t>(ms) * common::kSoundRate + 999) / 1000;
}

FMOD_RESULT to_result(common::Mp3Error error) {
    switch (error) {
    case common::Mp3Error::none:
        return FMOD_OK;
    case common::Mp3Error::not_found:
        return FMOD_ERR_FILE_NOTFOUND;
    case common::Mp3Error::unreadable:
        return FMOD_ERR_FILE_BAD;
    case common::Mp3Error::not_mp3:
        return FMOD_ERR_FORMAT;
    case common::Mp3Error::no_memory:
        return FMOD_ERR_MEMORY;
    }
    return FMOD_ERR_INTERNAL;
}

class DesktopPlayer : public common::Player {
public:
    DesktopPlayer() : output_(mixer_, devices_, steady_seconds()), watcher_([this] { watch(); }) {}
    ~DesktopPlayer() override {
        over_.store(true);
        watcher_.join();
    }

    std::unique_ptr<common::Sound> open(const char* name, FMOD_RESULT& error) override;
    void play(common::Sound& sound, unsigned from_ms) override;
    void stop() override { mixer_.stop(); }
    unsigned position_ms() override;
    FMOD_RESULT seek_ms(unsigned position) override;

private:
    void start();
    void watch();

    Mixer mixer_;
    CubebDevices devices_;
    Output output_;
    StreamedSound* sound_ = nullptr; // what was last played
    std::uint64_t play_ = 0;         // number of the last play
    double position_ = 0;            // last returned, in frames; never falls but by a play or a seek
    double started_ = 0;             // the device frame that was audible at the last start
    std::atomic<bool> over_{false};
    std::thread watcher_;
};

void DesktopPlayer::watch() {
    constexpr std::chrono::milliseconds kPause{5};
    while (!over_.load()) {
        output_.step(steady_seconds());
        std::this_thread::sleep_for(kPause);
    }
}

std::unique_ptr<common::Sound> DesktopPlayer::open(const char* name, FMOD_RESULT& error) {
    common::Mp3Error why = common::Mp3Error::none;
    std::unique_ptr<StreamedSound> sound = StreamedSound::open(name, why);
    error = to_result(why);
    return sound;
}

void DesktopPlayer::play(common::Sound& sound, unsigned from_ms) {
    mixer_.stop();
    sound_ = static_cast<StreamedSound*>(&sound);
    if (sound_->begin() != to_frame(from_ms) || sound_->taken_from()) sound_->seek(to_frame(from_ms));
    start();
}

FMOD_RESULT DesktopPlayer::seek_ms(unsigned position) {
    play(*sound_, position);
    return FMOD_OK;
}

// Plays the sound from its begin().
void DesktopPlayer::start() {
    position_ = static_cast<double>(sound_->begin());
    started_ = output_.audible(steady_seconds());
    mixer_.play(*sound_, ++play_);
}

// The position is that of the sound's start until its first frame is audible, and at the length once the last
// one is. A gap in the sound delays it.
unsigned DesktopPlayer::position_ms() {
    const double device = output_.audible(steady_seconds());
    const std::optional<Segment> segment = mixer_.segments().at(device);
    if (segment && segment->play == play_) {
        const auto begin = static_cast<double>(sound_->begin());
        double heard = segment->music_at(device);
        // Frames that nobody hears are taken a little late, so a sound may seem to begin before it was played.
        if (segment->music <= begin) heard = std::min(heard, begin + device - started_);
        position_ = std::max(position_, heard);
    }
    return static_cast<unsigned>(position_ * 1000 / common::kSoundRate);
}

} // namespace

} // namespace desktop

std::unique_ptr<common::Player> common::make_player() {
    return skipping_player(std::make_unique<desktop::DesktopPlayer>());
}
