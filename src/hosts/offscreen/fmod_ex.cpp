// The exporter's player: nothing is heard, and the position is that of the clock of frames. Music that cannot be
// opened ends the export: without it the show would stand still for ever.
#include <string>

#include "hosts/common/frame_clock.h"
#include "hosts/common/music.h"
#include "hosts/common/sound_calls.h"
#include "hosts/offscreen/run.h"

using offscreen::Failure;
using offscreen::for_show;

namespace {

common::FrameClock* g_clock = nullptr;

// A piece of music: its name for the clock. The sound of the export is read from the file elsewhere.
class Piece : public common::Sound {
public:
    Piece(const std::string& file, unsigned length_ms) : Sound(length_ms), file_(file) {}

    const std::string& file() const { return file_; }

private:
    std::string file_;
};

std::unique_ptr<Piece> open_piece(const char* file) {
    common::Mp3Error error = common::Mp3Error::none;
    const std::unique_ptr<common::Music> music = common::Music::open(file, error);
    if (music) return std::make_unique<Piece>(file, music->length_ms());
    switch (error) {
    case common::Mp3Error::not_found:
        throw Failure(std::string("the show's music ") + file + " is missing");
    case common::Mp3Error::not_mp3:
        throw Failure(std::string(file) + " is not an MP3 file");
    default:
        throw Failure(std::string("cannot read ") + file);
    }
}

class FramePlayer : public common::Player {
public:
    std::unique_ptr<common::Sound> open(const char* name, FMOD_RESULT&) override {
        std::unique_ptr<common::Sound> sound;
        for_show([&] { sound = open_piece(name); });
        return sound;
    }
    void play(common::Sound& sound, unsigned) override { g_clock->play(static_cast<Piece&>(sound).file()); }
    void stop() override { g_clock->stop(); }
    unsigned position_ms() override { return g_clock->position_ms(); }

    // Frames follow one another: the clock of an export cannot be moved.
    FMOD_RESULT seek_ms(unsigned) override { return FMOD_ERR_UNSUPPORTED; }
};

} // namespace

void offscreen::set_clock(common::FrameClock* clock) { g_clock = clock; }

std::unique_ptr<common::Player> common::make_player() { return std::make_unique<FramePlayer>(); }
