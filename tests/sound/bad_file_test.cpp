// Files that are missing, broken or no music: the calls say so, and everything after them fails as quietly.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/sound/listener.h"
#include "tests/sound/pulse_server.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"

namespace {

class BadFile : public ::testing::Test {
protected:
    BadFile() {
        hide_sound_devices(folder_);
        system_ = start_system();
    }

    // Expects that the file cannot be opened, and that playing it and asking for its position fail then.
    void expect_refused(const std::string& path, FMOD_RESULT result) {
        FMOD_SOUND* sound = reinterpret_cast<FMOD_SOUND*>(99);
        FMOD_CHANNEL* channel = reinterpret_cast<FMOD_CHANNEL*>(99);
        unsigned position = 12345;
        EXPECT_EQ(FMOD_System_CreateSound(system_, path.c_str(), FMOD_CREATESTREAM, nullptr, &sound), result);
        EXPECT_EQ(sound, nullptr);
        EXPECT_EQ(FMOD_System_PlaySound(system_, FMOD_CHANNEL_FREE, sound, 0, &channel),
                  FMOD_ERR_INVALID_HANDLE);
        EXPECT_EQ(channel, nullptr);
        EXPECT_EQ(FMOD_Channel_GetPosition(channel, &position, FMOD_TIMEUNIT_MS), FMOD_ERR_INVALID_HANDLE);
        EXPECT_EQ(position, 12345u);
        EXPECT_EQ(FMOD_Channel_SetPosition(channel, 0, FMOD_TIMEUNIT_MS), FMOD_ERR_INVALID_HANDLE);
        EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_ERR_INVALID_HANDLE);
    }

    std::string make_file(const std::string& content) {
        std::ofstream(path_, std::ios::binary) << content;
        return path_;
    }

    TestFolder folder_;
    std::string path_ = folder_ / "a.mp3";
    FMOD_SYSTEM* system_ = nullptr;
};

TEST_F(BadFile, MissingIsNotFound) { expect_refused(path_, FMOD_ERR_FILE_NOTFOUND); }

TEST_F(BadFile, EmptyIsBad) { expect_refused(make_file(""), FMOD_ERR_FILE_BAD); }

TEST_F(BadFile, AFolderIsBad) { expect_refused(folder_.path(), FMOD_ERR_FILE_BAD); }

TEST_F(BadFile, TextIsNoMusic) {
    expect_refused(make_file("This is text, and no music at all.\n"), FMOD_ERR_FORMAT);
}

TEST_F(BadFile, SilentBytesAreNoMusic) {
    expect_refused(make_file(std::string(100000, '\0')), FMOD_ERR_FORMAT);
}

TEST_F(BadFile, AFileCutWithinItsFirstFrameIsNoMusic) {
    write_mp3(path_, noise(1, 1));
    std::filesystem::resize_file(path_, 100);
    expect_refused(path_, FMOD_ERR_FORMAT);
}

TEST_F(BadFile, ATruncatedOnePlaysWhatThereIsAndStandsAtItsEnd) {
    write_mp3(path_, noise(2, 1));
    std::filesystem::resize_file(path_, std::filesystem::file_size(path_) / 4);
    const auto frames = read_mp3(path_).size() / 2;
    FMOD_CHANNEL* channel = play_sound(system_, open_sound(system_, path_));
    poll_for(channel, 30, 0.01, static_cast<unsigned>(frames * 1000 / 44100));
    poll_for(channel, 0.3, 0.01);
    EXPECT_EQ(poll(channel).position, frames * 1000 / 44100);
    EXPECT_LT(frames, 44100u);
}

} // namespace
