// Plays the file that its first argument names for as many seconds as the second one says, and prints each poll of the
// position at once: the time before, the time after, the position.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "hosts/desktop/sound/position_clock.h"
#include "tests/sound/listener.h"

int main(int, char** arguments) {
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, arguments[1]));
    const double end = desktop::steady_seconds() + std::atof(arguments[2]);
    while (desktop::steady_seconds() < end) {
        const Poll poll = ::poll(channel);
        std::printf("%.6f %.6f %u\n", poll.before, poll.after, poll.position);
        std::fflush(stdout);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}
