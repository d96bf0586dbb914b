// The whole show in real time, from the prompt to the end, on a virtual display and a sound device that is recorded.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <vector>

#include "tests/sound/listener.h"
#include "tests/sound/pulse_recorder.h"
#include "tests/sound/pulse_server.h"
#include "tests/support/mp3.h"
#include "tests/support/process.h"
#include "tests/whole/display_server.h"

namespace {

// What plays one file: the call, and the position that each frame after it read.
struct Play {
    double before, after; // seconds of the steady clock, around the call
    std::vector<Poll> frames;
};

std::vector<Play> read_log(const std::string& path) {
    std::vector<Play> plays;
    std::ifstream log(path);
    std::string kind;
    double before, after;
    while (log >> kind >> before >> after) {
        if (kind == "play") {
            plays.push_back({before, after, {}});
            continue;
        }
        Poll frame{before, after, 0};
        log >> frame.position;
        if (!plays.empty()) plays.back().frames.push_back(frame);
    }
    return plays;
}

// The frame that reaches `position` is the play's last.
void expect_ends_at(const Play& play, unsigned position) {
    ASSERT_GE(play.frames.size(), 2u);
    EXPECT_GE(play.frames.back().position, position);
    EXPECT_LT(play.frames[play.frames.size() - 2].position, position);
}

} // namespace

TEST(WholeShow, PlaysFromThePromptToItsEndInStepWithWhatIsHeard) {
    const auto display = DisplayServer::virtual_screen(1024, 768);
    ASSERT_TRUE(display);
    const PulseServer sound_server;
    PulseRecorder recorder;
    const TestFolder folder;
    const auto log = folder / "frames";
    const Stalls stalls(0.015, 6); // the show is not urgent: what happened to it lasts longer
    Process show({{"sh", "-c", "echo e | \"$0\"", SKAV_LOGGED_PROGRAM},
                  {{"DISPLAY", display->name()}, {"FRAME_LOG", log}},
                  DATA_DIRECTORY});
    EXPECT_EQ(show.wait(std::chrono::seconds(600)), 0);
    recorder.stop();
    EXPECT_EQ(show.output(), "German or English Text [G/e]?: English screen text...\n\n");
    EXPECT_EQ(show.errors(), "");

    const std::vector<Play> plays = read_log(log);
    ASSERT_EQ(plays.size(), 2u) << "the instrumental and the vocal file";
    expect_polls_follow(recorder, read_mp3(DATA_DIRECTORY "/zev.mp3"), plays[0].frames, stalls);
    expect_polls_follow(recorder, read_mp3(DATA_DIRECTORY "/zev_voc.mp3"), plays[1].frames, stalls);

    // The first frame at or after 74.0 s switches; the vocal file begins at 74.3 s and ends the show at 162 s.
    expect_ends_at(plays[0], 74000);
    expect_ends_at(plays[1], 162000 - 74300);

    // Played without a pause: real time is what the positions say, but for the device's start and half a second that
    // a busy machine may cost.
    const double played = (plays[0].frames.back().position + plays[1].frames.back().position) / 1000.0;
    const double passed = plays[1].frames.back().after - plays[0].before;
    EXPECT_GT(passed, played);
    EXPECT_LT(passed, played + 1.0);
}

// Skipped frames read the clock of frames, and those after it the music's position from the time asked for on. What is
// heard from there on is a test of the sound calls.
TEST(WholeShow, PlaysFromATimeInTheMiddleToItsEnd) {
    const auto display = DisplayServer::virtual_screen(1024, 768);
    ASSERT_TRUE(display);
    const TestFolder folder;
    hide_sound_devices(folder);
    const auto log = folder / "frames";
    Process show({{SKAV_LOGGED_PROGRAM, "--from", "2:35", "--language", "en"},
                  {{"DISPLAY", display->name()}, {"FRAME_LOG", log}},
                  DATA_DIRECTORY});
    EXPECT_EQ(show.wait(std::chrono::seconds(600)), 0);
    EXPECT_EQ(show.output(), "");
    EXPECT_EQ(show.errors(), "");

    const std::vector<Play> plays = read_log(log);
    ASSERT_EQ(plays.size(), 2u) << "the instrumental and the vocal file";
    constexpr unsigned kStart = 155'000 - 74'300; // ms of the vocal file
    const std::vector<Poll>& frames = plays[1].frames;
    const auto first = std::find_if(frames.begin(), frames.end(),
                                    [](const Poll& frame) { return frame.position >= kStart; });
    ASSERT_NE(first, frames.end());
    ASSERT_NE(first, frames.begin());
    const Poll& skipped = *(first - 1);
    EXPECT_EQ(skipped.position, kStart - 17) << "a sixtieth of a second earlier";
    EXPECT_LE(first->position, kStart + 1000 * (first->after - skipped.before));
    EXPECT_EQ(plays[0].frames.size() + static_cast<std::size_t>(first - frames.begin()), 4440u + 1 + 4841u)
        << "74 s and 80.7 s at 60 frames a second";
    expect_ends_at(plays[0], 74000);
    expect_ends_at(plays[1], 162000 - 74300);
}
