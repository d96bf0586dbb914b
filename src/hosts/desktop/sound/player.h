// A device, a mixer and the position of what plays: everything behind the FMOD Ex calls but the handles.
//
//     Player player;
//     Mp3Error error;
//     std::unique_ptr<StreamedSound> music = StreamedSound::open("music.mp3", error);
//     player.play(*music);
//     ... player.position_ms() ...
//     player.stop();
//
// Threads: all calls come from one thread, the controlling one. Behind it run
//   - a decoder per sound, which fills that sound's queue (StreamedSound),
//   - the device library's own thread, which empties it through Mixer::render and never waits,
//   - one that watches the device and publishes its position (Output).
// position_ms() never waits for any of them. The others wait at most for a block of decoding and a block of
// rendering to end; play() and seek() also decode the first half second when the sound does not stand ready.
#pragma once

#include <cstdint>

#include "hosts/desktop/sound/mixer.h"
#include "hosts/desktop/sound/output.h"
#include "hosts/desktop/sound/streamed_sound.h"

namespace sound {

class Player {
public:
    Player() : output_(mixer_) {}
    ~Player() { stop(); }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    // Plays `sound` from its start, in place of what plays now. The sound stays the caller's and must live
    // until the next play() or stop().
    void play(StreamedSound& sound);

    // Silence at once, but for what the device already holds.
    void stop();

    // What plays, or played to its end; null after stop().
    StreamedSound* playing() const { return sound_; }

    // Moves what plays to `position` ms. Returns false, and does nothing, if that lies beyond its end
    // or nothing plays.
    bool seek_ms(unsigned position);

    // How far what plays is audible, in ms; never falls but by a play or a seek. It stands at the start until
    // the first sound comes out of the device, and at the length once the last one has. Sound that a gap
    // delays delays it too.
    unsigned position_ms();

private:
    void start(StreamedSound& sound);

    Mixer mixer_;
    Output output_;
    StreamedSound* sound_ = nullptr;
    std::uint64_t play_ = 0; // number of the last play
    double position_ = 0;    // last told, in frames
    double started_ = 0;     // the device frame that was audible at the last start
};

} // namespace sound
