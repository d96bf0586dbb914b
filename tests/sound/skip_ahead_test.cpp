// A show that starts in the middle, as its music and its clock see it.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "hosts/common/frame_clock.h"
#include "hosts/common/skip_ahead.h"

namespace {

bool g_fails = false;
std::vector<std::string> g_played; // "a from 12 ms", "stop"
unsigned g_position = 0;           // of what plays

class File : public common::Sound {
public:
    explicit File(std::string name) : Sound(100'000), name_(std::move(name)) {}
    const std::string& name() const { return name_; }

private:
    std::string name_;
};

class LoggingPlayer : public common::Player {
public:
    std::unique_ptr<common::Sound> open(const char* name, FMOD_RESULT&) override {
        return std::make_unique<File>(name);
    }
    void play(common::Sound& sound, unsigned from_ms) override {
        if (g_fails) throw std::runtime_error("no thread");
        g_played.push_back(static_cast<File&>(sound).name() + " from " + std::to_string(from_ms) + " ms");
        g_position = from_ms;
    }
    void stop() override { g_played.push_back("stop"); }
    unsigned position_ms() override { return g_position; }
    FMOD_RESULT seek_ms(unsigned position) override {
        g_position = position;
        return FMOD_OK;
    }
};

} // namespace

std::unique_ptr<common::Player> common::make_player() {
    return skipping_player(std::make_unique<LoggingPlayer>());
}

namespace {

// A show of one piece of music and another at 74 s, which the test takes from frame to frame.
class SkipAhead : public testing::Test {
protected:
    ~SkipAhead() override { common::skip_to(0); }

    // Goes through warm-up and loading, in the last call of which the music starts.
    void load(common::ShowTime start) {
        common::skip_to(start);
        g_played.clear();
        g_fails = false;
        FMOD_System_Create(&system_);
        FMOD_System_Init(system_, 1, FMOD_INIT_NORMAL, nullptr);
        common::begin_frame(); // a frame of the warm-up
        EXPECT_FALSE(common::frame_is_skipped());
        common::end_frame();
        common::begin_frame(); // the loading call
        open_and_play("first");
        EXPECT_FALSE(common::frame_is_skipped());
        common::end_frame();
    }

    // One frame of the show, which switches the music at 74 s. Whether it was skipped.
    bool frame() {
        common::begin_frame();
        FMOD_Channel_GetPosition(channel_, &position_, FMOD_TIMEUNIT_MS);
        const bool skipped = common::frame_is_skipped();
        if (!second_ && position_ >= 74'000) {
            FMOD_Sound_Release(sound_);
            open_and_play("second");
            second_ = true;
        }
        common::end_frame();
        return skipped;
    }

    // The positions that the skipped frames read. The first frame that is not skipped has been run, too.
    std::vector<unsigned> skip() {
        std::vector<unsigned> positions;
        while (frame()) positions.push_back(position_);
        return positions;
    }

    void open_and_play(const char* name) {
        FMOD_System_CreateSound(system_, name, FMOD_CREATESTREAM, nullptr, &sound_);
        FMOD_System_PlaySound(system_, FMOD_CHANNEL_FREE, sound_, 0, &channel_);
    }

    FMOD_SYSTEM* system_ = nullptr;
    FMOD_SOUND* sound_ = nullptr;
    FMOD_CHANNEL* channel_ = nullptr;
    bool second_ = false;
    unsigned position_ = 0;
};

TEST_F(SkipAhead, ToTheBeginningSkipsNothing) {
    load(0);
    EXPECT_FALSE(frame());
    EXPECT_EQ(g_played, std::vector<std::string>{"first from 0 ms"});
}

// The positions of an export at 60 frames a second (frame_clock.h), as far as there.
TEST_F(SkipAhead, RunsAllFramesBeforeTheTimeAndThenPlaysFromThere) {
    load(12'345'000);
    const std::vector<unsigned> positions = skip();
    ASSERT_EQ(positions.size(), 741u) << "12.345 s at 60 frames a second";
    for (unsigned k = 0; k < positions.size(); ++k) EXPECT_EQ(positions[k], k * 1000 / 60);
    EXPECT_EQ(g_played, std::vector<std::string>{"first from 12345 ms"});
    EXPECT_EQ(position_, 12'345u);
    g_position = 12'360;
    EXPECT_FALSE(frame());
    EXPECT_EQ(position_, 12'360u);
}

TEST_F(SkipAhead, SwitchesTheMusicOnTheWayAndPlaysTheSecondPieceInItsMiddle) {
    load(80'000'000);
    const std::vector<unsigned> positions = skip();
    ASSERT_EQ(positions.size(), 4440u + 342u) << "74 s, and 5.7 s of the second piece";
    EXPECT_EQ(positions[4440], 74'000u);
    EXPECT_EQ(positions[4441], 16u) << "the frame after the one that switches";
    EXPECT_EQ(g_played, (std::vector<std::string>{"stop", "second from 5700 ms"}));
    EXPECT_EQ(position_, 5700u);
}

TEST_F(SkipAhead, ToTheSwitchLeavesItToTheMusic) {
    load(74'000'000);
    EXPECT_EQ(skip().size(), 4440u);
    EXPECT_EQ(g_played, (std::vector<std::string>{"first from 74000 ms", "stop", "second from 0 ms"}));
}

TEST_F(SkipAhead, ToATimeThatTheClockJumpsOverStartsBehindIt) {
    load(74'200'000);
    EXPECT_EQ(skip().size(), 4441u);
    EXPECT_EQ(g_played, (std::vector<std::string>{"stop", "second from 0 ms"}));
}

TEST_F(SkipAhead, TheMusicCannotBeMovedOnTheWay) {
    load(1'000'000);
    EXPECT_TRUE(frame());
    EXPECT_EQ(FMOD_Channel_SetPosition(channel_, 500, FMOD_TIMEUNIT_MS), FMOD_ERR_UNSUPPORTED);
    skip();
    EXPECT_EQ(FMOD_Channel_SetPosition(channel_, 500, FMOD_TIMEUNIT_MS), FMOD_OK);
    frame();
    EXPECT_EQ(position_, 500u);
}

TEST_F(SkipAhead, EndsWhereNothingPlays) {
    load(1'000'000);
    frame();
    FMOD_Sound_Release(sound_);
    while (frame()) {
    }
    EXPECT_EQ(g_played, std::vector<std::string>{"stop"});
}

TEST_F(SkipAhead, LeavesNothingPlayingWhereTheMusicCannotBeStarted) {
    load(1'000'000);
    g_fails = true;
    skip();
    EXPECT_EQ(g_played, std::vector<std::string>{"stop"});
}

} // namespace
