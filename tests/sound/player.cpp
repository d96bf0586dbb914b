// Plays the file that its first argument names for as many seconds as the second one says, and prints each poll of the
// position: the time before, the time after, the position.
#include <cstdio>
#include <cstdlib>

#include "tests/sound/listener.h"

int main(int, char** arguments) {
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, arguments[1]));
    for (const Poll& poll : poll_for(channel, std::atof(arguments[2])))
        std::printf("%.6f %.6f %u\n", poll.before, poll.after, poll.position);
}
