// Linked around the sound calls of a whole `skav` (--wrap): every play and every position that the show reads
// goes into the file that FRAME_LOG names, with the time of the system's steady clock before and after the call.
// A line is
//
//     play SECONDS SECONDS
//     frame SECONDS SECONDS MILLISECONDS
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "show/fmod_ex.h"

extern "C" {

FMOD_RESULT __real_FMOD_System_PlaySound(FMOD_SYSTEM*, FMOD_CHANNELINDEX, FMOD_SOUND*, FMOD_BOOL,
                                         FMOD_CHANNEL**);
FMOD_RESULT __wrap_FMOD_System_PlaySound(FMOD_SYSTEM*, FMOD_CHANNELINDEX, FMOD_SOUND*, FMOD_BOOL,
                                         FMOD_CHANNEL**);
FMOD_RESULT __real_FMOD_Channel_GetPosition(FMOD_CHANNEL*, unsigned*, FMOD_TIMEUNIT);
FMOD_RESULT __wrap_FMOD_Channel_GetPosition(FMOD_CHANNEL*, unsigned*, FMOD_TIMEUNIT);
}

namespace {

std::FILE* log_file() {
    static std::FILE* file = [] {
        std::FILE* opened = std::fopen(std::getenv("FRAME_LOG"), "w");
        std::setvbuf(opened, nullptr, _IOLBF, 0); // whole lines, for who reads along
        return opened;
    }();
    return file;
}

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

FMOD_RESULT __wrap_FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX index, FMOD_SOUND* sound,
                                         FMOD_BOOL paused, FMOD_CHANNEL** channel) {
    const double before = now();
    const FMOD_RESULT result = __real_FMOD_System_PlaySound(system, index, sound, paused, channel);
    std::fprintf(log_file(), "play %.6f %.6f\n", before, now());
    return result;
}

FMOD_RESULT __wrap_FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned* position, FMOD_TIMEUNIT unit) {
    const double before = now();
    const FMOD_RESULT result = __real_FMOD_Channel_GetPosition(channel, position, unit);
    std::fprintf(log_file(), "frame %.6f %.6f %u\n", before, now(), *position);
    return result;
}
