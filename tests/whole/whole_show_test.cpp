// The whole show in real time, from the prompt to the end, on a virtual display and without a sound card:
// then the position runs on a steady clock, and how long everything takes can be said to the millisecond.
#include <gtest/gtest.h>

#include <fstream>
#include <vector>

#include "tests/support/process.h"
#include "tests/whole/display_server.h"

namespace {

// When a call was made: seconds of the steady clock before it and after it.
struct CallTime {
    double before, after;
};

struct Frame {
    CallTime time;
    unsigned position; // ms, as the show read it
};

// What plays one file: the call, and the frames after it.
struct Play {
    CallTime time;
    std::vector<Frame> frames;
};

std::vector<Play> read_log(const std::string& path) {
    std::vector<Play> plays;
    std::ifstream log(path);
    std::string kind;
    CallTime time;
    while (log >> kind >> time.before >> time.after) {
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

// The position follows real time from the play on, and never goes back. The scheduler may stop the show anywhere in a
// call, so each position is compared with the least and the most that has passed since the play.
void expect_in_time(const Play& play) {
    constexpr double kTolerance = 0.010;
    unsigned last = 0;
    for (const Frame& frame : play.frames) {
        const double position = frame.position / 1000.0;
        ASSERT_GE(position, frame.time.before - play.time.after - kTolerance);
        ASSERT_LE(position, frame.time.after - play.time.before + kTolerance);
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
    // The first frame at or after 74.0 s switches; the vocal file begins at 74.3 s and ends the show at 162 s.
    expect_ends_at(plays[0], 74000);
    expect_ends_at(plays[1], 162000 - 74300);
}
