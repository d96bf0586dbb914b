// The FMOD Ex calls as the show makes them: handles and arguments are checked here, the work is Player's.
//
// A handle is a number that is given out once and looked up, never an address: one that is stale or made up
// is not found, and nothing is touched. Systems live to the end of the program, for no call ends one. At
// exit() their threads may be in the middle of something, so nothing here is ever destroyed: no thread finds
// anything gone, and nobody waits for a sound server that hangs.
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>

#include "hosts/desktop/sound/player.h"
#include "hosts/desktop/sound/streamed_sound.h"
#include "show/fmod_ex.h"

namespace {

using Handle = std::uintptr_t;

struct System {
    std::unique_ptr<sound::Player> player; // null before FMOD_System_Init
    Handle channel = 0;                    // the one that plays
};

struct Sound {
    System* system;
    std::unique_ptr<sound::StreamedSound> stream;
};

struct Registry {
    Handle last = 0;
    std::unordered_map<Handle, System> systems;
    std::unordered_map<Handle, Sound> sounds;
    std::unordered_map<Handle, Handle> channels; // each to its sound; gone with the sound

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

Sound* find(FMOD_SOUND* sound) {
    const auto found = registry().sounds.find(to_handle(sound));
    return found == registry().sounds.end() ? nullptr : &found->second;
}

// Finds the player whose current channel `channel` is.
FMOD_RESULT find(FMOD_CHANNEL* channel, sound::Player** player) {
    const auto found = registry().channels.find(to_handle(channel));
    if (found == registry().channels.end()) return FMOD_ERR_INVALID_HANDLE;
    const System& system = *registry().sounds.at(found->second).system;
    if (system.channel != to_handle(channel)) return FMOD_ERR_CHANNEL_STOLEN;
    *player = system.player.get();
    return FMOD_OK;
}

FMOD_RESULT to_result(Mp3Error error) {
    switch (error) {
    case Mp3Error::none:
        return FMOD_OK;
    case Mp3Error::not_found:
        return FMOD_ERR_FILE_NOTFOUND;
    case Mp3Error::unreadable:
        return FMOD_ERR_FILE_BAD;
    case Mp3Error::not_mp3:
        return FMOD_ERR_FORMAT;
    case Mp3Error::no_memory:
        return FMOD_ERR_MEMORY;
    }
    return FMOD_ERR_INTERNAL;
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
        found->player = std::make_unique<sound::Player>();
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
        Mp3Error error = Mp3Error::none;
        std::unique_ptr<sound::StreamedSound> stream = sound::StreamedSound::open(name_or_data, error);
        if (!stream) return to_result(error);
        const Handle handle = registry().next();
        registry().sounds.emplace(handle, Sound{found, std::move(stream)});
        *sound = to_pointer<FMOD_SOUND>(handle);
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX channelid, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel) {
    if (!channel) return FMOD_ERR_INVALID_PARAM;
    *channel = nullptr;
    System* found = find(system);
    Sound* found_sound = find(sound);
    if (!found || !found_sound) return FMOD_ERR_INVALID_HANDLE;
    if (found_sound->system != found) return FMOD_ERR_INVALID_PARAM;
    if (channelid > 0 || channelid < FMOD_CHANNEL_REUSE) return FMOD_ERR_INVALID_PARAM;
    if (paused) return FMOD_ERR_UNSUPPORTED;
    return guarded([&] {
        found->channel = 0;
        found->player->play(*found_sound->stream);
        const Handle handle = registry().next();
        registry().channels[handle] = to_handle(sound);
        found->channel = handle;
        *channel = to_pointer<FMOD_CHANNEL>(handle);
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT postype) {
    sound::Player* player = nullptr;
    const FMOD_RESULT result = find(channel, &player);
    if (result != FMOD_OK) return result;
    if (!position) return FMOD_ERR_INVALID_PARAM;
    if (postype != FMOD_TIMEUNIT_MS) return FMOD_ERR_UNSUPPORTED;
    *position = player->position_ms();
    return FMOD_OK;
}

FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned int position, FMOD_TIMEUNIT postype) {
    sound::Player* player = nullptr;
    const FMOD_RESULT result = find(channel, &player);
    if (result != FMOD_OK) return result;
    if (postype != FMOD_TIMEUNIT_MS) return FMOD_ERR_UNSUPPORTED;
    return guarded([&] { return player->seek_ms(position) ? FMOD_OK : FMOD_ERR_INVALID_POSITION; });
}

FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) {
    Sound* found = find(sound);
    if (!found) return FMOD_ERR_INVALID_HANDLE;
    return guarded([&] {
        Registry& all = registry();
        if (found->system->player->playing() == found->stream.get()) found->system->player->stop();
        for (auto channel = all.channels.begin(); channel != all.channels.end();)
            channel = channel->second == to_handle(sound) ? all.channels.erase(channel) : std::next(channel);
        all.sounds.erase(to_handle(sound));
        return FMOD_OK;
    });
}
