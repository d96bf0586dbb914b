#include "hosts/common/skip_ahead.h"

#include <algorithm>
#include <utility>

#include "hosts/common/frame_clock.h"

namespace common {

namespace {

constexpr FrameRate kRate = {60, 1};

class SkippingPlayer;

SkippingPlayer* g_player = nullptr;
ShowTime g_time = 0;          // where the show starts
bool g_ahead = false;         // it has not got there yet
bool g_frame_skipped = false; // the present one
FrameClock g_clock(kRate);

class SkippingPlayer : public Player {
public:
    explicit SkippingPlayer(std::unique_ptr<Player> player) : player_(std::move(player)) { g_player = this; }
    ~SkippingPlayer() override {
        if (g_player == this) g_player = nullptr;
    }

    std::unique_ptr<Sound> open(const char* name, FMOD_RESULT& error) override {
        return player_->open(name, error);
    }

    void play(Sound& sound, unsigned from_ms) override {
        if (!g_ahead) return player_->play(sound, from_ms);
        sound_ = &sound;
        g_clock.play({});
    }

    void stop() override {
        sound_ = nullptr;
        g_clock.stop();
        player_->stop();
    }

    unsigned position_ms() override { return g_ahead ? g_clock.position_ms() : player_->position_ms(); }

    // A clock of frames cannot be moved.
    FMOD_RESULT seek_ms(unsigned position) override {
        return g_ahead ? FMOD_ERR_UNSUPPORTED : player_->seek_ms(position);
    }

    // Plays what the show has started, if anything, from `position` on. Where that fails nothing plays.
    void start_at(ShowTime position) noexcept {
        if (!sound_) return;
        const auto ms = static_cast<unsigned>(std::max<ShowTime>(position, 0) / 1000);
        try {
            player_->play(*sound_, std::min(ms, sound_->length_ms()));
        } catch (...) {
            player_->stop();
        }
    }

private:
    std::unique_ptr<Player> player_;
    Sound* sound_ = nullptr; // what plays on the clock of frames
};

} // namespace

void skip_to(ShowTime time) {
    g_time = time;
    g_ahead = time > 0;
    g_frame_skipped = false;
    g_clock = FrameClock(kRate);
}

void begin_frame() {
    static const ShowFrames frames(kRate);
    if (!g_ahead || !g_clock.running()) return;
    const std::int64_t frame = g_clock.frame();
    g_frame_skipped = frames.time_of(frame) < g_time;
    if (g_frame_skipped) return;
    g_ahead = false;
    if (g_player) g_player->start_at(g_time - frames.piece_of(frame).clock);
}

void end_frame() {
    if (g_frame_skipped) g_clock.next_frame();
}

bool frame_is_skipped() { return g_frame_skipped; }

std::unique_ptr<Player> skipping_player(std::unique_ptr<Player> player) {
    return std::make_unique<SkippingPlayer>(std::move(player));
}

} // namespace common
