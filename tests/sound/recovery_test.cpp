// Sound servers that hang, end and come back, and a player that is stopped: the position goes on, and the sound comes
// back in time with it.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <thread>

#include "hosts/desktop/sound/position_clock.h"
#include "tests/sound/listener.h"
#include "tests/sound/pulse_recorder.h"
#include "tests/sound/pulse_server.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"
#include "tests/support/process.h"

namespace {

// A new device is in time so many seconds after it has become available.
constexpr double kBackWithin = 2;

class Recovery : public ::testing::Test {
protected:
    Recovery() { release_sounds(); }

    void play(double seconds) {
        write_mp3(path_, noise(seconds, 1));
        system_ = start_system();
        channel_ = play_sound(system_, open_sound(system_, path_));
    }

    // Polls, and expects that the position neither falls nor jumps between two polls. A poll that was itself late is
    // not held against it; and a stall of the machine may cost so much that the sound skips forward.
    void expect_smooth(double seconds) {
        const std::vector<Poll> polls = poll_for(channel_, seconds);
        for (std::size_t i = 1; i < polls.size(); ++i) {
            const double step = static_cast<double>(polls[i].position) - polls[i - 1].position;
            const double passed = (polls[i].after - polls[i - 1].before) * 1000;
            ASSERT_GE(step, 0);
            if (!stalls().calm(polls[i - 1].before, polls[i].after)) continue;
            ASSERT_LT(step, 4 * passed + 30) << "at " << polls[i].position;
        }
    }

    // Waits, as expect_smooth does, until a device that has come back at `back` has had the time that it may take.
    void expect_smooth_until_heard(double back) {
        for (int stall = 0; stall < 3; ++stall) {
            const double in_time = std::max(back, stalls().last()) + kBackWithin;
            if (in_time > desktop::steady_seconds()) expect_smooth(in_time - desktop::steady_seconds());
        }
    }

    // Expects that from here on what is heard is where the position says.
    void expect_heard_in_time(PulseRecorder& recorder) {
        const std::vector<Poll> polls = poll_for(channel_, 1.5);
        poll_for(channel_, 0.3, 0.01);
        recorder.stop();
        expect_polls_follow(recorder, read_mp3(path_), polls);
    }

    TestFolder folder_;
    std::string path_ = folder_ / "a.mp3";
    FMOD_SYSTEM* system_ = nullptr;
    FMOD_CHANNEL* channel_ = nullptr;
};

// A socket that takes connections and never answers.
class SilentServer {
public:
    explicit SilentServer(const std::string& path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
        EXPECT_EQ(bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        EXPECT_EQ(listen(descriptor_, 5), 0);
    }
    ~SilentServer() { close(descriptor_); }

private:
    int descriptor_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

TEST_F(Recovery, AServerThatNeverAnswersIsWaitedForTwoSecondsAtMostAndHoldsUpNoCall) {
    write_mp3(path_, noise(8, 1));
    hide_sound_devices(folder_);
    const SilentServer server(folder_ / "server");
    stalls();
    const double start = desktop::steady_seconds();
    ASSERT_EQ(FMOD_System_Create(&system_), FMOD_OK);
    ASSERT_EQ(FMOD_System_Init(system_, 1, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
    channel_ = play_sound(system_, open_sound(system_, path_));
    const Poll first = poll(channel_);
    EXPECT_EQ(first.position, 0u);
    EXPECT_LT(first.after - start, 1);
    const std::vector<Poll> polls = poll_for(channel_, 5);
    for (const Poll& poll : polls) ASSERT_LE(poll.position, (poll.after - start) * 1000);
    if (!stalls().calm(start, polls.back().after)) GTEST_SKIP() << "the machine stalled";
    for (const Poll& poll : polls) ASSERT_GE(poll.position + 60, (poll.before - start - 2) * 1000);
}

TEST_F(Recovery, AServerThatHangsAtTheStartIsTakenOverWhenItAnswers) {
    PulseServer server;
    PulseRecorder recorder;
    server.freeze();
    play(20);
    expect_smooth(4);
    server.thaw();
    expect_smooth_until_heard(desktop::steady_seconds());
    expect_heard_in_time(recorder);
}

TEST_F(Recovery, AServerThatHangsWhilePlayingIsHeardAgain) {
    PulseServer server;
    PulseRecorder recorder;
    play(24);
    expect_smooth(2);
    server.freeze();
    expect_smooth(3);
    server.thaw();
    expect_smooth_until_heard(desktop::steady_seconds());
    expect_heard_in_time(recorder);
}

TEST_F(Recovery, AServerThatEndsAndIsStartedAgainIsHeardAgain) {
    PulseServer server;
    play(24);
    expect_smooth(2);
    server.kill();
    expect_smooth(2);
    server.restart();
    const double back = desktop::steady_seconds();
    PulseRecorder recorder;
    expect_smooth_until_heard(back);
    expect_heard_in_time(recorder);
}

TEST_F(Recovery, ASuspendedDeviceIsHeardAgain) {
    PulseServer server;
    play(26);
    expect_smooth(2);
    server.suspend(true);
    expect_smooth(5);
    server.suspend(false);
    const double back = desktop::steady_seconds();
    PulseRecorder recorder; // one of a suspended device does not tell its time
    expect_smooth_until_heard(back);
    expect_heard_in_time(recorder);
}

TEST_F(Recovery, ADeviceThatIsRemovedAndAddedIsHeardAgain) {
    PulseServer server;
    play(26);
    expect_smooth(2);
    server.remove_device();
    expect_smooth(2);
    server.add_device();
    const double back = desktop::steady_seconds();
    PulseRecorder recorder;
    expect_smooth_until_heard(back);
    expect_heard_in_time(recorder);
}

// A player of its own, which is stopped and continued.
class OwnPlayer : public Recovery {
protected:
    static std::vector<Poll> between(const std::vector<Poll>& polls, double begin, double end) {
        std::vector<Poll> part;
        for (const Poll& poll : polls)
            if (poll.before >= begin && poll.after < end) part.push_back(poll);
        return part;
    }
};

class Stopped : public OwnPlayer, public ::testing::WithParamInterface<double> {};

TEST_P(Stopped, PlayerGoesOnWhereItWasAndIsHeardAgain) {
    write_mp3(path_, noise(40, 1));
    PulseServer server;
    PulseRecorder recorder;
    stalls();
    Process player({{SOUND_PLAYER, path_, "100"}});
    const auto played = [&player] { return polls_of(player.output()); };
    ASSERT_TRUE(eventually([&] { return !played().empty() && played().back().position > 3000; }));
    player.send(SIGSTOP);
    const double stopped = desktop::steady_seconds();
    std::this_thread::sleep_for(std::chrono::duration<double>(GetParam()));
    const double continued = desktop::steady_seconds();
    player.send(SIGCONT);
    const auto in_time = [&] { return std::max(continued, stalls().last()) + kBackWithin; };
    ASSERT_TRUE(eventually(
        [&] { return played().back().after > in_time() + 1.5 || played().back().position > 38000; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(300)); // the last is recorded
    player.send(SIGKILL);
    recorder.stop();

    const std::vector<Poll> polls = played();
    const std::vector<Poll> before = between(polls, 0, stopped);
    const std::vector<Poll> after = between(polls, continued, 1e300);
    ASSERT_GT(before.size(), 100u);
    ASSERT_GT(after.size(), 100u);
    for (std::size_t i = 1; i < polls.size(); ++i) ASSERT_GE(polls[i].position, polls[i - 1].position);
    const double ran = stopped - before.back().before + after.front().after - continued;
    EXPECT_LT(after.front().position, before.back().position + 400 + ran * 1000) << "no jump";
    const std::vector<Poll> heard = between(polls, in_time(), polls.back().before - 0.3);
    if (heard.empty()) GTEST_SKIP() << "the machine stalled all the time";
    expect_polls_follow(recorder, read_mp3(path_), heard);
}

// A busy machine: the player runs for a tenth of a second out of four.
TEST_F(OwnPlayer, ThatHardlyRunsIsAtMostHalfASecondLate) {
    write_mp3(path_, noise(20, 1));
    const PulseServer server;
    const PulseRecorder recorder; // has the server work in small pieces
    stalls();
    Process player({{SOUND_PLAYER, path_, "14"}});
    std::this_thread::sleep_for(std::chrono::seconds(2));
    for (int i = 0; i < 25; ++i) {
        player.send(SIGSTOP);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        player.send(SIGCONT);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    ASSERT_EQ(player.wait(std::chrono::seconds(20)), 0);

    const std::vector<Poll> polls = polls_of(player.output());
    ASSERT_GT(polls.size(), 100u);
    const auto first =
        std::find_if(polls.begin(), polls.end(), [](const Poll& poll) { return poll.position > 100; });
    const double start = first->before - first->position / 1000.0;
    const auto late = [start](const Poll& poll) { return poll.before - start - poll.position / 1000.0; };
    for (std::size_t i = 1; i < polls.size(); ++i) ASSERT_GE(polls[i].position, polls[i - 1].position);
    for (const Poll& poll : polls) {
        if (!stalls().calm(poll.before, poll.after)) continue;
        EXPECT_LT(late(poll), 0.7) << poll.position;
        if (&poll == &polls.back()) {
            EXPECT_LT(late(poll), 0.5);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(For, Stopped, ::testing::Values(0.4, 1.5, 4.0));

} // namespace
