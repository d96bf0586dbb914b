// Where and how the picture stands on screens that have no 1024x768 mode.
#include <filesystem>

#include "tests/whole/display_test.h"

namespace {

struct Case {
    int width, height; // of the screen
    Place place;
};

std::ostream& operator<<(std::ostream& stream, const Case& value) {
    return stream << value.width << "x" << value.height;
}

class Scaling : public testing::TestWithParam<Case> {};

TEST_P(Scaling, FitsThePictureIntoTheScreenWithBlackAroundIt) {
    const auto server = DisplayServer::virtual_screen(GetParam().width, GetParam().height);
    const Viewer screen(server->name());
    Process show(test_show(*server));
    EXPECT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), GetParam().place); }));
    EXPECT_TRUE(show.running());
}

TEST_P(Scaling, ShowsTheWholeShowInTheSamePlace) {
    const auto server = DisplayServer::virtual_screen(GetParam().width, GetParam().height);
    const Viewer screen(server->name());
    TestFolder folder;
    const std::string started = folder / "started";
    Command command = show_at(*server, 40000);
    command.environment["TEST_CLOCK_STARTED"] = started;
    Process show(command);

    // At the peak of the flash at 40 s the letterbox, 614 lines above line 76, is white; less a margin for
    // the filter.
    const Place place = GetParam().place;
    const auto is_white_in_letterbox_only = [&] {
        const Pixels picture = screen.picture();
        const int top = place.y + 80 * place.height / 768, bottom = place.y + 690 * place.height / 768;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const bool outside =
                    x < place.x || x >= place.x + place.width || y < place.y || y >= place.y + place.height;
                const Color color = picture.at(x, y);
                if (outside && color != Color{0, 0, 0}) return false;
                const bool inside = x > place.x && x < place.x + place.width - 1 && y > top && y < bottom;
                if (inside && color != Color{255, 255, 255}) return false;
            }
        }
        return true;
    };
    const auto loading_screen_is_white = [&] {
        const Pixels picture = screen.picture();
        const int x = place.x + place.width / 8, y = place.y + place.height / 2;
        return picture.at(x, y) == Color{255, 255, 255};
    };
    EXPECT_TRUE(eventually(loading_screen_is_white)) << "loading";
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(started); }, std::chrono::minutes(4)));
    EXPECT_TRUE(eventually(is_white_in_letterbox_only)) << "the flash at 40 s";
    EXPECT_TRUE(show.running());
}

INSTANTIATE_TEST_SUITE_P(Screens, Scaling,
                         testing::Values(Case{1024, 768, {0, 0, 1024, 768}},
                                         Case{1280, 720, {160, 0, 960, 720}},
                                         Case{1920, 1080, {240, 0, 1440, 1080}},
                                         Case{800, 600, {0, 0, 800, 600}},
                                         Case{300, 500, {0, 138, 300, 225}}),
                         testing::PrintToStringParamName());

TEST(Scaling, AveragesFineDetailWhenTheScreenIsSmall) {
    const auto server = DisplayServer::virtual_screen(320, 240);
    const Viewer screen(server->name());
    Process show(test_show(*server, "stripes"));
    const auto is_even_grey = [&] {
        const Pixels picture = screen.picture();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const Color color = picture.at(x, y);
                if (color.red < 127 || color.red > 128) return false;
            }
        }
        return true;
    };
    EXPECT_TRUE(eventually(is_even_grey));
}

TEST(Scaling, MixesColorsAtEdgesWhenTheScreenIsLarge) {
    const auto server = DisplayServer::virtual_screen(1920, 1080);
    const Viewer screen(server->name());
    Process show(test_show(*server));
    const Place place = {240, 0, 1440, 1080};
    ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), place); }));

    // Down a column through the upper edge of the band: blue, one or two mixed lines, grey.
    const Pixels picture = screen.picture();
    int mixed = 0;
    for (int y = 100; y < 120; ++y) {
        const int red = picture.at(960, y).red;
        if (red > 0 && red < 128) ++mixed;
    }
    EXPECT_GE(mixed, 1);
    EXPECT_LE(mixed, 2);
}

TEST(Scaling, CoversTheScreenUnderAWindowManager) {
    const auto server = DisplayServer::virtual_screen(1280, 720);
    const Viewer screen(server->name());
    Process manager(Command{{"openbox"}, {{"DISPLAY", server->name()}}});
    ASSERT_TRUE(eventually([&] { return screen.is_managed(); })) << "install the package openbox";
    Process show(test_show(*server));
    EXPECT_TRUE(eventually([&] {
        return shows_test_picture(screen.picture(), {160, 0, 960, 720});
    })) << show.output()
        << show.errors();
}

// Without framebuffer objects the picture can only be drawn at its own size.
TEST(WithoutOffScreenSurface, ShowsThePictureInAWindowOfItsSize) {
    const auto server = DisplayServer::virtual_screen(1280, 1024);
    const Viewer screen(server->name());
    Command command = test_show(*server);
    command.environment["MESA_GL_VERSION_OVERRIDE"] = "2.1";
    command.environment["MESA_EXTENSION_OVERRIDE"] = "-GL_ARB_framebuffer_object";
    Process show(command);
    EXPECT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {0, 0, 1024, 768}); }));
    EXPECT_EQ("reshape 1024 768\nframe\n", show.output());
}

class Presenting : public testing::TestWithParam<std::string> {};

TEST_P(Presenting, ChangesNothingThatTheShowCanAskGLFor) {
    const auto server = DisplayServer::virtual_screen(300, 500);
    Process show(test_show(*server, "state", {"--scale", GetParam()}));
    EXPECT_EQ(0, show.wait());
    EXPECT_EQ("", show.errors());
}

INSTANTIATE_TEST_SUITE_P(Scales, Presenting, testing::Values("1", "2", "3"));

} // namespace
