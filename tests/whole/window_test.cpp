// What a user can do to the program and its window.
#include <csignal>

#include "tests/whole/display_test.h"

namespace {

const std::string kClass = "test-show";

TEST(Window, KeepsTheAspectWhenItIsResizedAndTellsTheShowOneSize) {
    const auto server = DisplayServer::virtual_screen(1280, 1024);
    const Viewer screen(server->name());
    Process show(test_show(*server, "picture", {"--window"}));
    ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {100, 100, 1024, 768}); }));
    screen.resize(screen.find_window(kClass), 900, 400);
    EXPECT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {283, 100, 533, 400}); }));
    screen.resize(screen.find_window(kClass), 400, 600);
    EXPECT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {100, 250, 400, 300}); }));
    EXPECT_EQ("reshape 1024 768\nframe\n", show.output());
}

TEST(Window, IsFollowedWhenItIsResizedDuringALongCallback) {
    const auto server = DisplayServer::virtual_screen(1280, 1024);
    const Viewer screen(server->name());
    Process show(test_show(*server, "busy", {"--window"}));
    ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {100, 100, 1024, 768}); }));
    screen.resize(screen.find_window(kClass), 512, 384);
    EXPECT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {100, 100, 512, 384}); }));
}

class Closing : public testing::TestWithParam<std::string> {};

TEST_P(Closing, EndsTheProcessWithStatus0) {
    const auto server = DisplayServer::virtual_screen(1280, 1024);
    const Viewer screen(server->name());
    Process show(test_show(*server, GetParam(), {"--window"}));
    ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {100, 100, 1024, 768}); }));
    screen.ask_to_close(screen.find_window(kClass));
    EXPECT_EQ(0, show.wait());
    EXPECT_EQ("", show.errors());
}

INSTANTIATE_TEST_SUITE_P(Callbacks, Closing, testing::Values("picture", "busy"));

TEST_P(Closing, ByAnotherClientEndsTheProcessWithStatus0) {
    const auto server = DisplayServer::virtual_screen(1280, 1024);
    const Viewer screen(server->name());
    Process show(test_show(*server, GetParam(), {"--window"}));
    ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {100, 100, 1024, 768}); }));
    screen.destroy(screen.find_window(kClass));
    EXPECT_EQ(0, show.wait());
    EXPECT_EQ("", show.errors());
}

TEST_P(Closing, ByEndingItsConnectionEndsTheProcessWithStatus0) {
    const auto server = DisplayServer::virtual_screen(1280, 1024);
    const Viewer screen(server->name());
    Process show(test_show(*server, GetParam(), {"--window"}));
    ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {100, 100, 1024, 768}); }));
    screen.kill_client_of(screen.find_window(kClass));
    EXPECT_EQ(0, show.wait());
    EXPECT_EQ("", show.errors());
}

TEST(XErrors, ThatNobodyExpectsEndTheProcessWithOneLine) {
    const auto server = DisplayServer::virtual_screen(640, 480);
    Process show(test_show(*server, "error"));
    EXPECT_EQ(1, show.wait());
    EXPECT_EQ(
        "test-show: the X server has refused a request: BadWindow (invalid Window parameter) (request 8.0)\n",
        show.errors());
}

TEST(WindowManager, ThatWasKilledDoesNotKeepTheShowFromPlaying) {
    const auto server = DisplayServer::virtual_screen(640, 480);
    const Viewer screen(server->name());
    screen.leave_mark_of_dead_window_manager();
    Process show(test_show(*server));
    EXPECT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {0, 0, 640, 480}); }));
    EXPECT_EQ("", show.errors());
}

TEST(Window, IsPlayedOnWhileItIsHidden) {
    const auto server = DisplayServer::virtual_screen(1280, 1024);
    const Viewer screen(server->name());
    Command command = test_show(*server, "picture", {"--window"});
    command.environment["TEST_SHOW_SECONDS"] = "4";
    Process show(command);
    ASSERT_TRUE(eventually([&] { return screen.find_window(kClass) != None; }));
    ASSERT_TRUE(eventually([&] { return count_lines(show.output()) == 2; }));
    screen.unmap(screen.find_window(kClass));
    ASSERT_TRUE(show.running()) << "hidden too late";
    EXPECT_EQ(7, show.wait(std::chrono::seconds(60)));
}

TEST(Window, HidesThePointer) {
    const auto server = DisplayServer::virtual_screen(1280, 720, {"-retro"}); // a pointer from the start
    const Viewer screen(server->name());
    screen.move_pointer(640, 360);
    ASSERT_NE(0, screen.visible_pointer_pixels());
    Process show(test_show(*server));
    EXPECT_TRUE(eventually([&] { return screen.visible_pointer_pixels() == 0; }));
}

class Signals : public testing::TestWithParam<std::pair<int, std::string>> {};

TEST_P(Signals, EndTheProcessInOrder) {
    const auto server = DisplayServer::virtual_screen(640, 480);
    const Viewer screen(server->name());
    Process show(test_show(*server, GetParam().second));
    ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {0, 0, 640, 480}); }));
    show.send(GetParam().first);
    EXPECT_EQ(128 + GetParam().first, show.wait());
    EXPECT_EQ("", show.errors());
}

INSTANTIATE_TEST_SUITE_P(Numbers, Signals,
                         testing::Values(std::pair<int, std::string>(SIGINT, "picture"),
                                         std::pair<int, std::string>(SIGTERM, "picture"),
                                         std::pair<int, std::string>(SIGHUP, "picture"),
                                         std::pair<int, std::string>(SIGQUIT, "picture"),
                                         std::pair<int, std::string>(SIGINT, "busy")));

// Starts the whole show where it cannot play, and expects one line that names what is missing.
void expect_one_line(const std::map<std::string, std::optional<std::string>>& environment,
                     const std::string& missing) {
    Process show(Command{{SKAV_ON_CLOCK_PROGRAM}, environment, DATA_DIRECTORY});
    EXPECT_EQ(1, show.wait());
    EXPECT_EQ(1, count_lines(show.errors())) << show.errors();
    EXPECT_NE(std::string::npos, show.errors().find(missing)) << show.errors();
    EXPECT_EQ("German or English Text [G/e]?: German screen text...\n\n", show.output());
}

TEST(WithoutDisplay, SaysThatDisplayIsNotSet) {
    expect_one_line({{"DISPLAY", std::nullopt}, {"WAYLAND_DISPLAY", std::nullopt}},
                    "no display: $DISPLAY is not set");
}

TEST(WithoutDisplay, SaysWhatToDoInAWaylandSession) {
    expect_one_line({{"DISPLAY", std::nullopt}, {"WAYLAND_DISPLAY", "wayland-0"}}, "xwayland");
}

TEST(WithoutDisplay, SaysThatTheServerCannotBeReached) {
    const std::string nobodys = ":54321"; // servers count their numbers from 0
    expect_one_line({{"DISPLAY", nobodys}}, "'" + nobodys + "'");
}

TEST(WithoutDisplay, SaysThatTheServerHasNoOpenGL) {
    const auto server = DisplayServer::virtual_screen(320, 240, {"-extension", "GLX"});
    expect_one_line({{"DISPLAY", server->name()}}, "OpenGL");
}

class LostServer : public testing::TestWithParam<std::string> {};

TEST_P(LostServer, EndsTheProcessWithOneLine) {
    const auto server = DisplayServer::virtual_screen(640, 480);
    Process show(test_show(*server, GetParam()));
    {
        const Viewer screen(server->name());
        ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {0, 0, 640, 480}); }));
    }
    server->end();
    EXPECT_EQ(1, show.wait());
    EXPECT_EQ(1, count_lines(show.errors())) << show.errors();
    EXPECT_EQ("reshape 1024 768\nframe\n", show.output());
}

// The test's own connections are closed before: they would wait as well.
TEST_P(LostServer, ThatOnlyHangsLetsOneSignalEndTheProcess) {
    const auto server = DisplayServer::virtual_screen(640, 480);
    Process show(test_show(*server, GetParam()));
    {
        const Viewer screen(server->name());
        ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {0, 0, 640, 480}); }));
    }
    server->freeze();
    std::this_thread::sleep_for(std::chrono::milliseconds(300)); // the show waits for an answer
    show.send(SIGTERM);
    EXPECT_EQ(128 + SIGTERM, show.wait());
    EXPECT_EQ("", show.errors());
}

INSTANTIATE_TEST_SUITE_P(Callbacks, LostServer, testing::Values("picture", "busy"));

TEST(WholeShow, EndsByItselfWithStatus0) {
    const auto server = DisplayServer::virtual_screen(320, 240);
    Process show(show_at(*server, 162000));
    EXPECT_EQ(0, show.wait(std::chrono::minutes(4)));
    EXPECT_EQ("", show.errors());
    EXPECT_EQ("German or English Text [G/e]?: German screen text...\n\n", show.output());
}

// One frame a second: 75 up to 74.0 s, where the second piece begins at 74.3 s, then 87 up to 161.3 s.
TEST(Statistics, CountTheFramesOfTheWholeShow) {
    const auto server = DisplayServer::virtual_screen(320, 240);
    Command command = show_at(*server, 0);
    command.arguments.push_back("--stats");
    command.environment["TEST_CLOCK_STEP_MS"] = "1000";
    Process show(command);
    EXPECT_EQ(0, show.wait(std::chrono::minutes(4)));
    EXPECT_EQ(0u, show.errors().find("skav-on-clock: what was shown:\nframes shown: 162 in "))
        << show.errors();
    EXPECT_EQ(5, count_lines(show.errors())) << show.errors();
}

} // namespace
