// No device, and devices that are lost: the position goes on, and the program ends in time.
#include <gtest/gtest.h>

#include "hosts/desktop/sound/position_clock.h"
#include "tests/sound/listener.h"
#include "tests/sound/pulse_recorder.h"
#include "tests/sound/pulse_server.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"
#include "tests/support/process.h"

namespace {

class DeviceTest : public ::testing::Test {
protected:
    std::string make_file(double seconds) {
        write_mp3(path_, noise(seconds, 1));
        return path_;
    }

    TestFolder folder_;
    std::string path_ = folder_ / "a.mp3";
};

// Expects that the polls keep step with real time from the first one on. That one may have been `late_ms` behind, which
// is made up for, as is what a stall of the machine costs.
void expect_steady(const std::vector<Poll>& polls, double late_ms) {
    constexpr double kTolerance = 2; // ms
    constexpr double kMadeUp = 3;    // seconds: a stall's cost is down to e to the minus sixth
    const Poll& first = polls.front();
    for (std::size_t i = 1; i < polls.size(); ++i) {
        EXPECT_GE(polls[i].position, polls[i - 1].position);
        if (!stalls().calm(first.before - kMadeUp, polls[i].after)) continue;
        const double least = first.position + (polls[i].before - first.after) * 1000;
        const double most = first.position + (polls[i].after - first.before) * 1000;
        EXPECT_GE(polls[i].position, least - kTolerance - late_ms);
        EXPECT_LE(polls[i].position, most + kTolerance + late_ms);
        const bool apart = polls[i].before - polls[i - 1].after >= 0.002;
        if (apart && late_ms == 0) {
            EXPECT_GT(polls[i].position, polls[i - 1].position);
        }
    }
}

TEST_F(DeviceTest, WithoutOneThePositionKeepsStepWithRealTimeUpToTheLength) {
    hide_sound_devices(folder_);
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, make_file(3)));
    poll_for(channel, 30, 0.001, 1);
    expect_steady(poll_for(channel, 2), 0);
    poll_for(channel, 30, 0.01, 3000);
    EXPECT_EQ(poll(channel).position, 3000u);
}

TEST_F(DeviceTest, WithoutOneASoundStartsAtOnceAndCanBeMovedAndReplaced) {
    hide_sound_devices(folder_);
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system, make_file(5));
    const double played = desktop::steady_seconds();
    FMOD_CHANNEL* channel = play_sound(system, sound);
    const unsigned heard = poll_for(channel, 0.5).back().position;
    const double moved = desktop::steady_seconds();
    ASSERT_EQ(FMOD_Channel_SetPosition(channel, 4000, FMOD_TIMEUNIT_MS), FMOD_OK);
    const Poll after = poll(channel);
    EXPECT_GE(after.position, 4000u);
    EXPECT_LE(after.position, 4002 + (after.after - moved) * 1000);
    EXPECT_EQ(FMOD_Channel_SetPosition(channel, 5001, FMOD_TIMEUNIT_MS), FMOD_ERR_INVALID_POSITION);
    EXPECT_GE(poll(channel).position, 4000u);
    ASSERT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
    channel = play_sound(system, open_sound(system, path_));
    const Poll first = poll(channel);
    // What is missing of real time is made up for, over all that was played.
    const double late_ms = (first.after - played) * 1000 - heard;
    EXPECT_LE(first.position, 2 + late_ms);
    poll_for(channel, 30, 0.001, 1);
    expect_steady(poll_for(channel, 1), late_ms);
}

TEST_F(DeviceTest, ThatDiesWhilePlayingLetsThePositionGoOn) {
    make_file(6);
    PulseServer server;
    const PulseRecorder recorder;
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, path_));
    std::vector<Poll> polls = poll_for(channel, 2);
    EXPECT_GT(polls.back().position, 1000u);
    server.kill();
    const std::vector<Poll> after = poll_for(channel, 2);
    EXPECT_GE(after.front().position, polls.back().position);
    expect_steady(after, 50); // whatever the device still held was lost
    poll_for(channel, 30, 0.01, 6000);
    EXPECT_EQ(poll(channel).position, 6000u);
}

TEST_F(DeviceTest, ThatHangsWhilePlayingLetsThePositionGoOnWithinASecond) {
    make_file(10);
    PulseServer server;
    const PulseRecorder recorder;
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, path_));
    std::vector<Poll> polls = poll_for(channel, 2);
    server.freeze();
    // Up to a second is lost until the loss is noticed, and made up for to 1/e in each half second after it: here to
    // less than half a millisecond.
    polls = poll_for(channel, 5.5);
    for (std::size_t i = 1; i < polls.size(); ++i) ASSERT_GE(polls[i].position, polls[i - 1].position);
    expect_steady({polls.front(), polls.back()}, 50); // the time that the loss took has been made up for
    expect_steady(poll_for(channel, 1), 0);
}

// A program that plays and then just ends.
class ExitTest : public DeviceTest {
protected:
    void expect_quick_and_quiet_exit() {
        const Finished player = run_program({{SOUND_PLAYER, make_file(5), "0.5"}});
        const double ended = desktop::steady_seconds();
        EXPECT_EQ(player.status, 0);
        EXPECT_EQ(player.err, "");
        const std::vector<Poll> polls = polls_of(player.out);
        ASSERT_FALSE(polls.empty());
        EXPECT_LT(ended - polls.back().after, 1);
    }
};

TEST_F(ExitTest, WhilePlayingIsQuickCleanAndQuiet) {
    const PulseServer server;
    expect_quick_and_quiet_exit();
}

TEST_F(ExitTest, WithoutADeviceIsQuickCleanAndQuiet) {
    hide_sound_devices(folder_);
    expect_quick_and_quiet_exit();
}

} // namespace
