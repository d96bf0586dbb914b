// What the FMOD Ex calls play and tell, against a recording of the device.
#include "sound/listener.h"
#include "sound/mp3_writer.h"
#include "sound/pulse_recorder.h"
#include "sound/pulse_server.h"
#include "sound/scratch_folder.h"
#include "sound/test_music.h"

#include "hosts/desktop/sound/steady_time.h"

#include <gtest/gtest.h>

namespace {

class Playback : public ::testing::Test {
protected:
    std::string make_file(const char* name, double seconds, std::uint32_t seed) {
        const std::string path = folder_.file(name);
        write_mp3(path, noise(seconds, seed));
        return path;
    }

    ScratchFolder folder_;
    PulseServer server_;
};

TEST_F(Playback, PositionFollowsWhatIsAudible) {
    const std::string path = make_file("a.mp3", 12, 1);
    PulseRecorder recorder;
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, path));
    const std::vector<Poll> polls = poll_for(channel, 8);
    poll_for(channel, 0.3);
    recorder.stop();
    expect_polls_follow(recorder, decode(path), polls);
}

} // namespace
