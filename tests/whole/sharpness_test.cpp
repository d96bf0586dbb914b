// At which multiple of its size the show is drawn, seen on the screen: the task "comb" looks different at each.
#include "tests/whole/display_test.h"

namespace {

// Whether a place on a screen shows `pattern` over and over in every row, each red value with a tolerance of 1.
bool repeats(const Pixels& screen, const Place& place, const std::vector<int>& pattern) {
    for (int y = 0; y < place.height; ++y) {
        for (int x = 0; x < place.width; ++x) {
            const int expected = pattern[static_cast<std::size_t>(x) % pattern.size()];
            if (std::abs(screen.at(place.x + x, place.y + y).red - expected) > 1) return false;
        }
    }
    return true;
}

struct Case {
    std::string name;
    std::vector<std::string> options;
    std::string renderer;
    int width, height;        // of the screen
    std::vector<int> pattern; // of pixels in a row
};

std::ostream& operator<<(std::ostream& stream, const Case& value) { return stream << value.name; }

class Sharpness : public testing::TestWithParam<Case> {};

TEST_P(Sharpness, OfThePicture) {
    const auto server = DisplayServer::virtual_screen(GetParam().width, GetParam().height);
    const Viewer screen(server->name());
    Command command = test_show(*server, "comb", GetParam().options);
    command.environment["TEST_RENDERER"] = GetParam().renderer;
    Process show(command);
    const Place all = {0, 0, GetParam().width, GetParam().height};
    EXPECT_TRUE(eventually([&] { return repeats(screen.picture(), all, GetParam().pattern); }))
        << show.errors();
}

const std::string kCard = "a graphics card", kSoftware = "llvmpipe (LLVM 15.0.6, 256 bits)";

INSTANTIATE_TEST_SUITE_P(
    Cases, Sharpness,
    testing::Values(Case{"IsThatOfTheScreen", {}, kCard, 2048, 1536, {255, 0}},
                    Case{"IsThatOfAScreenThreeTimesAsLarge", {}, kCard, 3072, 2304, {0, 255, 0}},
                    Case{"IsOneInSoftware", {}, kSoftware, 2048, 1536, {255}},
                    Case{"IsForcedInSoftware", {"--scale", "2"}, kSoftware, 2048, 1536, {255, 0}},
                    Case{"IsForcedDown", {"--scale", "1"}, kCard, 2048, 1536, {255}},
                    Case{"IsForcedUpAndAveragedDown", {"--scale", "2"}, kCard, 1024, 768, {128}},
                    Case{"IsAveragedDownTwice", {"--scale", "4"}, kCard, 1024, 768, {64}},
                    Case{"IsOneMultipleMoreWhenSmooth", {"--smooth"}, kCard, 1024, 768, {128}},
                    Case{"IsSmoothInSoftwareOnRequest", {"--smooth"}, kSoftware, 1024, 768, {128}}),
    testing::PrintToStringParamName());

TEST(Sharpness, FollowsTheWindow) {
    const auto server = DisplayServer::virtual_screen(2148, 1636);
    const Viewer screen(server->name());
    Command command = test_show(*server, "comb", {"--window"});
    command.environment["TEST_RENDERER"] = kCard;
    Process show(command);
    ASSERT_TRUE(eventually([&] { return repeats(screen.picture(), {100, 100, 1024, 768}, {255}); }));
    screen.resize(screen.find_window("test-show"), 2048, 1536);
    EXPECT_TRUE(eventually([&] { return repeats(screen.picture(), {100, 100, 2048, 1536}, {255, 0}); }));
    screen.resize(screen.find_window("test-show"), 1024, 768);
    EXPECT_TRUE(eventually([&] { return repeats(screen.picture(), {100, 100, 1024, 768}, {255}); }));
    EXPECT_EQ("reshape 1024 768\nframe\n", show.output());
}

// Viewports, copies to textures and depths; with as many pixels as the screen has, and averaged down.
TEST(Sharpness, LeavesEverythingInItsPlace) {
    for (const auto& [scale, n] : {std::pair("2", 2), std::pair("4", 1)}) {
        const auto server = DisplayServer::virtual_screen(1024 * n, 768 * n);
        const Viewer screen(server->name());
        Process show(test_show(*server, "picture", {"--scale", scale}));
        const Place all = {0, 0, 1024 * n, 768 * n};
        EXPECT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), all); })) << scale;
    }
}

// Each swap at another multiple than the one before.
TEST(Sharpness, ChangesNothingThatTheShowCanAskGLForWhenTheWindowChanges) {
    const auto server = DisplayServer::virtual_screen(2148, 1636);
    Command command = test_show(*server, "resizes", {"--window"});
    command.environment["TEST_RENDERER"] = kCard;
    Process show(command);
    EXPECT_EQ(0, show.wait());
    EXPECT_EQ("", show.errors());
}

TEST(Sharpness, ThatCannotBeHadIsNamedInOneLine) {
    const auto server = DisplayServer::virtual_screen(1024, 768);
    const Viewer screen(server->name());
    Command command = test_show(*server, "picture", {"--scale", "3"});
    command.environment["MESA_GL_VERSION_OVERRIDE"] = "2.1";
    command.environment["MESA_EXTENSION_OVERRIDE"] = "-GL_ARB_framebuffer_object";
    Process show(command);
    EXPECT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {0, 0, 1024, 768}); }));
    EXPECT_EQ("test-show: this OpenGL cannot draw at the scale 3, it draws at 1\n", show.errors());
}

} // namespace
