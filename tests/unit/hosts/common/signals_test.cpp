#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <chrono>
#include <csignal>
#include <thread>
#include <vector>

#include "hosts/common/signals.h"
#include "tests/unit/hosts/common/child.h"

namespace {

constexpr int kNotedInTime = 17;
constexpr auto kLongerThanOneRequest = std::chrono::milliseconds(300);

void default_signals() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) std::signal(number, SIG_DFL);
}

// Says that it is ready and waits for a signal: kNotedInTime once one is noted.
int wait_for_signal(const Child& child) {
    child.say_ready();
    while (common::noted_signal() == 0) usleep(1000);
    return kNotedInTime;
}

class EndingSignals : public testing::TestWithParam<int> {};

TEST_P(EndingSignals, AreNotedAndASecondOneEndsAtOnce) {
    Child child([](const Child& self) {
        default_signals();
        common::handle_signals();
        wait_for_signal(self);
        if (common::noted_signal() != GetParam()) return 1;
        self.say_ready();
        for (;;) pause();
    });
    child.wait_until_ready();
    child.send(GetParam());
    child.wait_until_ready();
    std::this_thread::sleep_for(kLongerThanOneRequest);
    child.send(GetParam());
    EXPECT_EQ(128 + GetParam(), child.wait());
}

INSTANTIATE_TEST_SUITE_P(Numbers, EndingSignals, testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT));

TEST(Signals, ThatTheProcessWasStartedToIgnoreStayIgnored) {
    Child child([](const Child& self) {
        default_signals();
        std::signal(SIGHUP, SIG_IGN);
        common::handle_signals();
        raise(SIGHUP);
        if (common::noted_signal() != 0) return 1;
        return wait_for_signal(self);
    });
    child.wait_until_ready();
    child.send(SIGTERM);
    EXPECT_EQ(kNotedInTime, child.wait());
}

TEST(Signals, SentTwiceAtOnceCountOnce) {
    Child child([](const Child&) {
        default_signals();
        common::handle_signals();
        raise(SIGTERM);
        raise(SIGTERM);
        return common::noted_signal();
    });
    EXPECT_EQ(SIGTERM, child.wait());
}

TEST(Signals, AreHandledByAnyThread) {
    Child child([](const Child&) {
        default_signals();
        common::handle_signals();
        std::thread([] { raise(SIGINT); }).join();
        return common::noted_signal();
    });
    EXPECT_EQ(SIGINT, child.wait());
}

// Fills a pipe whose reader reads nothing.
bool fill(int descriptor) {
    fcntl(descriptor, F_SETFL, O_NONBLOCK);
    const std::vector<char> block(4096);
    while (write(descriptor, block.data(), block.size()) > 0) {
    }
    return fcntl(descriptor, F_SETFL, 0) == 0;
}

TEST(Signals, EndAWriteThatItsReaderKeepsWaiting) {
    Child child([](const Child& self) {
        default_signals();
        common::handle_signals();
        int ends[2];
        if (pipe(ends) != 0 || !fill(ends[1])) return 1;
        self.say_ready();
        const std::vector<char> data(100'000);
        if (common::write_all(ends[1], data.data(), data.size())) return 2;
        return errno == EINTR ? kNotedInTime : 3;
    });
    child.wait_until_ready();
    std::this_thread::sleep_for(kLongerThanOneRequest); // most likely it waits by now
    child.send(SIGINT);
    EXPECT_EQ(kNotedInTime, child.wait());
}

TEST(Signals, EndAWaitInAnotherThread) {
    Child child([](const Child& self) {
        default_signals();
        common::handle_signals();
        int ends[2];
        if (pipe(ends) != 0) return 1;
        bool is_ready = true;
        std::thread waiting([&] { is_ready = common::wait_until_ready(ends[0], POLLIN); });
        wait_for_signal(self);
        waiting.join();
        return is_ready ? 2 : kNotedInTime;
    });
    child.wait_until_ready();
    child.send(SIGHUP);
    EXPECT_EQ(kNotedInTime, child.wait());
}

TEST(Writing, GoesOnAfterASignalWhileTheReaderReads) {
    Child child([](const Child&) {
        default_signals();
        common::handle_signals();
        raise(SIGINT);
        int ends[2];
        if (pipe(ends) != 0) return 1;
        std::size_t count = 0;
        std::thread reader([&] {
            char block[4096];
            for (ssize_t size; (size = read(ends[0], block, sizeof block)) > 0;)
                count += static_cast<std::size_t>(size);
        });
        const std::vector<char> data(10'000);
        const bool written = common::write_all(ends[1], data.data(), data.size());
        close(ends[1]);
        reader.join();
        return written && count == data.size() ? 0 : 2;
    });
    EXPECT_EQ(0, child.wait());
}

TEST(Writing, ToAPipeThatNobodyReadsFails) {
    Child child([](const Child&) {
        default_signals();
        common::handle_signals();
        int ends[2];
        if (pipe(ends) != 0) return 1;
        close(ends[0]);
        if (common::write_all(ends[1], "x", 1)) return 2;
        return errno == EPIPE ? 0 : 3;
    });
    EXPECT_EQ(0, child.wait());
}

} // namespace
