#include "hosts/offscreen/frames/times.h"

#include <algorithm>
#include <cstdio>
#include <regex>

namespace offscreen {

namespace {

// Millionths of what the decimals `whole`.`fraction` give; the fraction has at most six digits.
std::int64_t millionths(const std::string& whole, std::string fraction) {
    fraction.resize(6, '0');
    return std::stoll(whole) * kSecond + std::stoll(fraction);
}

} // namespace

ShowTime FrameRate::time_of(std::int64_t index) const {
    return (index * seconds * kSecond + frames - 1) / frames;
}

std::int64_t FrameRate::first_frame_at(ShowTime time) const {
    return time <= 0 ? 0 : frame_on_screen_at(time - 1) + 1;
}

std::int64_t FrameRate::frame_on_screen_at(ShowTime time) const {
    return time * frames / (seconds * kSecond);
}

ShowFrames::ShowFrames(FrameRate rate) : rate_(rate), switch_(rate.first_frame_at(kPieces[1].from)) {
    count_ = first_frame_at(kShowEnd);
}

ShowTime ShowFrames::time_of(std::int64_t index) const {
    if (index == kLoadingFrame) return kLoadingTime;
    if (index <= switch_) return rate_.time_of(index);
    return kPieces[1].clock + rate_.time_of(index - switch_);
}

std::int64_t ShowFrames::first_frame_at(ShowTime time) const {
    const std::int64_t before = rate_.first_frame_at(time);
    if (before <= switch_) return before;
    const ShowTime in_piece = std::max<ShowTime>(time - kPieces[1].clock, 0);
    return switch_ + std::max<std::int64_t>(rate_.first_frame_at(in_piece), 1);
}

FrameSet ShowFrames::between(ShowTime from, ShowTime to) const {
    FrameSet frames;
    const std::int64_t end = first_frame_at(to);
    for (std::int64_t frame = first_frame_at(from); frame < end; ++frame) frames.insert(frames.end(), frame);
    return frames;
}

std::int64_t ShowFrames::frame_on_screen_at(ShowTime time) const {
    if (time == kLoadingTime) return kLoadingFrame;
    const std::int64_t after = first_frame_at(time);
    const std::int64_t frame = time_of(after) == time ? after : after - 1;
    return std::clamp<std::int64_t>(frame, 0, count_ - 1);
}

std::optional<ShowTime> parse_time(const std::string& text) {
    static const std::regex form(R"((?:(\d{1,9}):)?(\d{1,9})(?:\.(\d{1,6}))?)");
    std::smatch parts;
    if (!std::regex_match(text, parts, form)) return std::nullopt;
    const ShowTime seconds = millionths(parts[2], parts[3]);
    if (!parts[1].matched) return seconds;
    if (seconds >= 60 * kSecond) return std::nullopt;
    return std::stoll(parts[1]) * 60 * kSecond + seconds;
}

std::optional<FrameRate> parse_rate(const std::string& text) {
    static const std::regex form(R"((\d{1,9})(?:/(\d{1,9})|\.(\d{1,6}))?)");
    std::smatch parts;
    if (!std::regex_match(text, parts, form)) return std::nullopt;
    FrameRate rate;
    if (parts[2].matched) {
        rate = {std::stoll(parts[1]), std::stoll(parts[2])};
    } else {
        rate = {millionths(parts[1], parts[3]), kSecond};
        while (rate.seconds > 1 && rate.frames % 10 == 0) {
            rate.frames /= 10;
            rate.seconds /= 10;
        }
    }
    const bool in_range =
        rate.seconds > 0 && rate.frames >= rate.seconds && rate.frames <= 1000 * rate.seconds;
    if (!in_range) return std::nullopt;
    return rate;
}

std::string seconds_text(ShowTime time) {
    char text[32];
    std::snprintf(text, sizeof text, "%lld.%03d", static_cast<long long>(time / kSecond),
                  static_cast<int>(time % kSecond / 1000));
    return text;
}

} // namespace offscreen
