// FMOD Ex entry points. Sounds and channels are numbered in the order of their making, from 1; 0 is null.
#include "show/fmod_ex.h"

#include <algorithm>
#include <memory>

#include "tests/hosts/recording/record.h"

using recording::record;

struct FMOD_SYSTEM {};
struct FMOD_SOUND {
    int number;
    bool released = false;
};
struct FMOD_CHANNEL {
    int number;
    const FMOD_SOUND* sound = nullptr;
};

namespace {

FMOD_SYSTEM g_system;
size_t g_next_position = 0;

// Handles live until the end of the process, so that a late use of one is seen in the log and not a crash.
template <class Handle>
Handle* make() {
    static std::vector<std::unique_ptr<Handle>> made;
    made.push_back(std::make_unique<Handle>());
    made.back()->number = static_cast<int>(made.size());
    return made.back().get();
}

template <class Handle>
int number(const Handle* handle) {
    return handle ? handle->number : 0;
}

bool plays(const FMOD_CHANNEL* channel) { return channel && !channel->sound->released; }

} // namespace

extern "C" {

FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) {
    record(__func__);
    *system = &g_system;
    return FMOD_OK;
}
FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int maxchannels, FMOD_INITFLAGS flags, void* extra) {
    record(__func__, system == &g_system, maxchannels, flags, extra != nullptr);
    return system ? FMOD_OK : FMOD_ERR_INVALID_HANDLE;
}
FMOD_RESULT FMOD_System_CreateSound(FMOD_SYSTEM* system, const char* name, FMOD_MODE mode,
                                    FMOD_CREATESOUNDEXINFO* exinfo, FMOD_SOUND** sound) {
    record(__func__, system == &g_system, name, mode, exinfo != nullptr);
    *sound = nullptr;
    if (!system) return FMOD_ERR_INVALID_HANDLE;
    const auto& missing = recording::script().missing_files;
    if (std::find(missing.begin(), missing.end(), name) != missing.end()) return FMOD_ERR_FILE_NOTFOUND;
    *sound = make<FMOD_SOUND>();
    return FMOD_OK;
}
FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX index, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel) {
    record(__func__, system == &g_system, index, number(sound), paused);
    *channel = nullptr;
    if (!sound || sound->released) return FMOD_ERR_INVALID_HANDLE;
    *channel = make<FMOD_CHANNEL>();
    (*channel)->sound = sound;
    return FMOD_OK;
}
FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned* position, FMOD_TIMEUNIT unit) {
    record(__func__, number(channel), unit);
    if (!plays(channel)) return FMOD_ERR_INVALID_HANDLE;
    const std::vector<unsigned>& positions = recording::script().positions;
    if (positions.empty()) {
        *position = 0;
        return FMOD_OK;
    }
    *position = positions[std::min(g_next_position, positions.size() - 1)];
    ++g_next_position;
    return FMOD_OK;
}
FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned position, FMOD_TIMEUNIT unit) {
    record(__func__, number(channel), position, unit);
    return plays(channel) ? FMOD_OK : FMOD_ERR_INVALID_HANDLE;
}
FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) {
    record(__func__, number(sound));
    if (!sound || sound->released) return FMOD_ERR_INVALID_HANDLE;
    sound->released = true; // its channel stops with it
    return FMOD_OK;
}

} // extern "C"
