// The 1024x768 mode, on a server that has it.
#include <unistd.h>

#include <csignal>

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

} // namespace
