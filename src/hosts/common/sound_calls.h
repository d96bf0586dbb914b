// The FMOD Ex calls, once for all hosts. Handles and arguments are checked here, as show/fmod_ex.h promises;
// what opens, plays and keeps time is the host's Player.
//
//     // a host's fmod_ex.cpp
//     class DesktopPlayer : public common::Player { ... };
//     std::unique_ptr<common::Player> common::make_player() { return std::make_unique<DesktopPlayer>(); }
//
// All calls come from one thread.
#pragma once

#include <memory>

#include "show/fmod_ex.h"

namespace common {

// An open sound. A host derives what it needs to play it.
class Sound {
public:
    // A sound of `length_ms` milliseconds, rounded down.
    explicit Sound(unsigned length_ms) : length_ms_(length_ms) {}
    virtual ~Sound() = default;
    Sound(const Sound&) = delete;
    Sound& operator=(const Sound&) = delete;

    unsigned length_ms() const { return length_ms_; }

private:
    unsigned length_ms_;
};

// What stands behind an initialised FMOD_SYSTEM: one channel. It is given only sounds that it has opened.
class Player {
public:
    virtual ~Player() = default;

    // Opens the file `name`. Returns null on failure; `error` says why.
    virtual std::unique_ptr<Sound> open(const char* name, FMOD_RESULT& error) = 0;

    // Plays `sound` from `from_ms` on, at most its length, in place of what plays. It lives at least until the next
    // play() or stop().
    virtual void play(Sound& sound, unsigned from_ms) = 0;
    virtual void stop() = 0;

    // How far what was last played is heard, in milliseconds. May run past its length.
    virtual unsigned position_ms() = 0;

    // Moves what plays to `position` ms, at most its length. May refuse.
    virtual FMOD_RESULT seek_ms(unsigned position) = 0;
};

// The host's player, made when a system is initialised. Each host defines it. May throw.
std::unique_ptr<Player> make_player();

// Told every position that the show reads, in milliseconds; null: nobody is.
inline void (*position_listener)(unsigned milliseconds) = nullptr;

} // namespace common
