// Ranges and stills of the show itself against a run in which every frame is drawn.
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

TEST(Skipping, GivesEveryFrameThatTheWholeShowGivesBitForBit) {
    const std::vector<std::string> whole = stream({});
    ASSERT_EQ(whole.size(), 162u);

    // Stills of every other frame: before each one stands a frame that was skipped.
    TestFolder folder;
    std::vector<std::string> arguments = {"-q", "--fps", "1", "-o", folder / "stills/"};
    for (int frame = 1; frame < 162; frame += 2)
        arguments.insert(arguments.end(), {"--still", time_of(frame)});
    EXPECT_EQ(run_program(export_show(arguments)).status, 0);
    for (int frame = 1; frame < 162; frame += 2) {
        char name[40];
        std::snprintf(name, sizeof name, "stills/%03d.%d00.png", frame, frame > kSwitch ? 3 : 0);
        EXPECT_TRUE(read_png(folder / name) == raw_picture(whole[static_cast<std::size_t>(frame)])) << name;
    }

    // Ranges that begin where a scene starts, restarts, or relies on what an earlier one has left.
    for (const auto& [from, to] : {std::pair{34, 36}, {62, 64}, {73, 77}, {97, 99}, {144, 148}, {160, 162}}) {
        const std::string end = to == 162 ? "162" : time_of(to);
        const std::vector<std::string> range = stream({"--from", time_of(from), "--to", end});
        EXPECT_TRUE(range == std::vector<std::string>(whole.begin() + from, whole.begin() + to)) << from;
    }
}

TEST(Skipping, TwoRunsGiveTheSameBytes) {
    TestFolder folder;
    for (const char* name : {"a.png", "b.png"}) {
        EXPECT_EQ(run_program(export_show({"-q", "--fps", "2", "--still", "20", "-o", folder / name})).status,
                  0);
    }
    EXPECT_EQ(file_bytes(folder / "a.png"), file_bytes(folder / "b.png"));
}

} // namespace
