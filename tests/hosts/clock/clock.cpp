// The FMOD Ex calls on a steady clock instead of sound, for tests that need a given show time quickly.
//
//   TEST_CLOCK_START_MS   where the clock stands when the first file starts to play, milliseconds of show
//   time
//                         (0)
//   TEST_CLOCK_SPEED      milliseconds of show time per millisecond from then on (1); 0: it stands still
//   TEST_CLOCK_STARTED    a file to create when the first file starts to play: loading is over
//
// No file is opened. The vocal file's position is the clock's minus 74300 ms, its place in the show, so that
// show time is the clock's before and after the switch.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "show/fmod_ex.h"

struct FMOD_SYSTEM {};
struct FMOD_SOUND {
    double start_ms; // place of the file's position 0 in the show
};
struct FMOD_CHANNEL {
    const FMOD_SOUND* sound;
};

namespace {

using Clock = std::chrono::steady_clock;

FMOD_SYSTEM g_system;
FMOD_SOUND g_instrumental = {0.0};
FMOD_SOUND g_vocal = {74300.0};
FMOD_CHANNEL g_channel = {nullptr};
bool g_playing = false;
Clock::time_point g_play_time;

double environment_number(const char* name, double otherwise) {
    const char* value = std::getenv(name);
    return value ? std::strtod(value, nullptr) : otherwise;
}

double show_time_ms() {
    static const double start = environment_number("TEST_CLOCK_START_MS", 0.0);
    static const double speed = environment_number("TEST_CLOCK_SPEED", 1.0);
    const std::chrono::duration<double, std::milli> elapsed = Clock::now() - g_play_time;
    return start + speed * elapsed.count();
}

void start_clock() {
    g_playing = true;
    g_play_time = Clock::now();
    if (const char* name = std::getenv("TEST_CLOCK_STARTED")) std::ofstream(name) << "playing\n";
}

} // namespace

FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) {
    *system = &g_system;
    return FMOD_OK;
}

FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int, FMOD_INITFLAGS, void*) {
    return system ? FMOD_OK : FMOD_ERR_INVALID_HANDLE;
}

FMOD_RESULT FMOD_System_CreateSound(FMOD_SYSTEM* system, const char* name_or_data, FMOD_MODE,
                                    FMOD_CREATESOUNDEXINFO*, FMOD_SOUND** sound) {
    *sound = nullptr;
    if (!system) return FMOD_ERR_INVALID_HANDLE;
    *sound = std::strcmp(name_or_data, "zev_voc.mp3") == 0 ? &g_vocal : &g_instrumental;
    return FMOD_OK;
}

FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX, FMOD_SOUND* sound, FMOD_BOOL,
                                  FMOD_CHANNEL** channel) {
    *channel = nullptr;
    if (!system || !sound) return FMOD_ERR_INVALID_HANDLE;
    if (!g_playing) start_clock();
    g_channel.sound = sound;
    *channel = &g_channel;
    return FMOD_OK;
}

FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT) {
    if (!channel || !channel->sound) return FMOD_ERR_INVALID_HANDLE;
    *position = static_cast<unsigned>(std::max(0.0, show_time_ms() - channel->sound->start_ms));
    return FMOD_OK;
}

FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL*, unsigned int, FMOD_TIMEUNIT) {
    return FMOD_ERR_UNSUPPORTED;
}

FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) {
    if (!sound) return FMOD_ERR_INVALID_HANDLE;
    if (g_channel.sound == sound) g_channel.sound = nullptr;
    return FMOD_OK;
}
