// What the files are: MPEG audio that every decoder plays from its first sample, with tags.
#include <gtest/gtest.h>
#include <mpg123.h>

#include <memory>
#include <string>

#include "tests/music/recording.h"
#include "tests/support/process.h"

namespace {

struct CloseHandle {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
};
using Handle = std::unique_ptr<mpg123_handle, CloseHandle>;

Handle open_file(const MusicFile& file, bool gapless) {
    mpg123_init();
    Handle handle(mpg123_new(nullptr, nullptr));
    mpg123_param(handle.get(), MPG123_ADD_FLAGS, MPG123_QUIET, 0.0);
    mpg123_param(handle.get(), gapless ? MPG123_ADD_FLAGS : MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0.0);
    EXPECT_EQ(mpg123_open(handle.get(), path_of(file).c_str()), MPG123_OK) << path_of(file);
    EXPECT_EQ(mpg123_scan(handle.get()), MPG123_OK);
    return handle;
}

std::string text(const mpg123_string* string) { return string && string->p ? string->p : ""; }

TEST(Encoding, InstrumentalCoversTheFirstHalfAndTheSwitch) {
    EXPECT_GE(decode(kInstrumental).seconds(), 76.0);
}

TEST(Encoding, VocalFileOutlastsTheShow) { EXPECT_GE(decode(kVocal).seconds(), 92.0); }

TEST(Encoding, IsStereoAt44100HzAndAtLeast160KbitPerSecond) {
    for (const MusicFile& file : kMusicFiles) {
        Handle handle = open_file(file, true);
        mpg123_frameinfo info{};
        ASSERT_EQ(mpg123_info(handle.get(), &info), MPG123_OK);
        EXPECT_EQ(info.layer, 3) << file.name;
        EXPECT_EQ(info.rate, kRate) << file.name;
        EXPECT_NE(info.mode, MPG123_M_MONO) << file.name;
        EXPECT_EQ(info.vbr, MPG123_CBR) << file.name;
        EXPECT_GE(info.bitrate, 160) << file.name;
    }
}

// Without the header a decoder would start the music some 25 ms late and every accent with it.
TEST(Encoding, TellsDecodersWhichSamplesTheEncoderAdded) {
    for (const MusicFile& file : kMusicFiles) {
        off_t trimmed = mpg123_length(open_file(file, true).get());
        off_t whole = mpg123_length(open_file(file, false).get());
        EXPECT_GT(whole - trimmed, 576 + 529) << file.name;
    }
}

TEST(Encoding, CarriesTitleArtistYearAndLicence) {
    for (const MusicFile& file : kMusicFiles) {
        Handle handle = open_file(file, true);
        mpg123_id3v1* v1 = nullptr;
        mpg123_id3v2* v2 = nullptr;
        ASSERT_EQ(mpg123_id3(handle.get(), &v1, &v2), MPG123_OK);
        ASSERT_NE(v2, nullptr) << file.name;
        EXPECT_EQ(text(v2->title), "skav") << file.name;
        EXPECT_EQ(text(v2->artist), "pRANDIKS") << file.name;
        EXPECT_EQ(text(v2->year), "2026") << file.name;
        EXPECT_NE(text(v2->comment).find("CC BY 4.0"), std::string::npos) << file.name;
    }
}

TEST(Encoding, IsReadByFfmpegWithoutAWarning) {
    for (const MusicFile& file : kMusicFiles) {
        Command probe;
        probe.arguments = {"ffprobe", "-v", "warning", "-show_entries", "format_tags", path_of(file)};
        const Finished finished = run_program(probe);
        EXPECT_EQ(finished.status, 0) << file.name;
        EXPECT_EQ(finished.err, "") << file.name;
        EXPECT_NE(finished.out.find("CC BY 4.0"), std::string::npos) << finished.out;
    }
}

} // namespace
