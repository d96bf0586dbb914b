// Both pieces of music in full, in real time, with the switch from one to the other as the show does it.
#include "sound/listener.h"
#include "sound/mp3_writer.h"
#include "sound/pulse_recorder.h"
#include "sound/pulse_server.h"
#include "sound/scratch_folder.h"
#include "sound/test_music.h"

#include "hosts/desktop/sound/steady_time.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

constexpr unsigned kSwitchMs = 74000;       // of the first file
constexpr unsigned kEndMs = 162000 - 74300; // of the second one

// The show's own file, or noise of the same length while there is none.
std::string music_file(const ScratchFolder& folder, const char* name, double seconds, std::uint32_t seed) {
    const std::string path = std::string(MUSIC_FOLDER) + "/" + name;
    if (std::filesystem::exists(path)) return path;
    const std::string made = folder.file(name);
    write_mp3(made, noise(seconds, seed));
    return made;
}

TEST(WholeMusic, PositionFollowsWhatIsAudibleFromTheStartToTheEndOfTheShow) {
    const ScratchFolder folder;
    const std::string first = music_file(folder, "zev.mp3", 80, 1);
    const std::string second = music_file(folder, "zev_voc.mp3", 90, 2);
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

    expect_polls_follow(recorder, decode(first), before);
    expect_polls_follow(recorder, decode(second), after);
}

} // namespace
