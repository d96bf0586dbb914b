// The 1024x768 mode, on a server that has it.
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "tests/whole/display_test.h"

namespace {

class Mode : public testing::Test {
protected:
    void SetUp() override {
        if (geteuid() != 0) GTEST_SKIP() << "only root can start the X server whose modes are switched";
        server_ = DisplayServer::with_modes();
        screen_ = std::make_unique<Viewer>(server_->name());
        ASSERT_EQ("1280x960", screen_->mode());
    }

    bool shows_picture_in_mode() {
        return eventually([&] {
            return screen_->mode() == "1024x768" && shows_test_picture(screen_->picture(), {0, 0, 1024, 768});
        });
    }

    bool desktop_mode_is_back() {
        return eventually([&] { return screen_->mode() == "1280x960"; }, std::chrono::seconds(10));
    }

    std::unique_ptr<DisplayServer> server_;
    std::unique_ptr<Viewer> screen_;
};

TEST_F(Mode, IsEnteredAndTheShowIsToldItsSizeOnce) {
    Process show(test_show(*server_));
    EXPECT_TRUE(shows_picture_in_mode());
    EXPECT_EQ("reshape 1024 768\nframe\n", show.output());
}

TEST_F(Mode, IsNotEnteredForAWindow) {
    Process show(test_show(*server_, "picture", {"--window"}));
    EXPECT_TRUE(eventually([&] { return shows_test_picture(screen_->picture(), {100, 100, 1024, 768}); }));
    EXPECT_EQ("1280x960", screen_->mode());
}

TEST_F(Mode, IsNotEnteredWhenTheUserKeepsTheirs) {
    Process show(test_show(*server_, "picture", {"--keep-mode"}));
    EXPECT_TRUE(eventually([&] { return shows_test_picture(screen_->picture(), {0, 0, 1280, 960}); }));
    EXPECT_EQ("1280x960", screen_->mode());
}

TEST_F(Mode, IsLeftAtTheEnd) {
    Command command = test_show(*server_);
    command.environment["TEST_SHOW_SECONDS"] = "3";
    Process show(command);
    EXPECT_TRUE(shows_picture_in_mode());
    EXPECT_EQ(7, show.wait());
    EXPECT_EQ("1280x960", screen_->mode());
    EXPECT_EQ("", show.errors());
}

TEST_F(Mode, IsLeftOnSignals) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        Process show(test_show(*server_));
        ASSERT_TRUE(shows_picture_in_mode());
        show.send(number);
        EXPECT_EQ(128 + number, show.wait());
        EXPECT_EQ("1280x960", screen_->mode()) << "after signal " << number;
    }
}

TEST_F(Mode, IsLeftWhenTheShowIsKilledOrCrashes) {
    for (const int number : {SIGKILL, SIGABRT, SIGSEGV}) {
        Process show(test_show(*server_));
        ASSERT_TRUE(shows_picture_in_mode());
        show.send(number);
        show.wait();
        EXPECT_TRUE(desktop_mode_is_back()) << "after signal " << number;
    }
}

TEST_F(Mode, ThatTheUserChoosesMeanwhileIsFilledAndStays) {
    for (const int number : {SIGTERM, SIGKILL}) {
        Process show(test_show(*server_));
        ASSERT_TRUE(shows_picture_in_mode());
        screen_->set_mode("800x600");
        EXPECT_TRUE(eventually([&] { return shows_test_picture(screen_->picture(), {0, 0, 800, 600}); }));
        show.send(number);
        show.wait();
        EXPECT_FALSE(eventually([&] { return screen_->mode() != "800x600"; }, std::chrono::seconds(1)))
            << "after signal " << number;
        screen_->set_mode("1280x960");
    }
}

TEST_F(Mode, IsNotPutBackOnAMonitorThatTheUserHasSwitchedOff) {
    for (const int number : {SIGTERM, SIGKILL}) {
        Process show(test_show(*server_));
        ASSERT_TRUE(shows_picture_in_mode());
        screen_->switch_off();
        ASSERT_EQ("", screen_->mode());
        show.send(number);
        show.wait();
        EXPECT_FALSE(eventually([&] { return screen_->mode() != ""; }, std::chrono::seconds(1)))
            << "after signal " << number;
        screen_->set_mode("1280x960");
    }
}

TEST_F(Mode, IsPutBackBesideAMonitorThatTheUserHasSwitchedOff) {
    for (const int number : {SIGTERM, SIGKILL}) {
        screen_->set_mode("800x600", 1, 1280);
        Process show(test_show(*server_));
        ASSERT_TRUE(shows_picture_in_mode());
        screen_->switch_off(1);
        show.send(number);
        show.wait();
        EXPECT_TRUE(desktop_mode_is_back()) << "after signal " << number;
        EXPECT_EQ("", screen_->mode(1)) << "after signal " << number;
    }
}

TEST_F(Mode, OfAnotherMonitorStaysAsItIs) {
    screen_->set_mode("800x600", 1, 1280);
    Process show(test_show(*server_));
    ASSERT_TRUE(shows_picture_in_mode());
    EXPECT_EQ("800x600", screen_->mode(1));
    show.send(SIGTERM);
    show.wait();
    EXPECT_EQ("1280x960", screen_->mode());
    EXPECT_EQ("800x600", screen_->mode(1));
}

// The connection to the process that puts the mode back must not be taken for standard input or output.
TEST_F(Mode, IsKeptWithoutStandardInputAndOutput) {
    Command command = test_show(*server_);
    const std::string program = command.arguments.front();
    command.arguments = {"sh", "-c", "exec \"$0\" <&- >&- 2>&-", program};
    Process show(command);
    ASSERT_TRUE(shows_picture_in_mode());
    EXPECT_FALSE(eventually([&] { return screen_->mode() != "1024x768"; }, std::chrono::seconds(1)));
    show.send(SIGKILL);
    show.wait();
    EXPECT_TRUE(desktop_mode_is_back());
}

// Otherwise another client could change the layout between the reading and the change that is made of it.
TEST_F(Mode, IsChangedUnderTheServerGrabUnderWhichItWasRead) {
    const TestFolder folder;
    Command command = test_show(*server_);
    command.environment["TEST_X_CALLS"] = folder / "calls";
    Process show(command);
    ASSERT_TRUE(shows_picture_in_mode());
    show.send(SIGTERM);
    show.wait();

    std::ifstream calls(folder / "calls");
    bool grabbed = false, read = false;
    int changes = 0;
    for (std::string call; calls >> call;) {
        if (call == "grab" || call == "ungrab") {
            grabbed = call == "grab";
            read = false;
        } else if (call == "read") {
            read = grabbed;
            EXPECT_TRUE(grabbed || changes > 0) << "the layout is read before the server is grabbed";
        } else {
            ++changes;
            EXPECT_TRUE(grabbed && read)
                << "the layout is changed without having been read under the same grab";
        }
    }
    EXPECT_GE(changes, 4) << "off and on, twice";
}

} // namespace
