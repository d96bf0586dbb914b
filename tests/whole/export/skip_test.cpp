// Pictures of runs that skip frames, against runs in which every frame is drawn.
#include <gtest/gtest.h>

#include "tests/support/picture.h"
#include "tests/whole/export/programs.h"

namespace {

constexpr int kSwitch = 74; // the frame, at one a second, after which the clock jumps by 0.3 s

std::string time_of(int frame) { return std::to_string(frame) + (frame > kSwitch ? ".3" : ""); }

std::vector<std::string> stream(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"-q", "--fps", "1", "-o", "-", "--format", "rgb"});
    const Finished finished = run_program(export_show(arguments));
    EXPECT_EQ(finished.status, 0) << finished.err;
    return raw_pictures(finished.out);
}

TEST(Skipping, LeavesEveryFrameOfTheShowBitForBit) {
    const std::vector<std::string> whole = stream({});
    ASSERT_EQ(whole.size(), 162u);

    // Stills of every third frame, each after two that were skipped.
    TestFolder folder;
    std::vector<std::string> arguments = {"-q", "--fps", "1", "-o", folder / "stills/"};
    for (int frame = 1; frame < 162; frame += 3)
        arguments.insert(arguments.end(), {"--still", time_of(frame)});
    EXPECT_EQ(run_program(export_show(arguments)).status, 0);
    for (int frame = 1; frame < 162; frame += 3) {
        char name[40];
        std::snprintf(name, sizeof name, "stills/%03d.%d00.png", frame, frame > kSwitch ? 3 : 0);
        EXPECT_TRUE(read_png(folder / name) == raw_picture(whole[static_cast<std::size_t>(frame)])) << name;
    }

    // Ranges that begin at the switch of the music, and where a scene relies on what an earlier one has left.
    for (const auto& [from, to] : {std::pair{73, 77}, {144, 148}}) {
        const std::vector<std::string> range = stream({"--from", time_of(from), "--to", time_of(to)});
        EXPECT_TRUE(range == std::vector<std::string>(whole.begin() + from, whole.begin() + to)) << from;
    }
}

// State that a frame leaves to the next, in more ways than the show does.
TEST(Skipping, LeavesTheStateThatTheNextFrameInherits) {
    const std::vector<std::string> arguments = {"-q", "--fps", "10"};
    const auto probe = [&](std::vector<std::string> more) {
        more.insert(more.end(), arguments.begin(), arguments.end());
        const Finished finished = run_program(export_probe("leftovers", more));
        EXPECT_EQ(finished.status, 0) << finished.err;
        return finished.out;
    };
    const std::vector<std::string> whole = raw_pictures(probe({"--to", "4", "-o", "-", "--format", "rgb"}));
    ASSERT_EQ(whole.size(), 40u);
    TestFolder folder;
    for (const auto& frames : {std::vector<int>{1, 3, 31, 33}, {2, 4, 32, 37}}) {
        std::vector<std::string> stills = {"-o", folder.path() + "/"};
        for (int frame : frames) {
            stills.insert(stills.end(),
                          {"--still", "0:0" + std::to_string(frame / 10) + "." + std::to_string(frame % 10)});
        }
        probe(stills);
        for (int frame : frames) {
            const std::string name =
                "00" + std::to_string(frame / 10) + "." + std::to_string(frame % 10) + "00.png";
            EXPECT_TRUE(read_png(folder / name) == raw_picture(whole[static_cast<std::size_t>(frame)]))
                << name;
        }
    }
}

// A picture that shows a skipped frame: "trail" clears every 40th frame only, the others draw with a texture that an
// earlier frame copied, by themselves and by a display list.
TEST(Skipping, APictureThatShowsASkippedFrameIsRefused) {
    for (const char* probe : {"trail", "late texture", "late list"}) {
        TestFolder folder;
        const Finished finished =
            run_program(export_probe(probe, {"--fps", "10", "--still", "5.7", "-o", folder / "a.png"}));
        EXPECT_EQ(finished.status, 1) << probe;
        EXPECT_NE(finished.err.find("the picture at 5.700 s shows something of an earlier frame"),
                  std::string::npos)
            << probe << ": " << finished.err;
        EXPECT_TRUE(folder.names().empty()) << probe;
        const Finished whole = run_program(
            export_probe(probe, {"-q", "--fps", "10", "--to", "4.2", "--frames", folder / "frames"}));
        EXPECT_EQ(whole.status, 0) << probe << ": " << whole.err;
    }
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
