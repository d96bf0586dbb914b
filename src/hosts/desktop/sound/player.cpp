#include "hosts/desktop/sound/player.h"

#include <algorithm>
#include <optional>

namespace sound {

namespace {

// The first frame that counts as `ms`.
std::int64_t to_frame(unsigned ms) { return (static_cast<std::int64_t>(ms) * kSoundRate + 999) / 1000; }

} // namespace

void Player::play(StreamedSound& sound) {
    stop();
    if (sound.begin() != 0 || sound.taken_from()) sound.seek(0);
    start(sound);
}

void Player::stop() {
    mixer_.stop();
    sound_ = nullptr;
}

bool Player::seek_ms(unsigned position) {
    if (!sound_) return false;
    const std::int64_t frame = to_frame(position);
    if (frame > sound_->length()) return false;
    StreamedSound& sound = *sound_;
    stop();
    sound.seek(frame);
    start(sound);
    return true;
}

// Plays `sound`, which stands ready, from its begin().
void Player::start(StreamedSound& sound) {
    sound_ = &sound;
    position_ = static_cast<double>(sound.begin());
    started_ = output_.audible();
    mixer_.play(sound, ++play_);
}

unsigned Player::position_ms() {
    const double device = output_.audible();
    const std::optional<Segment> segment = mixer_.segments().at(device);
    if (sound_ && segment && segment->play == play_) {
        const double since = segment->running ? device - segment->device : 0;
        const double heard = segment->music + since;
        // The silent device takes its frames a little late, so a sound may seem to begin before it was
        // played.
        const double since_start = device - started_;
        const double most = std::min(static_cast<double>(sound_->begin()) + since_start,
                                     static_cast<double>(sound_->length()));
        position_ = std::max(position_, std::min(heard, most));
    }
    return static_cast<unsigned>(position_ * 1000 / kSoundRate);
}

} // namespace sound
