#include <gtest/gtest.h>

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

    // Takes `frames` frames, however long the decoder needs, or fewer at the end.
    std::vector<float> take(std::size_t frames) {
        std::vector<float> out(2 * frames);
        std::size_t got = 0;
        for (int patience = 0; got < frames && patience < 200;) {
            const std::size_t more = sound_->take(out.data() + 2 * got, frames - got);
            got += more;
            patience = more > 0 ? 0 : patience + 1;
            if (more == 0) std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        out.resize(2 * got);
        return out;
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
    EXPECT_EQ(take(music_.size() / 2 + 10000), music_);
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
    EXPECT_TRUE(take(100).empty());
}

TEST_F(Streamed, PlaysAgainAfterItsEnd) {
    take(music_.size());
    sound_->seek(0);
    EXPECT_EQ(take(22050), part(0, 22050));
}

} // namespace
