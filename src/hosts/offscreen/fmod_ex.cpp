// The FMOD Ex calls on the virtual clock. Music that cannot be opened ends the export: without it the show
// would stand still, and there is nothing to wait for.
#include "show/fmod_ex.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "hosts/common/mp3_stream.h"
#include "hosts/offscreen/frames/clock.h"
#include "hosts/offscreen/run.h"

using offscreen::Clock;
using offscreen::Failure;
using offscreen::for_show;

struct FMOD_SYSTEM {
    bool initialised = false;
};
struct FMOD_SOUND {
    std::string file;
};
struct FMOD_CHANNEL {
    FMOD_SOUND* sound = nullptr; // null: nothing plays
};

namespace {

Clock* g_clock = nullptr;
std::unique_ptr<FMOD_SYSTEM> g_system;
std::vector<std::unique_ptr<FMOD_SOUND>> g_sounds;
FMOD_CHANNEL g_channel; // the only one

bool is_open(const FMOD_SOUND* sound) {
    return sound && std::any_of(g_sounds.begin(), g_sounds.end(),
                                [sound](const auto& open) { return open.get() == sound; });
}

void check_music(const char* file) {
    Mp3Error error = Mp3Error::none;
    if (Mp3Stream::open(file, error)) return;
    switch (error) {
    case Mp3Error::not_found:
        throw Failure(std::string("the show's music ") + file + " is missing");
    case Mp3Error::not_mp3:
        throw Failure(std::string(file) + " is not an MP3 file");
    default:
        throw Failure(std::string("cannot read ") + file);
    }
}

} // namespace

void offscreen::set_clock(Clock* clock) { g_clock = clock; }

extern "C" {

FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) {
    if (!system) return FMOD_ERR_INVALID_PARAM;
    if (!g_system) g_system = std::make_unique<FMOD_SYSTEM>();
    *system = g_system.get();
    return FMOD_OK;
}

FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int maxchannels, FMOD_INITFLAGS, void*) {
    if (!system || system != g_system.get()) return FMOD_ERR_INVALID_HANDLE;
    if (maxchannels < 1) return FMOD_ERR_INVALID_PARAM;
    if (system->initialised) return FMOD_ERR_INITIALIZED;
    system->initialised = true;
    return FMOD_OK;
}

FMOD_RESULT FMOD_System_CreateSound(FMOD_SYSTEM* system, const char* name_or_data, FMOD_MODE,
                                    FMOD_CREATESOUNDEXINFO*, FMOD_SOUND** sound) {
    if (!sound) return FMOD_ERR_INVALID_PARAM;
    *sound = nullptr;
    if (!system || system != g_system.get()) return FMOD_ERR_INVALID_HANDLE;
    if (!system->initialised) return FMOD_ERR_UNINITIALIZED;
    if (!name_or_data) return FMOD_ERR_INVALID_PARAM;
    for_show([&] { check_music(name_or_data); });
    g_sounds.push_back(std::make_unique<FMOD_SOUND>(FMOD_SOUND{name_or_data}));
    *sound = g_sounds.back().get();
    return FMOD_OK;
}

FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX, FMOD_SOUND* sound, FMOD_BOOL paused,
                                  FMOD_CHANNEL** channel) {
    if (!channel) return FMOD_ERR_INVALID_PARAM;
    *channel = nullptr;
    if (!system || system != g_system.get() || !is_open(sound)) return FMOD_ERR_INVALID_HANDLE;
    if (paused) return FMOD_ERR_UNSUPPORTED;
    g_channel.sound = sound;
    g_clock->play(sound->file);
    *channel = &g_channel;
    return FMOD_OK;
}

FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT postype) {
    if (!position) return FMOD_ERR_INVALID_PARAM;
    if (channel != &g_channel || !g_channel.sound) return FMOD_ERR_INVALID_HANDLE;
    if (postype != FMOD_TIMEUNIT_MS) return FMOD_ERR_UNSUPPORTED;
    *position = g_clock->position_ms();
    return FMOD_OK;
}

// Frames follow one another: the clock of an export cannot be moved.
FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned int, FMOD_TIMEUNIT) {
    if (channel != &g_channel || !g_channel.sound) return FMOD_ERR_INVALID_HANDLE;
    return FMOD_ERR_UNSUPPORTED;
}

FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) {
    if (!is_open(sound)) return FMOD_ERR_INVALID_HANDLE;
    if (g_channel.sound == sound) {
        g_channel.sound = nullptr;
        g_clock->stop();
    }
    g_sounds.erase(std::find_if(g_sounds.begin(), g_sounds.end(),
                                [sound](const auto& open) { return open.get() == sound; }));
    return FMOD_OK;
}

} // extern "C"
