// Where a sound's position stands after its end, for every host that opens files.
#include <gtest/gtest.h>

#include "show/fmod_ex.h"
#include "tests/sound/hosts/let_pass.h"
#include "tests/sound/pulse_server.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"

namespace {

TEST(End, TheChannelStaysAndItsPositionStandsAtTheLength) {
    const TestFolder folder;
    hide_sound_devices(folder);
    const std::string path = folder / "a.mp3";
    write_mp3(path, noise(0.5, 1));
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr;
    ASSERT_EQ(FMOD_System_Create(&system), FMOD_OK);
    ASSERT_EQ(FMOD_System_Init(system, 1, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
    ASSERT_EQ(FMOD_System_CreateSound(system, path.c_str(), FMOD_CREATESTREAM, nullptr, &sound), FMOD_OK);
    ASSERT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel), FMOD_OK);
    unsigned position = 0;
    while (position < 500) {
        let_pass(0.05);
        ASSERT_EQ(FMOD_Channel_GetPosition(channel, &position, FMOD_TIMEUNIT_MS), FMOD_OK);
    }
    EXPECT_EQ(position, 500u);
    let_pass(0.3);
    EXPECT_EQ(FMOD_Channel_GetPosition(channel, &position, FMOD_TIMEUNIT_MS), FMOD_OK);
    EXPECT_EQ(position, 500u);
    EXPECT_EQ(FMOD_Channel_SetPosition(channel, 501, FMOD_TIMEUNIT_MS), FMOD_ERR_INVALID_POSITION);
}

} // namespace
