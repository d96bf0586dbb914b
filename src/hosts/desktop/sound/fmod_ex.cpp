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
#include <atomic>
#include <chrono>
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
    void stop() override { output_.stop(steady_seconds()); }
    unsigned position_ms() override;
    FMOD_RESULT seek_ms(unsigned position) override;

private:
    void watch();

    Mixer mixer_;
    CubebDevices devices_;
    Output output_;
    StreamedSound* sound_ = nullptr; // what was last played
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
    stop();
    sound_ = static_cast<StreamedSound*>(&sound);
    if (sound_->begin() != to_frame(from_ms) || sound_->taken_from()) sound_->seek(to_frame(from_ms));
    output_.play(*sound_, steady_seconds());
}

FMOD_RESULT DesktopPlayer::seek_ms(unsigned position) {
    play(*sound_, position);
    return FMOD_OK;
}

unsigned DesktopPlayer::position_ms() {
    return static_cast<unsigned>(output_.position(steady_seconds()) * 1000 / common::kSoundRate);
}

} // namespace

} // namespace desktop

std::unique_ptr<common::Player> common::make_player() {
    return skipping_player(std::make_unique<desktop::DesktopPlayer>());
}
