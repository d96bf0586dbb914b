#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "tests/support/picture.h"
#include "tests/whole/export/programs.h"

namespace {

TEST(Stream, Y4mTellsItsSizeRateAndRangeAndHoldsEveryFrame) {
    const Finished finished =
        run_program(export_probe("leftovers", {"--fps", "24000/1001", "--to", "1", "-o", "-"}));
    EXPECT_EQ(finished.status, 0) << finished.err;
    EXPECT_EQ(finished.out.substr(0, finished.out.find('\n')),
              "YUV4MPEG2 W1024 H768 F24000:1001 Ip A1:1 C420mpeg2 XCOLORRANGE=LIMITED");
    const std::size_t header = finished.out.find('\n') + 1;
    EXPECT_EQ(finished.out.size(), header + 24 * (6 + 1024 * 768 * 3 / 2));
    EXPECT_EQ(finished.out.substr(header, 6), "FRAME\n");
}

TEST(Stream, TheQuestionGoesToStandardError) {
    Command start =
        export_probe("leftovers", {"-q", "--fps", "10", "--to", "0.1", "-o", "-", "--format", "rgb"});
    start.arguments.erase(start.arguments.begin() + 3, start.arguments.begin() + 5); // no --language
    start.input = "x";
    const Finished finished = run_program(start);
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.err, "Which? x\n");
    EXPECT_EQ(finished.out.size(), 1024u * 768 * 3);
}

TEST(Stream, AnAnswerGivenBeforehandIsFedAndTheQuestionKeptToItself) {
    const Finished finished = run_program(
        export_probe("leftovers", {"-q", "--fps", "10", "--to", "0.1", "-o", "-", "--format", "rgb"}));
    EXPECT_EQ(finished.err, "");
    EXPECT_EQ(finished.out.size(), 1024u * 768 * 3);
}

TEST(Stream, AReaderThatGoesAwayIsToldInOneLine) {
    Command start;
    start.arguments = {"/bin/bash",
                       "-c",
                       "set -o pipefail; \"$@\" | head -c 100 > /dev/null",
                       "bash",
                       SKAV_PROBE_EXPORT,
                       "-q",
                       "--data",
                       SKAV_DATA,
                       "--language",
                       "en",
                       "-o",
                       "-"};
    start.environment["PROBE"] = "leftovers";
    const Finished finished = run_program(start);
    EXPECT_EQ(finished.status, 1);
    EXPECT_NE(finished.err.find("cannot write to standard output"), std::string::npos) << finished.err;
}

TEST(FrameFolder, NumbersCountOverTheWholeShow) {
    TestFolder folder;
    const Finished finished = run_program(export_probe(
        "leftovers", {"-q", "--fps", "10", "--from", "73.9", "--to", "74.5", "--frames", folder / "frames"}));
    EXPECT_EQ(finished.status, 0) << finished.err;
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "frames")) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"frame-000739.png", "frame-000740.png", "frame-000741.png"}));
}

TEST(Sheet, HasARowOfSixAndRoomForEveryCaption) {
    TestFolder folder;
    EXPECT_EQ(
        run_program(export_probe("leftovers", {"-q", "--fps", "2", "--sheet", folder / "s.png"})).status, 0);
    const Rgb sheet = read_png(folder / "s.png");
    EXPECT_EQ(sheet.width, 6 * (256 + 16) + 16);
    // Somewhere under the first picture stands its time, in light letters.
    int light = 0;
    for (int y = 16 + 192; y < 16 + 192 + 32; ++y) {
        for (int x = 16; x < 16 + 64; ++x) light += sheet.at(x, y)[0] > 150;
    }
    EXPECT_GT(light, 20);
}

} // namespace
