#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "hosts/common/mp3_stream.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"

namespace {

class Mp3 : public ::testing::Test {
protected:
    std::unique_ptr<common::Mp3Stream> open(const std::string& path) {
        return common::Mp3Stream::open(path.c_str(), error_);
    }

    TestFolder folder_;
    std::string path_ = folder_ / "a.mp3";
    common::Mp3Error error_ = common::Mp3Error::none;
};

// How unlike two pieces of the left channel are: 0 for the same, 1 for half the power.
double difference(const std::vector<float>& a, const std::vector<float>& b, std::size_t from,
                  std::size_t count, std::ptrdiff_t shift) {
    double apart = 0;
    double power = 0;
    for (std::size_t i = from; i < from + count; ++i) {
        const double x = a[2 * i];
        const double y = b[2 * static_cast<std::size_t>(static_cast<std::ptrdiff_t>(i) + shift)];
        apart += (x - y) * (x - y);
        power += x * x;
    }
    return apart / power;
}

// The frequency of a sine in the left channel from its upward passes through zero.
double frequency(const std::vector<float>& samples) {
    std::vector<double> passes;
    for (std::size_t i = 2; i < samples.size(); i += 2)
        if (samples[i - 2] < 0 && samples[i] >= 0)
            passes.push_back(static_cast<double>(i) / 2 - samples[i] / (samples[i] - samples[i - 2]));
    return static_cast<double>(passes.size() - 1) / (passes.back() - passes.front()) * common::kSoundRate;
}

TEST_F(Mp3, HasExactlyTheFramesThatWereEncoded) {
    for (double seconds : {0.1, 1.0, 3.21098}) {
        const std::vector<float> original = noise(seconds, 1);
        write_mp3(path_, original);
        EXPECT_EQ(open(path_)->length(), static_cast<std::int64_t>(original.size() / 2));
        EXPECT_EQ(read_mp3(path_).size(), original.size());
    }
}

TEST_F(Mp3, BeginsWithTheFirstSampleOfTheMusic) {
    const std::vector<float> original = noise(2, 1);
    write_mp3(path_, original, {44100, 2, 320, true});
    const std::vector<float> decoded = read_mp3(path_);
    const double aligned = difference(original, decoded, 1000, 20000, 0);
    EXPECT_LT(aligned, 0.1);
    EXPECT_GT(difference(original, decoded, 1000, 20000, 1), 2 * aligned);
    EXPECT_GT(difference(original, decoded, 1000, 20000, -1), 2 * aligned);
}

TEST_F(Mp3, SeeksToTheSample) {
    for (int bit_rate : {64, 320}) {
        write_mp3(path_, noise(8, 1), {44100, 2, bit_rate, true});
        const std::vector<float> whole = read_mp3(path_);
        const auto stream = open(path_);
        std::vector<float> piece(2 * 2000);
        for (std::int64_t frame : {0, 1, 47, 1151, 1152, 44100, 123457, 300000, 5, 350000}) {
            ASSERT_TRUE(stream->seek(frame));
            EXPECT_EQ(stream->position(), frame);
            ASSERT_EQ(stream->read(piece.data(), 2000), 2000u);
            for (std::size_t i = 0; i < piece.size(); ++i)
                ASSERT_NEAR(piece[i], whole[2 * static_cast<std::size_t>(frame) + i], 1e-5) << frame;
        }
    }
}

TEST_F(Mp3, HasNothingToReadAtTheEnd) {
    write_mp3(path_, noise(1, 1));
    const auto stream = open(path_);
    ASSERT_TRUE(stream->seek(stream->length()));
    float frame[2];
    EXPECT_EQ(stream->read(frame, 1), 0u);
    ASSERT_TRUE(stream->seek(stream->length() - 1));
    EXPECT_EQ(stream->read(frame, 1), 1u);
}

TEST_F(Mp3, ReadsTheSameInPiecesOfAnySize) {
    write_mp3(path_, noise(2, 1));
    const std::vector<float> whole = read_mp3(path_);
    const auto stream = open(path_);
    std::vector<float> pieces(whole.size());
    std::size_t at = 0;
    for (std::size_t size = 1; at < whole.size() / 2; size = size * 7 % 4999 + 1)
        at += stream->read(pieces.data() + 2 * at, std::min(size, whole.size() / 2 - at));
    EXPECT_EQ(pieces, whole);
}

TEST_F(Mp3, PlaysOtherRatesAndMonoAtTheRightPitchAndLength) {
    for (int rate : {48000, 32000, 24000, 22050, 44100})
        for (int channels : {1, 2}) {
            write_mp3(path_, sine(2, 440, rate, channels), {rate, channels, 64 * channels, true});
            const std::vector<float> decoded = read_mp3(path_);
            EXPECT_NEAR(static_cast<double>(decoded.size() / 2), 2 * 44100, 1) << rate;
            EXPECT_NEAR(frequency(decoded), 440, 0.05) << rate << ' ' << channels;
            double unlike = 0; // at the right place, on both sides
            for (std::size_t i = 4000; i < 80000; ++i) {
                const double expected = 0.5 * std::sin(2 * M_PI * 440 * static_cast<double>(i) / 44100);
                unlike = std::max(unlike, std::fabs(decoded[2 * i] - expected));
                unlike = std::max(unlike, std::fabs(decoded[2 * i + 1] - expected));
            }
            EXPECT_LT(unlike, 0.03) << rate << ' ' << channels; // a frame's shift would be 0.03
        }
}

TEST_F(Mp3, SeeksToTheSampleAtOtherRates) {
    for (int rate : {48000, 32000, 22050}) {
        write_mp3(path_, sine(4, 440, rate, 1), {rate, 1, 64, true});
        const std::vector<float> whole = read_mp3(path_);
        const auto stream = open(path_);
        std::vector<float> piece(2 * 2000);
        for (std::int64_t frame : {0, 1, 1000, 44100, 123457, 77, 170000}) {
            ASSERT_TRUE(stream->seek(frame));
            ASSERT_EQ(stream->read(piece.data(), 2000), 2000u);
            for (std::size_t i = 0; i < piece.size(); ++i)
                ASSERT_NEAR(piece[i], whole[2 * static_cast<std::size_t>(frame) + i], 1e-4)
                    << rate << ' ' << frame << ' ' << i;
        }
    }
}

TEST_F(Mp3, CountsWhatIsThereOfATruncatedFile) {
    write_mp3(path_, noise(4, 1));
    const std::vector<float> whole = read_mp3(path_);
    std::filesystem::resize_file(path_, std::filesystem::file_size(path_) / 2);
    const auto stream = open(path_);
    ASSERT_TRUE(stream);
    EXPECT_NEAR(static_cast<double>(stream->length()), 2 * 44100, 3000);
    const std::vector<float> part = read_mp3(path_);
    EXPECT_EQ(part.size() / 2, static_cast<std::size_t>(stream->length()));
    for (std::size_t i = 0; i + 2 * 1152 < part.size(); ++i) ASSERT_EQ(part[i], whole[i]) << i;
}

TEST_F(Mp3, ReadsAFileWithoutItsLength) {
    write_mp3(path_, noise(3, 1), {44100, 2, 128, false});
    const auto stream = open(path_);
    ASSERT_TRUE(stream);
    EXPECT_GE(stream->length(), 3 * 44100);
    EXPECT_EQ(read_mp3(path_).size() / 2, static_cast<std::size_t>(stream->length()));
}

TEST_F(Mp3, SkipsAnId3Tag) {
    write_mp3(path_, noise(1, 1));
    const std::vector<float> plain = read_mp3(path_);
    std::ifstream in(path_, std::ios::binary);
    const std::string music((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::string tag("ID3\3\0\0\0\0\2\0", 10); // 256 bytes of padding follow
    tag.append(256, '\0');
    std::ofstream(path_, std::ios::binary) << tag << music;
    EXPECT_EQ(read_mp3(path_), plain);
}

TEST_F(Mp3, SaysWhyAFileCannotBeOpened) {
    EXPECT_FALSE(open(folder_ / "missing.mp3"));
    EXPECT_EQ(error_, common::Mp3Error::not_found);
    EXPECT_FALSE(open(folder_ / "missing/a.mp3"));
    EXPECT_EQ(error_, common::Mp3Error::not_found);
    EXPECT_FALSE(open(folder_.path()));
    EXPECT_EQ(error_, common::Mp3Error::unreadable);
    std::ofstream{path_};
    EXPECT_FALSE(open(path_));
    EXPECT_EQ(error_, common::Mp3Error::unreadable);
    std::ofstream(path_) << "This is text, and no music at all.\n";
    EXPECT_FALSE(open(path_));
    EXPECT_EQ(error_, common::Mp3Error::not_mp3);
    std::ofstream(path_, std::ios::binary) << std::string(100000, '\0');
    EXPECT_FALSE(open(path_));
    EXPECT_EQ(error_, common::Mp3Error::not_mp3);
}

TEST_F(Mp3, RefusesWhatOnlySomewhereLooksLikeAFrame) {
    EXPECT_FALSE(open(std::string(DATA_FOLDER) + "/Vera.ttf"));
    EXPECT_EQ(error_, common::Mp3Error::not_mp3);
    EXPECT_FALSE(open(std::string(DATA_FOLDER) + "/Arial"));
    EXPECT_EQ(error_, common::Mp3Error::not_mp3);
}

TEST_F(Mp3, RefusesAFileCutWithinItsFirstFrame) {
    write_mp3(path_, noise(1, 1));
    std::filesystem::resize_file(path_, 100);
    EXPECT_FALSE(open(path_));
    EXPECT_EQ(error_, common::Mp3Error::not_mp3);
}

} // namespace
