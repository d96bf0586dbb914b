// The whole show in real time, from the prompt to the end, on a virtual display and without a sound card:
// then the position runs on a steady clock, and how long everything takes can be said to the millisecond.
#include <gtest/gtest.h>

#include <fstream>
#include <vector>

#include "tests/support/process.h"
#include "tests/whole/display_server.h"

namespace {

struct Frame {
    double time;       // seconds of the steady clock
    unsigned position; // ms, as the show read it
};

// What plays one file: the time of the call, and the frames after it.
struct Play {
    double time;
    std::vector<Frame> frames;
};

std::vector<Play> read_log(const std::string& path) {
    std::vector<Play> plays;
    std::ifstream log(path);
    std::string kind;
    double time;
    while (log >> kind >> time) {
        if (kind == "play") {
            plays.push_back({time, {}});
            continue;
        }
        Frame frame{time, 0};
        log >> frame.position;
        if (!plays.empty()) plays.back().frames.push_back(frame);
    }
    return plays;
}

// The position follows real time from the play on, and never goes back.
void expect_in_time(const Play& play) {
    unsigned last = 0;
    for (const Frame& frame : play.frames) {
        ASSERT_NEAR(frame.position / 1000.0, frame.time - play.time, 0.010);
        ASSERT_GE(frame.position, last);
        last = frame.position;
    }
}

// The frame that reaches `position` is the play's last.
void expect_ends_at(const Play& play, unsigned position) {
    ASSERT_GE(play.frames.size(), 2u);
    EXPECT_GE(play.frames.back().position, position);
    EXPECT_LT(play.frames[play.frames.size() - 2].position, position);
}

} // namespace

TEST(WholeShow, PlaysFromThePromptToItsEnd) {
    const auto server = DisplayServer::virtual_screen(1024, 768);
    ASSERT_TRUE(server);
    const TestFolder folder;
    const auto log = folder / "frames";
    Process show(
        {{"sh", "-c", "echo e | \"$0\"", SKAV_LOGGED_PROGRAM},
         {{"DISPLAY", server->name()}, {"FRAME_LOG", log}, {"PULSE_SERVER", "unix:" + (folder / "nobody")}},
         DATA_DIRECTORY});
    EXPECT_EQ(show.wait(std::chrono::seconds(600)), 0);
    EXPECT_EQ(show.output(), "German or English Text [G/e]?: English screen text...\n\n");
    EXPECT_EQ(show.errors(), "");

    const std::vector<Play> plays = read_log(log);
    ASSERT_EQ(plays.size(), 2u) << "the instrumental and the vocal file";
    expect_in_time(plays[0]);
    expect_in_time(plays[1]);
    // The first frame at or after 74.0 s switches; the vocal file begins at 74.3 s and ends the show at 162
    // s.
    expect_ends_at(plays[0], 74000);
    expect_ends_at(plays[1], 162000 - 74300);
}
