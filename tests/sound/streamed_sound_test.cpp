#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <thread>

#include "hosts/desktop/sound/streamed_sound.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"

namespace {

using desktop::StreamedSound;

class Streamed : public ::testing::Test {
protected:
    Streamed() {
        write_mp3(path_, noise(4, 1));
        music_ = read_mp3(path_);
        common::Mp3Error error = common::Mp3Error::none;
        sound_ = StreamedSound::open(path_.c_str(), error);
    }

    // Takes `frames` frames, however long the decoder needs. There must be so many left.
    std::vector<float> take(std::size_t frames) {
        std::vector<float> out(2 * frames);
        for (std::size_t got = 0; got < frames;) {
            const std::size_t more = sound_->take(out.data() + 2 * got, frames - got);
            got += more;
            if (more == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return out;
    }

    // Expects that nothing is left, and that nothing more is decoded.
    void expect_end() {
        std::array<float, 200> more{};
        EXPECT_EQ(sound_->take(more.data(), 100), 0u);
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // some rounds of the decoder
        EXPECT_EQ(sound_->take(more.data(), 100), 0u);
    }

    std::vector<float> part(std::size_t from, std::size_t frames) const {
        const auto begin = music_.begin() + static_cast<std::ptrdiff_t>(2 * from);
        return {begin, begin + static_cast<std::ptrdiff_t>(2 * frames)};
    }

    TestFolder folder_;
    std::string path_ = folder_ / "a.mp3";
    std::vector<float> music_;
    std::unique_ptr<StreamedSound> sound_;
};

TEST_F(Streamed, HasHalfASecondAsSoonAsItIsOpen) {
    std::vector<float> out(44100);
    EXPECT_EQ(sound_->take(out.data(), 22050), 22050u);
    EXPECT_EQ(out, part(0, 22050));
}

TEST_F(Streamed, GivesTheWholeFileAndNoMore) {
    EXPECT_EQ(take(music_.size() / 2), music_);
    expect_end();
    EXPECT_EQ(sound_->length(), static_cast<std::int64_t>(music_.size() / 2));
}

TEST_F(Streamed, GoesOnFromWhereItWasSoughtTo) {
    take(30000);
    sound_->seek(100000);
    EXPECT_EQ(sound_->begin(), 100000);
    EXPECT_FALSE(sound_->taken_from());
    const std::vector<float> out = take(30000);
    const std::vector<float> expected = part(100000, 30000);
    ASSERT_EQ(out.size(), expected.size());
    for (std::size_t i = 0; i < out.size(); ++i) ASSERT_NEAR(out[i], expected[i], 1e-5) << i;
    EXPECT_TRUE(sound_->taken_from());
}

TEST_F(Streamed, HasNothingLeftAfterASeekToTheEnd) {
    sound_->seek(sound_->length());
    expect_end();
}

TEST_F(Streamed, PlaysAgainAfterItsEnd) {
    take(music_.size() / 2);
    expect_end();
    sound_->seek(0);
    EXPECT_EQ(take(22050), part(0, 22050));
}

} // namespace
