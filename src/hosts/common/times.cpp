#include "hosts/common/times.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string_view>

namespace common {

namespace {

// Reads all of `text`, 1 to `most` decimal digits, as a number.
std::optional<std::int64_t> parse_digits(std::string_view text, std::size_t most) {
    if (text.empty() || text.size() > most) return std::nullopt;
    if (text.find_first_not_of("0123456789") != text.npos) return std::nullopt;
    std::int64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// Reads all of `text`, "12" or "12.345678", in millionths.
std::optional<std::int64_t> parse_millionths(const std::string& text) {
    const std::size_t point = text.find('.');
    const auto whole = parse_digits(text.substr(0, point), 9);
    if (!whole) return std::nullopt;
    if (point == text.npos) return *whole * kSecond;
    std::string decimals = text.substr(point + 1);
    if (decimals.empty()) return std::nullopt;
    if (decimals.size() < 6) decimals.resize(6, '0');
    const auto fraction = parse_digits(decimals, 6);
    if (!fraction) return std::nullopt;
    return *whole * kSecond + *fraction;
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
    const std::size_t colon = text.find(':');
    if (colon == text.npos) return parse_millionths(text);
    const auto minutes = parse_digits(text.substr(0, colon), 9);
    const auto seconds = parse_millionths(text.substr(colon + 1));
    if (!minutes || !seconds || *seconds >= 60 * kSecond) return std::nullopt;
    return *minutes * 60 * kSecond + *seconds;
}

std::optional<FrameRate> parse_rate(const std::string& text) {
    const std::size_t slash = text.find('/');
    const bool is_fraction = slash != text.npos;
    const auto frames = is_fraction ? parse_digits(text.substr(0, slash), 9) : parse_millionths(text);
    const auto seconds = is_fraction ? parse_digits(text.substr(slash + 1), 9) : std::optional(kSecond);
    if (!frames || !seconds) return std::nullopt;
    FrameRate rate{*frames, *seconds};
    while (!is_fraction && rate.seconds > 1 && rate.frames % 10 == 0) {
        rate.frames /= 10;
        rate.seconds /= 10;
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

} // namespace common
