#include "hosts/offscreen/times.h"

#include <cstdio>

namespace {

// Reads digits from `position` on. Nothing when there is none, or more than fit comfortably.
std::optional<std::int64_t> parse_digits(const std::string& text, std::size_t& position) {
    const std::size_t begin = position;
    std::int64_t value = 0;
    while (position < text.size() && text[position] >= '0' && text[position] <= '9') {
        if (position - begin >= 9) return std::nullopt;
        value = value * 10 + (text[position++] - '0');
    }
    if (position == begin) return std::nullopt;
    return value;
}

// Reads "12" or "12.345678" from `position` to the end of the text, in millionths.
std::optional<std::int64_t> parse_millionths(const std::string& text, std::size_t position) {
    const auto whole = parse_digits(text, position);
    if (!whole) return std::nullopt;
    if (position == text.size()) return *whole * kSecond;
    if (text[position++] != '.') return std::nullopt;
    const std::size_t begin = position;
    auto fraction = parse_digits(text, position);
    if (!fraction || position != text.size() || position - begin > 6) return std::nullopt;
    for (std::size_t digits = position - begin; digits < 6; ++digits) *fraction *= 10;
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

std::optional<ShowTime> parse_time(const std::string& text) {
    std::size_t position = 0;
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos) return parse_millionths(text, position);
    const auto minutes = parse_digits(text, position);
    if (!minutes || position != colon) return std::nullopt;
    const auto rest = parse_millionths(text, colon + 1);
    if (!rest || *rest >= 60 * kSecond) return std::nullopt;
    return *minutes * 60 * kSecond + *rest;
}

std::optional<FrameRate> parse_rate(const std::string& text) {
    FrameRate rate;
    std::size_t position = 0;
    if (text.find('/') != std::string::npos) {
        const auto frames = parse_digits(text, position);
        if (!frames || text[position] != '/') return std::nullopt;
        const auto seconds = parse_digits(text, ++position);
        if (!seconds || position != text.size()) return std::nullopt;
        rate = {*frames, *seconds};
    } else {
        const auto millionths = parse_millionths(text, 0);
        if (!millionths) return std::nullopt;
        rate = {*millionths, kSecond};
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
