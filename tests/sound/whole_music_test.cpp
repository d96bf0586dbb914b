// Both pieces of music in full, in real time, with the switch from one to the other as the show does it.
#include <gtest/gtest.h>

#include "tests/sound/listener.h"
#include "tests/sound/pulse_recorder.h"
#include "tests/sound/pulse_server.h"
#include "tests/sound/test_music.h"
#include "tests/support/mp3.h"

namespace {

constexpr unsigned kSwitchMs = 74000;       // of the first file
constexpr unsigned kEndMs = 162000 - 74300; // of the second one

TEST(WholeMusic, PositionFollowsWhatIsAudibleFromTheStartToTheEndOfTheShow) {
    const std::string first = MUSIC_FOLDER "/zev.mp3";
    const std::string second = MUSIC_FOLDER "/zev_voc.mp3";
    const PulseServer server;
    PulseRecorder recorder;
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system, first);
    const std::vector<Poll> before = poll_for(play_sound(system, sound), 80, 0.002, kSwitchMs);
    EXPECT_GE(before.back().position, kSwitchMs);

    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, second));
    const std::vector<Poll> after = poll_for(channel, 95, 0.002, kEndMs);
    EXPECT_EQ(after.front().position, 0u);
    EXPECT_GE(after.back().position, kEndMs);
    poll_for(channel, 0.3, 0.01);
    recorder.stop();

    expect_polls_follow(recorder, read_mp3(first), before);
    expect_polls_follow(recorder, read_mp3(second), after);
}

} // namespace
