// The sound calls on a player that fails: what is left then is a system on which nothing plays.
#include <gtest/gtest.h>

#include <new>

#include "hosts/common/sound_calls.h"

namespace {

bool g_fails = false;
const common::Sound* g_playing = nullptr;

class FailingPlayer : public common::Player {
public:
    std::unique_ptr<common::Sound> open(const char*, FMOD_RESULT&) override {
        return std::make_unique<common::Sound>(1000);
    }
    void play(common::Sound& sound, unsigned) override {
        if (g_fails) throw std::bad_alloc();
        g_playing = &sound;
    }
    void stop() override { g_playing = nullptr; }
    unsigned position_ms() override { return 0; }
    FMOD_RESULT seek_ms(unsigned) override { return FMOD_OK; }
};

} // namespace

std::unique_ptr<common::Player> common::make_player() { return std::make_unique<FailingPlayer>(); }

TEST(FailingPlayer, AFailedPlayEndsWhatPlayedBefore) {
    FMOD_SYSTEM* system = nullptr;
    ASSERT_EQ(FMOD_System_Create(&system), FMOD_OK);
    ASSERT_EQ(FMOD_System_Init(system, 1, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
    FMOD_SOUND* sound = nullptr;
    ASSERT_EQ(FMOD_System_CreateSound(system, "a", FMOD_CREATESTREAM, nullptr, &sound), FMOD_OK);
    FMOD_CHANNEL* first = nullptr;
    ASSERT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &first), FMOD_OK);
    ASSERT_NE(g_playing, nullptr);

    g_fails = true;
    FMOD_CHANNEL* second = first;
    EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &second), FMOD_ERR_MEMORY);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(g_playing, nullptr); // the sound may be released now
    unsigned position = 0;
    EXPECT_EQ(FMOD_Channel_GetPosition(first, &position, FMOD_TIMEUNIT_MS), FMOD_ERR_CHANNEL_STOLEN);
    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
}
