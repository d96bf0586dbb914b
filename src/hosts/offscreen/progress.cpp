#include "hosts/offscreen/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "hosts/offscreen/output/sink.h"

namespace offscreen {

namespace {

constexpr double kSkippedCost = 0.03; // time of a skipped frame, relative to a drawn one
constexpr int kBarLength = 30;
constexpr std::chrono::milliseconds kBetweenBars(100);

double seconds_between(std::chrono::steady_clock::time_point from, std::chrono::steady_clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

// "3:05"
std::string minutes_text(double seconds) {
    const int whole = static_cast<int>(seconds + 0.5);
    char text[32];
    std::snprintf(text, sizeof text, "%d:%02d", whole / 60, whole % 60);
    return text;
}

} // namespace

Progress::Progress(bool quiet, std::int64_t to_draw, std::int64_t to_skip)
    : quiet_(quiet), terminal_(isatty(STDERR_FILENO) != 0), to_draw_(to_draw), to_skip_(to_skip),
      begin_(Clock::now()), shown_(begin_), first_drawn_(begin_) {}

void Progress::frame(common::ShowTime time, bool drawn) {
    if (drawn_ == 0 && drawn) first_drawn_ = Clock::now();
    ++(drawn ? drawn_ : skipped_);
    if (quiet_) return;
    if (terminal_) {
        if (Clock::now() - shown_ < kBetweenBars) return;
        shown_ = Clock::now();
        const auto filled = static_cast<std::size_t>(done() * kBarLength);
        const std::string bar = std::string(filled, '#') + std::string(kBarLength - filled, '.');
        std::fprintf(stderr, "\r[%s] %s\033[K", bar.c_str(), status(time).c_str());
        std::fflush(stderr);
        bar_shown_ = true;
    } else if (done() * 100 >= next_line_ && done() < 1.0) {
        std::fprintf(stderr, "%s\n", status(time).c_str());
        while (done() * 100 >= next_line_) next_line_ += 10;
    }
}

double Progress::done() const {
    const double total = static_cast<double>(to_draw_) + kSkippedCost * static_cast<double>(to_skip_);
    const double now = static_cast<double>(drawn_) + kSkippedCost * static_cast<double>(skipped_);
    return total > 0.0 ? std::clamp(now / total, 0.0, 1.0) : 1.0;
}

std::string Progress::status(common::ShowTime time) const {
    const auto now = Clock::now();
    const double drawing = std::max(seconds_between(first_drawn_, now), 1e-3);
    const double rate = drawn_ > 1 ? static_cast<double>(drawn_ - 1) / drawing : 0.0;
    const double left = seconds_between(begin_, now) * (1.0 - done()) / std::max(done(), 1e-6);
    char text[120];
    std::snprintf(text, sizeof text, "%3d%%  show %s s  %.1f frames/s  %s left",
                  static_cast<int>(done() * 100), common::seconds_text(time).c_str(), rate,
                  minutes_text(left).c_str());
    return text;
}

void Progress::complete(const std::string& what, std::int64_t pictures) {
    clear();
    if (quiet_) return;
    const double drawing = std::max(seconds_between(first_drawn_, Clock::now()), 1e-3);
    std::fprintf(stderr, "%s: %s in %.1f s (%.1f per second)\n", what.c_str(),
                 count_of_pictures(pictures).c_str(), drawing, static_cast<double>(pictures) / drawing);
}

void Progress::clear() {
    if (!bar_shown_) return;
    std::fprintf(stderr, "\r\033[K");
    bar_shown_ = false;
}

} // namespace offscreen
