// Stills of shows whose pictures are made of earlier frames: each must be the picture that the whole run
// shows.
#include <gtest/gtest.h>

#include "tests/support/picture.h"
#include "tests/whole/export/programs.h"

namespace {

// The pictures of the first `seconds` at 10 frames per second, all drawn.
std::vector<std::string> whole_run(const std::string& probe, int seconds) {
    const Finished finished = run_program(export_probe(
        probe, {"-q", "--fps", "10", "--to", std::to_string(seconds), "-o", "-", "--format", "rgb"}));
    EXPECT_EQ(finished.status, 0) << finished.err;
    return raw_pictures(finished.out);
}

void expect_stills_of_the_whole_run(const std::string& probe, int seconds, const std::vector<int>& frames) {
    const std::vector<std::string> whole = whole_run(probe, seconds);
    ASSERT_EQ(whole.size(), static_cast<std::size_t>(seconds * 10));
    for (int frame : frames) {
        TestFolder folder;
        const std::string time = std::to_string(frame / 10) + "." + std::to_string(frame % 10);
        const Finished finished =
            run_program(export_probe(probe, {"-q", "--fps", "10", "--still", time, "-o", folder / "a.png"}));
        EXPECT_EQ(finished.status, 0) << finished.err;
        EXPECT_TRUE(read_png(folder / "a.png") == raw_picture(whole[static_cast<std::size_t>(frame)]))
            << time;
    }
}

TEST(PictureOfSkippedFrames, AFrameThatClearsNothingShowsThoseBeforeIt) {
    expect_stills_of_the_whole_run("trail", 6, {39, 40, 57});
}

TEST(PictureOfSkippedFrames, AShowThatNeverClearsShowsItsLoadingScreen) {
    expect_stills_of_the_whole_run("loading", 3, {0, 25});
}

TEST(PictureOfSkippedFrames, ATextureCopiedLongAgoIsRight) {
    expect_stills_of_the_whole_run("late texture", 5, {5, 29, 30, 45});
}

TEST(PictureOfSkippedFrames, ATextureBoundByADisplayListIsRight) {
    expect_stills_of_the_whole_run("late list", 5, {29, 45});
}

TEST(PictureOfSkippedFrames, WhatAFrameLeavesToTheNextIsThere) {
    expect_stills_of_the_whole_run("leftovers", 5, {1, 2, 3, 4, 31, 32, 33, 47});
}

TEST(PictureOfSkippedFrames, StartingOverIsSaid) {
    TestFolder folder;
    const Finished finished =
        run_program(export_probe("trail", {"--fps", "10", "--still", "5.7", "-o", folder / "a.png"}));
    EXPECT_EQ(finished.status, 0);
    EXPECT_NE(finished.err.find("The picture at 5.700 s shows what was drawn at 4.000 s"), std::string::npos)
        << finished.err;
}

// The texture is found to be needed only when a part of the stream has gone out.
TEST(PictureOfSkippedFrames, AStreamGoesOnWhereItHadToStartOver) {
    const std::vector<std::string> whole = whole_run("late texture", 5);
    const Finished rgb = run_program(export_probe(
        "late texture", {"-q", "--fps", "10", "--from", "2", "--to", "5", "-o", "-", "--format", "rgb"}));
    EXPECT_EQ(rgb.status, 0) << rgb.err;
    EXPECT_TRUE(raw_pictures(rgb.out) == std::vector<std::string>(whole.begin() + 20, whole.end()));

    const Finished all = run_program(
        export_probe("late texture", {"-q", "--fps", "10", "--from", "0", "--to", "5", "-o", "-"}));
    const Finished part = run_program(
        export_probe("late texture", {"-q", "--fps", "10", "--from", "2", "--to", "5", "-o", "-"}));
    const std::size_t header = part.out.find('\n') + 1;
    EXPECT_EQ(part.out.substr(0, header), all.out.substr(0, header));
    const std::size_t size = part.out.size() - header;
    EXPECT_EQ(size, 30u * (6 + 1024 * 768 * 3 / 2));
    EXPECT_TRUE(all.out.compare(all.out.size() - size, size, part.out, header) == 0);
}

TEST(ShowsEnd, ItsExitStatusIsKeptAndItsFileFinished) {
    TestFolder folder;
    const Finished finished =
        run_program(export_probe("exit", {"-q", "--fps", "10", "--to", "0.5", "-o", folder / "a.mp4"}));
    EXPECT_EQ(finished.status, 0) << "the range ends before the show does: " << finished.err;
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.mp4"});
}

TEST(ShowsEnd, AnEndBeforeTheLastWantedFrameIsAFailure) {
    TestFolder folder;
    const Finished finished =
        run_program(export_probe("exit", {"-q", "--fps", "10", "--to", "5", "-o", folder / "a.mp4"}));
    EXPECT_EQ(finished.status, 1);
    EXPECT_NE(finished.err.find("ended by itself"), std::string::npos) << finished.err;
    EXPECT_TRUE(folder.names().empty());
}

TEST(ShowsEnd, ACrashIsTold) {
    TestFolder folder;
    const Finished finished =
        run_program(export_probe("crash", {"-q", "--fps", "10", "--to", "5", "--frames", folder / "frames"}));
    EXPECT_EQ(finished.status, 128 + SIGABRT);
    EXPECT_NE(finished.err.find("signal 6"), std::string::npos) << finished.err;
}

TEST(ShowsEnd, AShowThatStartsNoMusicIsNotWaitedForForEver) {
    TestFolder folder;
    const Finished finished =
        run_program(export_probe("silent", {"-q", "--still", "1", "-o", folder / "a.png"}));
    EXPECT_EQ(finished.status, 1);
    EXPECT_NE(finished.err.find("does not start its music"), std::string::npos) << finished.err;
}

TEST(ShowsEnd, AShowThatStopsAskingForFramesIsNotWaitedForForEver) {
    TestFolder folder;
    const Finished finished =
        run_program(export_probe("stands still", {"-q", "--still", "1", "-o", folder / "a.png"}));
    EXPECT_EQ(finished.status, 1);
    EXPECT_NE(finished.err.find("stopped asking for frames"), std::string::npos) << finished.err;
}

} // namespace
