// How the FMOD Ex calls answer to handles and arguments, right and wrong: the same for every host. Each host links this
// file and a file of its own in hosts/. No sound server is needed.
#include <gtest/gtest.h>

#include <cstdint>

#include "show/fmod_ex.h"
#include "tests/sound/pulse_server.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"

namespace {

constexpr FMOD_MODE kStream = FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESTREAM;

class Handles : public ::testing::Test {
protected:
    Handles() {
        hide_sound_devices(folder_);
        write_mp3(path_, noise(1, 1));
    }

    static FMOD_SYSTEM* start_system() {
        FMOD_SYSTEM* system = nullptr;
        EXPECT_EQ(FMOD_System_Create(&system), FMOD_OK);
        EXPECT_EQ(FMOD_System_Init(system, 1, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
        return system;
    }

    FMOD_SOUND* open_sound(FMOD_SYSTEM* system) {
        FMOD_SOUND* sound = nullptr;
        EXPECT_EQ(FMOD_System_CreateSound(system, path_.c_str(), kStream, nullptr, &sound), FMOD_OK);
        return sound;
    }

    static FMOD_CHANNEL* play_sound(FMOD_SYSTEM* system, FMOD_SOUND* sound) {
        FMOD_CHANNEL* channel = nullptr;
        EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel), FMOD_OK);
        return channel;
    }

    // Expects that the channel plays: its position can be read.
    static void expect_playing(FMOD_CHANNEL* channel) {
        unsigned position = 12345;
        EXPECT_EQ(FMOD_Channel_GetPosition(channel, &position, FMOD_TIMEUNIT_MS), FMOD_OK);
        EXPECT_NE(position, 12345u);
    }

    // Expects that every call on the channel fails with `result` and leaves the position variable alone.
    static void expect_channel(FMOD_CHANNEL* channel, FMOD_RESULT result) {
        unsigned position = 12345;
        EXPECT_EQ(FMOD_Channel_GetPosition(channel, &position, FMOD_TIMEUNIT_MS), result);
        EXPECT_EQ(position, 12345u);
        EXPECT_EQ(FMOD_Channel_SetPosition(channel, 0, FMOD_TIMEUNIT_MS), result);
    }

    TestFolder folder_;
    std::string path_ = folder_ / "a.mp3";
};

template <typename T>
T* made_up(std::uintptr_t number) {
    return reinterpret_cast<T*>(number);
}

TEST_F(Handles, NullAndMadeUpOnesAreRefused) {
    for (std::uintptr_t number : {0ul, 1ul, 16ul, 0xdeadbeeful}) {
        auto* system = made_up<FMOD_SYSTEM>(number);
        auto* sound = made_up<FMOD_SOUND>(number);
        EXPECT_EQ(FMOD_System_Init(system, 1, 0, nullptr), FMOD_ERR_INVALID_HANDLE);
        FMOD_SOUND* new_sound = made_up<FMOD_SOUND>(99);
        EXPECT_EQ(FMOD_System_CreateSound(system, path_.c_str(), kStream, nullptr, &new_sound),
                  FMOD_ERR_INVALID_HANDLE);
        EXPECT_EQ(new_sound, nullptr);
        FMOD_CHANNEL* channel = made_up<FMOD_CHANNEL>(99);
        EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel),
                  FMOD_ERR_INVALID_HANDLE);
        EXPECT_EQ(channel, nullptr);
        EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_ERR_INVALID_HANDLE);
        expect_channel(made_up<FMOD_CHANNEL>(number), FMOD_ERR_INVALID_HANDLE);
    }
}

TEST_F(Handles, OneKindIsNotTakenForAnother) {
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system);
    FMOD_CHANNEL* channel = play_sound(system, sound);
    EXPECT_EQ(FMOD_Sound_Release(reinterpret_cast<FMOD_SOUND*>(channel)), FMOD_ERR_INVALID_HANDLE);
    EXPECT_EQ(FMOD_Sound_Release(reinterpret_cast<FMOD_SOUND*>(system)), FMOD_ERR_INVALID_HANDLE);
    expect_channel(reinterpret_cast<FMOD_CHANNEL*>(sound), FMOD_ERR_INVALID_HANDLE);
    EXPECT_EQ(FMOD_System_Init(reinterpret_cast<FMOD_SYSTEM*>(sound), 1, 0, nullptr),
              FMOD_ERR_INVALID_HANDLE);
}

TEST_F(Handles, ASystemIsInitialisedOnceAndBeforeUse) {
    FMOD_SYSTEM* system = nullptr;
    ASSERT_EQ(FMOD_System_Create(&system), FMOD_OK);
    FMOD_SOUND* sound = nullptr;
    EXPECT_EQ(FMOD_System_CreateSound(system, path_.c_str(), kStream, nullptr, &sound),
              FMOD_ERR_UNINITIALIZED);
    EXPECT_EQ(FMOD_System_Init(system, 0, 0, nullptr), FMOD_ERR_INVALID_PARAM);
    EXPECT_EQ(FMOD_System_Init(system, 32, 0, nullptr), FMOD_ERR_UNSUPPORTED);
    EXPECT_EQ(FMOD_System_Init(system, 1, 0, nullptr), FMOD_OK);
    EXPECT_EQ(FMOD_System_Init(system, 1, 0, nullptr), FMOD_ERR_INITIALIZED);
}

TEST_F(Handles, WhatIsNotOfferedIsSaidSo) {
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system);
    FMOD_SOUND* other = nullptr;
    constexpr FMOD_MODE kLoop = 2;
    EXPECT_EQ(FMOD_System_CreateSound(system, path_.c_str(), kStream | kLoop, nullptr, &other),
              FMOD_ERR_UNSUPPORTED);
    EXPECT_EQ(FMOD_System_CreateSound(system, nullptr, kStream, nullptr, &other), FMOD_ERR_INVALID_PARAM);
    EXPECT_EQ(FMOD_System_CreateSound(system, path_.c_str(), kStream, nullptr, nullptr),
              FMOD_ERR_INVALID_PARAM);
    FMOD_CHANNEL* channel = nullptr;
    EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 1, &channel), FMOD_ERR_UNSUPPORTED);
    EXPECT_EQ(FMOD_System_PlaySound(system, static_cast<FMOD_CHANNELINDEX>(1), sound, 0, &channel),
              FMOD_ERR_INVALID_PARAM);
    EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, nullptr), FMOD_ERR_INVALID_PARAM);

    channel = play_sound(system, sound);
    constexpr FMOD_TIMEUNIT kSamples = 2;
    unsigned position = 12345;
    EXPECT_EQ(FMOD_Channel_GetPosition(channel, &position, kSamples), FMOD_ERR_UNSUPPORTED);
    EXPECT_EQ(FMOD_Channel_GetPosition(channel, nullptr, FMOD_TIMEUNIT_MS), FMOD_ERR_INVALID_PARAM);
    EXPECT_EQ(FMOD_Channel_SetPosition(channel, 0, kSamples), FMOD_ERR_UNSUPPORTED);
    EXPECT_EQ(position, 12345u);
}

TEST_F(Handles, AChannelMayBeFreeOrUsedAgain) {
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system);
    FMOD_CHANNEL* first = play_sound(system, sound);
    FMOD_CHANNEL* again = nullptr;
    EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_REUSE, sound, 0, &again), FMOD_OK);
    expect_playing(again);
    expect_channel(first, FMOD_ERR_CHANNEL_STOLEN);
}

TEST_F(Handles, ASoundOfAnotherSystemIsRefused) {
    FMOD_SYSTEM* first = start_system();
    FMOD_SYSTEM* second = start_system();
    FMOD_SOUND* sound = open_sound(first);
    FMOD_CHANNEL* channel = nullptr;
    EXPECT_EQ(FMOD_System_PlaySound(second, FMOD_CHANNEL_FREE, sound, 0, &channel), FMOD_ERR_INVALID_PARAM);
}

TEST_F(Handles, PlayingAnotherSoundStealsTheChannel) {
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* first = open_sound(system);
    FMOD_SOUND* second = open_sound(system);
    FMOD_CHANNEL* first_channel = play_sound(system, first);
    FMOD_CHANNEL* second_channel = play_sound(system, second);
    expect_channel(first_channel, FMOD_ERR_CHANNEL_STOLEN);
    expect_playing(second_channel);
    EXPECT_EQ(FMOD_Sound_Release(first), FMOD_OK); // what no longer plays stops nothing
    expect_channel(first_channel, FMOD_ERR_INVALID_HANDLE);
    expect_playing(second_channel);
}

TEST_F(Handles, PlayingTheSameSoundAgainStealsTheChannel) {
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system);
    FMOD_CHANNEL* first_channel = play_sound(system, sound);
    FMOD_CHANNEL* second_channel = play_sound(system, sound);
    EXPECT_NE(first_channel, second_channel);
    expect_channel(first_channel, FMOD_ERR_CHANNEL_STOLEN);
    expect_playing(second_channel);
}

TEST_F(Handles, AStolenChannelStaysStolenWhenTheOtherSoundIsReleased) {
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* second = nullptr;
    FMOD_CHANNEL* first_channel = play_sound(system, open_sound(system));
    play_sound(system, second = open_sound(system));
    EXPECT_EQ(FMOD_Sound_Release(second), FMOD_OK);
    expect_channel(first_channel, FMOD_ERR_CHANNEL_STOLEN);
}

TEST_F(Handles, ReleasingASoundEndsItsHandles) {
    FMOD_SYSTEM* system = start_system();
    FMOD_SOUND* sound = open_sound(system);
    FMOD_CHANNEL* channel = play_sound(system, sound);
    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_ERR_INVALID_HANDLE);
    expect_channel(channel, FMOD_ERR_INVALID_HANDLE);
    FMOD_CHANNEL* again = nullptr;
    EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &again), FMOD_ERR_INVALID_HANDLE);
    FMOD_SOUND* next = open_sound(system);
    EXPECT_NE(next, sound) << "a handle never comes back";
    EXPECT_NE(play_sound(system, next), channel) << "a handle never comes back";
    expect_channel(channel, FMOD_ERR_INVALID_HANDLE);
}

TEST_F(Handles, TheOrderOfChecksIsResultThenHandleThenArguments) {
    EXPECT_EQ(FMOD_System_Create(nullptr), FMOD_ERR_INVALID_PARAM);
    EXPECT_EQ(FMOD_System_CreateSound(nullptr, nullptr, kStream, nullptr, nullptr), FMOD_ERR_INVALID_PARAM);
    EXPECT_EQ(FMOD_System_PlaySound(nullptr, FMOD_CHANNEL_FREE, nullptr, 0, nullptr), FMOD_ERR_INVALID_PARAM);
    EXPECT_EQ(FMOD_Channel_GetPosition(nullptr, nullptr, 0), FMOD_ERR_INVALID_HANDLE);
    EXPECT_EQ(FMOD_System_Init(nullptr, 0, 1, nullptr), FMOD_ERR_INVALID_HANDLE);
}

TEST_F(Handles, AFailedPlayLeavesWhatPlaysAlone) {
    FMOD_SYSTEM* system = start_system();
    FMOD_CHANNEL* channel = play_sound(system, open_sound(system));
    FMOD_CHANNEL* other = channel;
    EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, nullptr, 0, &other), FMOD_ERR_INVALID_HANDLE);
    EXPECT_EQ(other, nullptr);
    expect_playing(channel);
}

} // namespace
