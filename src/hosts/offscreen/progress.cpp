#include "hosts/offscreen/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "hosts/offscreen/frames/running_order.h"
#include "hosts/offscreen/output/sink.h"

namespace offscreen {

namespace {

constexpr int kSkippedCost = 1; // milliseconds of one processor core
constexpr int kBarLength = 30;
constexpr std::chrono::milliseconds kBetweenBars(100);

double seconds_between(std::chrono::steady_clock::time_point from, std::chrono::steady_clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

const Chapter& chapter_at(common::ShowTime time) {
    const Chapter* chapter = kChapters;
    while (chapter + 1 != std::end(kChapters) && chapter[1].time <= time) ++chapter;
    return *chapter;
}

// "3:05"
std::string minutes_text(double seconds) {
    const int whole = static_cast<int>(seconds + 0.5);
    char text[32];
    std::snprintf(text, sizeof text, "%d:%02d", whole / 60, whole % 60);
    return text;
}

} // namespace

Progress::Progress(bool quiet, const common::ShowFrames& frames, const common::FrameSet& wanted)
    : quiet_(quiet), frames_(frames), wanted_(wanted), terminal_(isatty(STDERR_FILENO) != 0) {
    for (auto frame = std::min<std::int64_t>(*wanted.begin(), 0); frame <= *wanted.rbegin(); ++frame)
        whole_cost_ += cost_of(frame);
}

int Progress::cost_of(std::int64_t frame) const {
    return wanted_.count(frame) != 0 ? chapter_at(frames_.time_of(frame)).cost : kSkippedCost;
}

void Progress::frame(std::int64_t frame) {
    if (cost_ == 0) begin_ = shown_ = Clock::now(); // the show's question has been answered
    cost_ += cost_of(frame);
    if (wanted_.count(frame) != 0 && drawn_++ == 0) first_drawn_ = Clock::now();
    if (quiet_) return;
    if (terminal_) {
        if (Clock::now() - shown_ < kBetweenBars) return;
        shown_ = Clock::now();
        const auto filled = static_cast<std::size_t>(done() * kBarLength);
        const std::string bar = std::string(filled, '#') + std::string(kBarLength - filled, '.');
        std::fprintf(stderr, "\r[%s] %s\033[K", bar.c_str(), status(frame).c_str());
        std::fflush(stderr);
        bar_shown_ = true;
    } else if (done() * 100 >= next_line_ && done() < 1.0) {
        std::fprintf(stderr, "%s\n", status(frame).c_str());
        while (done() * 100 >= next_line_) next_line_ = (next_line_ / 10 + 1) * 10;
    }
}

double Progress::done() const {
    return std::min(static_cast<double>(cost_) / static_cast<double>(whole_cost_), 1.0);
}

std::string Progress::status(std::int64_t frame) const {
    const auto now = Clock::now();
    const double drawing = std::max(seconds_between(first_drawn_, now), 1e-3);
    const double rate = drawn_ > 1 ? static_cast<double>(drawn_ - 1) / drawing : 0.0;
    const double left = seconds_between(begin_, now) * (1.0 - done()) / std::max(done(), 1e-6);
    char text[120];
    std::snprintf(text, sizeof text, "%3d%%  show %s s  %.1f frames/s  %s left",
                  static_cast<int>(done() * 100), common::seconds_text(frames_.time_of(frame)).c_str(), rate,
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
