// The page's player. The browser has decoded the music before the show starts and plays it in the page (web/music.js);
// the show is told where the music is with each frame.
#include <emscripten.h>

#include <string>

#include "hosts/common/sound_calls.h"

namespace {

// Milliseconds, rounded down; negative for a file that is not there.
EM_JS(int, music_length, (const char* name), { return Module["musicLength"](UTF8ToString(name)); });
EM_JS(void, music_play, (const char* name), { Module["play"](UTF8ToString(name)); });
EM_JS(void, music_stop, (), { Module["stop"](); });
EM_JS(double, music_position, (), { return Module["position"](); }); // ms, of what was last played

class Piece : public common::Sound {
public:
    Piece(const char* file, unsigned length_ms) : Sound(length_ms), file_(file) {}

    const char* file() const { return file_.c_str(); }

private:
    std::string file_;
};

class PagePlayer : public common::Player {
public:
    std::unique_ptr<common::Sound> open(const char* name, FMOD_RESULT& error) override {
        const int length = music_length(name);
        if (length >= 0) return std::make_unique<Piece>(name, static_cast<unsigned>(length));
        error = FMOD_ERR_FILE_NOTFOUND;
        return nullptr;
    }
    void play(common::Sound& sound, unsigned) override { music_play(static_cast<Piece&>(sound).file()); }
    void stop() override { music_stop(); }
    unsigned position_ms() override { return static_cast<unsigned>(music_position()); }

    // The position comes with the frame: it cannot be moved from here.
    FMOD_RESULT seek_ms(unsigned) override { return FMOD_ERR_UNSUPPORTED; }
};

} // namespace

std::unique_ptr<common::Player> common::make_player() { return std::make_unique<PagePlayer>(); }
