#include "tests/whole/display_test.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "tests/whole/test_picture.h"

Command test_show(const DisplayServer& server, const std::string& task,
                  const std::vector<std::string>& arguments) {
    Command command{{TEST_SHOW_PROGRAM}, {{"DISPLAY", server.name()}, {"TEST_SHOW", task}}, DATA_DIRECTORY};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    return command;
}

Command show_at(const DisplayServer& server, int milliseconds) {
    return {{SKAV_ON_CLOCK_PROGRAM},
            {{"DISPLAY", server.name()},
             {"TEST_CLOCK_START_MS", std::to_string(milliseconds)},
             {"TEST_CLOCK_SPEED", "0"}},
            DATA_DIRECTORY};
}

namespace {

Color color(const Patch& patch) { return {patch.red, patch.green, patch.blue}; }

// The picture's colour in a box of pixels (y upwards) around a point, if it is the same in all of it.
bool one_color(double x, double y, double reach, Color& result) {
    const auto clamped = [](double value, int size) {
        return std::clamp(static_cast<int>(std::floor(value)), 0, size - 1);
    };
    const int left = clamped(x - reach, kPictureWidth), right = clamped(x + reach, kPictureWidth);
    const int low = clamped(y - reach, kPictureHeight), high = clamped(y + reach, kPictureHeight);
    result = color(top_patch(left, low));
    for (const auto& [column, row] : {std::pair(right, low), std::pair(left, high), std::pair(right, high)}) {
        if (color(top_patch(column, row)) != result) return false;
    }
    return true;
}

bool close_to(const Color& a, const Color& b) {
    return std::abs(a.red - b.red) <= 1 && std::abs(a.green - b.green) <= 1 && std::abs(a.blue - b.blue) <= 1;
}

} // namespace

bool shows_test_picture(const Pixels& screen, const Place& place) {
    const double scale = static_cast<double>(place.width) / kPictureWidth;
    const double reach = place.width == kPictureWidth ? 0 : 1 + 1 / scale; // of the filter, in picture pixels
    for (int y = 0; y < screen.height(); ++y) {
        for (int x = 0; x < screen.width(); ++x) {
            const bool inside =
                x >= place.x && x < place.x + place.width && y >= place.y && y < place.y + place.height;
            Color expected = {0, 0, 0};
            if (inside && !one_color((x - place.x + 0.5) / scale,
                                     kPictureHeight - (y - place.y + 0.5) / scale, reach, expected)) {
                continue;
            }
            if (!close_to(screen.at(x, y), expected)) return false;
        }
    }
    return true;
}

int count_lines(const std::string& text) {
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}
