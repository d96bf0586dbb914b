// The mixer, driven as a device would drive it, but as fast as the test likes.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include "hosts/desktop/sound/mixer.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"

namespace {

using desktop::Mixer;
using desktop::StreamedSound;

constexpr std::size_t kTail = 1000; // frames after which music that broke off has died away

class Mixing : public ::testing::Test {
protected:
    std::unique_ptr<StreamedSound> open(const char* name, double seconds, std::uint32_t seed) {
        const std::string path = folder_ / name;
        write_mp3(path, noise(seconds, seed));
        music_ = read_mp3(path);
        common::Mp3Error error = common::Mp3Error::none;
        return StreamedSound::open(path.c_str(), error);
    }

    // Renders `frames` frames in small requests and keeps them.
    void render(std::size_t frames) {
        constexpr std::size_t kRequest = 276;
        while (frames > 0) {
            const std::size_t count = std::min(frames, kRequest);
            rendered_.resize(rendered_.size() + 2 * count);
            mixer_.render(rendered_.data() + rendered_.size() - 2 * count, count);
            frames -= count;
        }
    }

    float rendered(std::size_t device) const { return rendered_[2 * device]; }
    float music(std::size_t frame) const { return music_[2 * frame]; }

    TestFolder folder_;
    std::vector<float> music_; // of the sound last opened
    std::vector<float> rendered_;
    Mixer mixer_;
};

TEST_F(Mixing, IsSilentWhileNothingPlays) {
    render(1000);
    EXPECT_EQ(mixer_.handed_out(), 1000u);
    EXPECT_TRUE(std::all_of(rendered_.begin(), rendered_.end(), [](float sample) { return sample == 0; }));
    EXPECT_FALSE(mixer_.segments().at(500).has_value());
}

TEST_F(Mixing, StartsASoundWithTheNextFrame) {
    const auto sound = open("a.mp3", 1, 1);
    render(1000);
    mixer_.play(*sound, 1);
    render(5000);
    EXPECT_EQ(mixer_.segments().at(999.9), std::nullopt);
    EXPECT_EQ(mixer_.segments().at(1000)->music, 0);
    for (std::size_t i = 0; i < 5000; ++i) ASSERT_EQ(rendered(1000 + i), music(i)) << i;
}

// One request for more than the queue can hold is bound to end in a gap. What was rendered must be what the
// log says, and all of the music must come.
TEST_F(Mixing, LogsEveryGapOfALateDecoderAndLosesNoFrame) {
    constexpr std::size_t kRequest = 70000;
    const auto sound = open("a.mp3", 6, 1);
    mixer_.play(*sound, 1);
    double reached = 0;
    for (std::size_t device = 0; reached < static_cast<double>(music_.size() / 2); device += kRequest) {
        rendered_.resize(2 * (device + kRequest));
        mixer_.render(rendered_.data() + 2 * device, kRequest);
        EXPECT_FALSE(mixer_.segments().at(static_cast<double>(device + kRequest - 1))->running);
        for (std::size_t i = device; i < device + kRequest; ++i) {
            const auto segment = mixer_.segments().at(static_cast<double>(i));
            if (!segment->running) continue;
            const double since = static_cast<double>(i) - segment->device;
            ASSERT_EQ(segment->music + since, reached) << "device frame " << i;
            if (since > kTail) {
                ASSERT_EQ(rendered(i), music(static_cast<std::size_t>(reached))) << "device frame " << i;
            }
            reached += 1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

TEST_F(Mixing, StandsAtTheLengthAfterTheEnd) {
    const auto sound = open("a.mp3", 0.4, 1);
    mixer_.play(*sound, 1);
    render(30000);
    const auto segment = mixer_.segments().at(29999);
    EXPECT_FALSE(segment->running);
    EXPECT_EQ(segment->music, static_cast<double>(sound->length()));
    for (std::size_t i = 29000; i < 30000; ++i) ASSERT_EQ(rendered(i), 0);
}

TEST_F(Mixing, StopsWithinTenMillisecondsAndWithoutAClick) {
    const auto sound = open("a.mp3", 1, 1);
    mixer_.play(*sound, 1);
    render(5000);
    mixer_.stop();
    render(2000);
    EXPECT_LE(std::fabs(rendered(5000)), std::fabs(rendered(4999)));
    for (std::size_t i = 5001; i < 7000; ++i)
        ASSERT_LE(std::fabs(rendered(i)), std::fabs(rendered(i - 1))) << "dies away";
    EXPECT_LT(std::fabs(rendered(5441)), 0.001f);
    EXPECT_EQ(rendered(5000 + kTail), 0);
}

TEST_F(Mixing, ReplacesASoundByAnotherFromItsStart) {
    const auto first = open("a.mp3", 1, 1);
    const auto second = open("b.mp3", 1, 2);
    mixer_.play(*first, 1);
    render(5000);
    mixer_.play(*second, 2);
    render(5000);
    EXPECT_EQ(mixer_.segments().at(4999)->play, 1u);
    EXPECT_EQ(mixer_.segments().at(5000)->play, 2u);
    EXPECT_EQ(mixer_.segments().at(5000)->music, 0);
    for (std::size_t i = kTail; i < 5000; ++i) ASSERT_EQ(rendered(5000 + i), music(i)) << i;
}

TEST_F(Mixing, SkipsForwardWithoutAClickAndSaysWhereItIs) {
    const auto sound = open("a.mp3", 1, 1);
    mixer_.play(*sound, 1);
    render(5000);
    mixer_.skip_to(1, 15000);
    render(5000);
    EXPECT_EQ(mixer_.segments().at(4999)->music_at(4999), 4999);
    EXPECT_EQ(mixer_.segments().at(5000)->music_at(5000), 15000);
    EXPECT_LT(std::fabs(rendered(5000) - music(15000) - rendered(4999)), 0.1f);
    for (std::size_t i = kTail; i < 5000; ++i) ASSERT_EQ(rendered(5000 + i), music(15000 + i)) << i;
}

TEST_F(Mixing, SkipsMoreThanIsDecoded) {
    const auto sound = open("a.mp3", 6, 1);
    mixer_.play(*sound, 1);
    render(1000);
    mixer_.skip_to(1, 151000);
    for (render(100); !mixer_.segments().at(1e9)->running; render(100))
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_EQ(mixer_.segments().at(1e9)->music, 151000);
    mixer_.skip_to(1, 151000); // is behind it
    render(100);
    EXPECT_TRUE(mixer_.segments().at(1e9)->running);
    EXPECT_EQ(mixer_.segments().at(1e9)->music, 151000);
}

TEST_F(Mixing, ASkipBelongsToOnePlayAndEndsAtItsEnd) {
    const auto first = open("a.mp3", 0.4, 1);
    const auto second = open("b.mp3", 1, 2);
    mixer_.play(*first, 1);
    render(1000);
    mixer_.skip_to(1, 1000000);
    render(1000);
    EXPECT_EQ(mixer_.segments().at(1500)->music, static_cast<double>(first->length()));
    mixer_.skip_to(1, 3000);
    mixer_.play(*second, 2);
    render(5000);
    EXPECT_EQ(mixer_.segments().at(2000)->music_at(2000), 0);
}

TEST_F(Mixing, LeavesAStoppedSoundAloneWhileTheDeviceKeepsAsking) {
    auto sound = open("a.mp3", 1, 1);
    std::atomic<bool> done{false};
    std::thread device([&] {
        std::vector<float> out(2 * 64);
        while (!done) mixer_.render(out.data(), 64);
    });
    for (std::uint64_t play = 1; play < 30; ++play) {
        mixer_.play(*sound, play);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        mixer_.stop();
        sound->seek(static_cast<std::int64_t>(play) * 100); // a race here is what the sanitizer looks for
    }
    sound.reset();
    done = true;
    device.join();
}

} // namespace
