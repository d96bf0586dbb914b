// A handle is a number that is given out once and looked up, never an address: one that is stale or made up
// is not found, and nothing is touched. No call ends a system, so systems live to the end of the program and
// are never destroyed: at exit() a player's threads may be busy or wait for a sound server that hangs.
#include "hosts/common/sound_calls.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <new>
#include <unordered_map>
#include <utility>

namespace {

using Handle = std::uintptr_t;

struct System {
    std::unique_ptr<common::Player> player; // null before FMOD_System_Init
    Handle channel = 0;                     // the one last played
};

struct OpenSound {
    System* system;
    std::unique_ptr<common::Sound> sound;
};

struct Registry {
    Handle last = 0;
    std::unordered_map<Handle, System> systems;
    std::unordered_map<Handle, OpenSound> sounds;
    std::unordered_map<Handle, Handle> channels; // each channel's sound; removed with the sound

    Handle next() { return last += 16; }
};

Registry& registry() {
    static auto* the_registry = new Registry;
    return *the_registry;
}

template <typename T>
Handle to_handle(T* pointer) {
    return reinterpret_cast<Handle>(pointer);
}

template <typename T>
T* to_pointer(Handle handle) {
    return reinterpret_cast<T*>(handle);
}

System* find(FMOD_SYSTEM* system) {
    const auto found = registry().systems.find(to_handle(system));
    return found == registry().systems.end() ? nullptr : &found->second;
}

OpenSound* find(FMOD_SOUND* sound) {
    const auto found = registry().sounds.find(to_handle(sound));
    return found == registry().sounds.end() ? nullptr : &found->second;
}

// Finds the sound that `channel` plays, if no other channel was played since.
FMOD_RESULT find(FMOD_CHANNEL* channel, OpenSound*& sound) {
    const auto found = registry().channels.find(to_handle(channel));
    if (found == registry().channels.end()) return FMOD_ERR_INVALID_HANDLE;
    sound = &registry().sounds.at(found->second);
    return sound->system->channel == to_handle(channel) ? FMOD_OK : FMOD_ERR_CHANNEL_STOLEN;
}

// Runs a call's work; what it throws (no memory, no thread) becomes the call's result.
template <typename Work>
FMOD_RESULT guarded(Work work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return FMOD_ERR_MEMORY;
    } catch (...) {
        return FMOD_ERR_INTERNAL;
    }
}

} // namespace

FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) {
    if (!system) return FMOD_ERR_INVALID_PARAM;
    *system = nullptr;
    return guarded([&] {
        const Handle handle = registry().next();
        registry().systems[handle];
        *system = to_pointer<FMOD_SYSTEM>(handle);
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int maxchannels, FMOD_INITFLAGS flags,
                             void* extradriverdata) {
    System* found = find(system);
    if (!found) return FMOD_ERR_INVALID_HANDLE;
    if (found->player) return FMOD_ERR_INITIALIZED;
    if (maxchannels < 1) return FMOD_ERR_INVALID_PARAM;
    if (maxchannels > 1 || flags != FMOD_INIT_NORMAL || extradriverdata) return FMOD_ERR_UNSUPPORTED;
    return guarded([&] {
        found->player = common::make_player();
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_System_CreateSound(FMOD_SYSTEM* system, const char* name_or_data, FMOD_MODE mode,
                                    FMOD_CREATESOUNDEXINFO* exinfo, FMOD_SOUND** sound) {
    if (!sound) return FMOD_ERR_INVALID_PARAM;
    *sound = nullptr;
    System* found = find(system);
    if (!found) return FMOD_ERR_INVALID_HANDLE;
    if (!found->player) return FMOD_ERR_UNINITIALIZED;
    if (!name_or_data) return FMOD_ERR_INVALID_PARAM;
    if (mode & ~(FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESTREAM) || exinfo) return FMOD_ERR_UNSUPPORTED;
    return guarded([&] {
        FMOD_RESULT error = FMOD_ERR_INTERNAL;
        std::unique_ptr<common::Sound> opened = found->player->open(name_or_data, error);
        if (!opened) return error;
        const Handle handle = registry().next();
        registry().sounds.emplace(handle, OpenSound{found, std::move(opened)});
        *sound = to_pointer<FMOD_SOUND>(handle);
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX channelid, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel) {
    if (!channel) return FMOD_ERR_INVALID_PARAM;
    *channel = nullptr;
    System* found = find(system);
    OpenSound* to_play = find(sound);
    if (!found || !to_play) return FMOD_ERR_INVALID_HANDLE;
    if (to_play->system != found) return FMOD_ERR_INVALID_PARAM;
    if (channelid > 0 || channelid < FMOD_CHANNEL_REUSE) return FMOD_ERR_INVALID_PARAM;
    if (paused) return FMOD_ERR_UNSUPPORTED;
    return guarded([&] {
        auto& channels = registry().channels;
        const Handle handle = registry().next();
        channels.emplace(handle, to_handle(sound));
        found->channel = handle;
        try {
            found->player->play(*to_play->sound, 0);
        } catch (...) { // then nothing plays, also not what played before
            channels.erase(handle);
            found->channel = 0;
            found->player->stop();
            throw;
        }
        *channel = to_pointer<FMOD_CHANNEL>(handle);
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT postype) {
    OpenSound* playing = nullptr;
    const FMOD_RESULT result = find(channel, playing);
    if (result != FMOD_OK) return result;
    if (!position) return FMOD_ERR_INVALID_PARAM;
    if (postype != FMOD_TIMEUNIT_MS) return FMOD_ERR_UNSUPPORTED;
    return guarded([&] {
        *position = std::min(playing->system->player->position_ms(), playing->sound->length_ms());
        if (common::position_listener) common::position_listener(*position);
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned int position, FMOD_TIMEUNIT postype) {
    OpenSound* playing = nullptr;
    const FMOD_RESULT result = find(channel, playing);
    if (result != FMOD_OK) return result;
    if (postype != FMOD_TIMEUNIT_MS) return FMOD_ERR_UNSUPPORTED;
    if (position > playing->sound->length_ms()) return FMOD_ERR_INVALID_POSITION;
    return guarded([&] { return playing->system->player->seek_ms(position); });
}

FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) {
    OpenSound* found = find(sound);
    if (!found) return FMOD_ERR_INVALID_HANDLE;
    return guarded([&] {
        System& system = *found->system;
        auto& channels = registry().channels;
        const auto playing = channels.find(system.channel);
        if (playing != channels.end() && playing->second == to_handle(sound)) system.player->stop();
        for (auto channel = channels.begin(); channel != channels.end();)
            channel = channel->second == to_handle(sound) ? channels.erase(channel) : std::next(channel);
        registry().sounds.erase(to_handle(sound));
        return FMOD_OK;
    });
}
