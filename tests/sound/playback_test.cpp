// What the FMOD Ex calls play and tell, against a recording of the device.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include "hosts/common/skip_ahead.h"
#include "hosts/desktop/sound/position_clock.h"
#include "tests/sound/listener.h"
#include "tests/sound/pulse_recorder.h"
#include "tests/sound/pulse_server.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"

namespace {

class Playback : public ::testing::Test {
protected:
    std::string make_file(const char* name, double seconds, std::uint32_t seed) {
        const std::string path = folder_ / name;
        write_mp3(path, noise(seconds, seed));
        return path;
    }

    // Lets the recording catch up with the last polls, and ends it.
    void end_recording(FMOD_CHANNEL* channel) {
        poll_for(channel, 0.3, 0.01);
        recorder_.stop();
    }

    // The time at which the first piece of `music` was audible, or 0.
    double first_heard(const std::vector<float>& music, double from) const {
        constexpr std::int64_t kPiece = 256;
        const std::int64_t begin = recorder_.frame_at(from);
        for (std::int64_t at = begin; at + kPiece < recorder_.frames(); at += kPiece) {
            const std::int64_t found =
                find_piece(music, recorder_.samples().data() + 2 * at, kPiece, 0, 44100);
            if (found >= 0) return recorder_.time_of(at - found);
        }
        return 0;
    }

    TestFolder folder_;
    PulseServer server_;
    PulseRecorder recorder_;
};

TEST_F(Playback, PositionFollowsWhatIsAudible) {
    const std::string path = make_file("a.mp3", 12, 1);
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, path));
    const std::vector<Poll> polls = poll_for(channel, 8);
    end_recording(channel);
    expect_polls_follow(recorder_, read_mp3(path), polls);
}

TEST_F(Playback, PositionFollowsHoweverRarelyItIsPolled) {
    const std::string path = make_file("a.mp3", 8, 1);
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, path));
    std::vector<Poll> polls;
    for (double interval : {0.3, 0.017, 0.1, 0.0005}) {
        const std::vector<Poll> more = poll_for(channel, 1, interval);
        polls.insert(polls.end(), more.begin(), more.end());
    }
    end_recording(channel);
    expect_polls_follow(recorder_, read_mp3(path), polls);
}

TEST_F(Playback, AnotherSoundIsHeardWithinSixtyMillisecondsAndItsPositionStartsAtZero) {
    const std::string first = make_file("a.mp3", 5, 1);
    const std::string second = make_file("b.mp3", 6, 2);
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system, first);
    const std::vector<Poll> before = poll_for(play_sound(system, sound), 2);

    const double call = desktop::steady_seconds();
    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, second));
    const std::vector<Poll> after = poll_for(channel, 2);
    end_recording(channel);

    EXPECT_EQ(after.front().position, 0u);
    const double heard = first_heard(read_mp3(second), call);
    ASSERT_GT(heard, 0);
    if (stalls().calm(call, heard)) {
        EXPECT_LT(heard - call, 0.060);
    }
    expect_polls_follow(recorder_, read_mp3(first), before);
    expect_polls_follow(recorder_, read_mp3(second), after);
}

TEST_F(Playback, ReleasingTheSoundStopsItAtOnce) {
    const std::string path = make_file("a.mp3", 5, 1);
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system, path);
    poll_for(play_sound(system, sound), 1);
    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
    const double released = desktop::steady_seconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    recorder_.stop();
    if (!stalls().calm(released, released + 0.1)) GTEST_SKIP() << "the machine stalled";
    const auto silent_from = static_cast<std::size_t>(2 * recorder_.frame_at(released + 0.06));
    const std::vector<float>& samples = recorder_.samples();
    ASSERT_LT(silent_from, samples.size());
    EXPECT_TRUE(std::all_of(samples.begin() + static_cast<std::ptrdiff_t>(silent_from), samples.end(),
                            [](float sample) { return std::fabs(sample) < 0.001f; }));
    EXPECT_TRUE(std::any_of(samples.begin(), samples.end(), [](float sample) { return sample > 0.1f; }));
}

TEST_F(Playback, GoesOnFromThePositionThatIsSet) {
    const std::string path = make_file("a.mp3", 20, 1);
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, path));
    poll_for(channel, 1);
    ASSERT_EQ(FMOD_Channel_SetPosition(channel, 15000, FMOD_TIMEUNIT_MS), FMOD_OK);
    const std::vector<Poll> forward = poll_for(channel, 1.5);
    ASSERT_EQ(FMOD_Channel_SetPosition(channel, 2000, FMOD_TIMEUNIT_MS), FMOD_OK);
    const std::vector<Poll> back = poll_for(channel, 1.5);
    EXPECT_EQ(forward.front().position, 15000u);
    EXPECT_EQ(back.front().position, 2000u);
    EXPECT_EQ(FMOD_Channel_SetPosition(channel, 20001, FMOD_TIMEUNIT_MS), FMOD_ERR_INVALID_POSITION);
    EXPECT_LT(poll(channel).position, 10000u);
    EXPECT_EQ(FMOD_Channel_SetPosition(channel, 20000, FMOD_TIMEUNIT_MS), FMOD_OK);
    EXPECT_EQ(poll(channel).position, 20000u);
    end_recording(channel);
    expect_polls_follow(recorder_, read_mp3(path), forward);
    expect_polls_follow(recorder_, read_mp3(path), back);
}

// As a show that starts in the middle: its frames before that run on a clock that counts them.
TEST_F(Playback, IsHeardFromWhereAShowStartsInTheMiddle) {
    const std::string path = make_file("a.mp3", 12, 1);
    common::skip_to(8 * common::kSecond);
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, path));
    unsigned last_skipped = 0;
    double start = 0; // a time before the music's start
    for (;;) {
        start = desktop::steady_seconds();
        common::begin_frame();
        if (!common::frame_is_skipped()) break;
        last_skipped = poll(channel).position;
        common::end_frame();
    }
    const std::vector<Poll> polls = poll_for(channel, 2);
    end_recording(channel);
    EXPECT_EQ(last_skipped, 7983u) << "a sixtieth of a second earlier";
    EXPECT_GE(polls.front().position, 8000u);
    EXPECT_LE(polls.front().position, 8000 + 1000 * (polls.front().after - start));
    expect_polls_follow(recorder_, read_mp3(path), polls);
}

TEST_F(Playback, StandsAtTheLengthAfterTheEndAndCanBePlayedAgain) {
    const std::string path = make_file("a.mp3", 1.5, 1);
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system, path);
    FMOD_CHANNEL* channel = play_sound(system, sound);
    poll_for(channel, 30, 0.01, 1500);
    poll_for(channel, 0.3, 0.01);
    EXPECT_EQ(poll(channel).position, 1500u);
    channel = play_sound(system, sound);
    const std::vector<Poll> polls = poll_for(channel, 1);
    EXPECT_EQ(polls.front().position, 0u);
    end_recording(channel);
    expect_polls_follow(recorder_, read_mp3(path), polls);
}

TEST_F(Playback, FollowsAFileOfAnotherRate) {
    const std::string path = folder_ / "a.mp3";
    std::vector<float> mono = noise(3, 1); // both sides one after the other: 6 s of one side
    write_mp3(path, mono, {48000, 1, 128, true});
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system, path));
    const std::vector<Poll> polls = poll_for(channel, 3);
    end_recording(channel);
    expect_polls_follow(recorder_, read_mp3(path), polls);
}

} // namespace
