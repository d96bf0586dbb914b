#include "show/driver/music.h"

FMOD_SYSTEM* g_fmod_system = nullptr;
FMOD_SOUND* g_music = nullptr;
FMOD_CHANNEL* g_music_channel = nullptr;
FMOD_RESULT g_fmod_result = FMOD_OK;
int g_vocal = 0;

namespace {

constexpr FMOD_MODE kStream = FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESTREAM;

// Show time of the vocal file's position 0. The cue that switches fires at 74.0 s, so show time jumps forward by
// about 0.3 s there. Intentional.
constexpr unsigned kVocalOffsetMs = 74300;

// Opens a file as the current music.
void open_file(const char* name) {
    g_fmod_result = FMOD_System_CreateSound(g_fmod_system, name, kStream, nullptr, &g_music);
}

// Starts the open file from its beginning.
void play_open_file() {
    g_fmod_result = FMOD_System_PlaySound(g_fmod_system, FMOD_CHANNEL_FREE, g_music, 0, &g_music_channel);
}

} // namespace

void music_open() {
    g_fmod_result = FMOD_System_Create(&g_fmod_system);
    g_fmod_result = FMOD_System_Init(g_fmod_system, 1, FMOD_INIT_NORMAL, nullptr);
    open_file("zev.mp3");
}

void music_play() {
    play_open_file();
    g_vocal = 0;
}

float music_position_ms() {
    unsigned position = 0; // stays 0 when the call fails
    g_fmod_result = FMOD_Channel_GetPosition(g_music_channel, &position, FMOD_TIMEUNIT_MS);
    if (g_vocal == 0) return static_cast<float>(position);
    return static_cast<float>(position + kVocalOffsetMs);
}

void music_switch_to_vocal() {
    music_release();
    open_file("zev_voc.mp3");
    play_open_file();
    g_vocal = 1;
}

void music_release() { g_fmod_result = FMOD_Sound_Release(g_music); }

void music_seek_seconds(int seconds) {
    g_fmod_result =
        FMOD_Channel_SetPosition(g_music_channel, static_cast<unsigned>(seconds) * 1000u, FMOD_TIMEUNIT_MS);
}
