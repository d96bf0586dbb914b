#include "hosts/desktop/display/geometry.h"

#include <algorithm>

namespace desktop {
namespace {

// value * numerator / denominator, rounded to the nearest, at least 1.
int scaled(int value, int numerator, int denominator) {
    const long long product = static_cast<long long>(value) * numerator;
    return static_cast<int>(std::max(1LL, (product + denominator / 2) / denominator));
}

} // namespace

Box fit(Extent picture, Extent window) {
    Box box = {0, 0, window.width, window.height};
    const bool window_is_wider = static_cast<long long>(window.width) * picture.height >
                                 static_cast<long long>(window.height) * picture.width;
    if (window_is_wider) {
        box.width = scaled(window.height, picture.width, picture.height);
    } else {
        box.height = scaled(window.width, picture.height, picture.width);
    }
    box.x = (window.width - box.width) / 2;
    box.y = (window.height - box.height) / 2;
    return box;
}

} // namespace desktop
