#include "hosts/desktop/display/sharpness.h"

#include <algorithm>
#include <cstring>

namespace desktop {
namespace {

using common::Box;
using common::Extent;
using common::kPicture;

constexpr int kLargestMultiple = 4;

// value * numerator / denominator, rounded to the nearest, at least 1.
int scaled(int value, int numerator, int denominator) {
    const long long product = static_cast<long long>(value) * numerator;
    return static_cast<int>(std::max(1LL, (product + denominator / 2) / denominator));
}

} // namespace

Box picture_place(Extent window) {
    Box box = {0, 0, window.width, window.height};
    const bool window_is_wider = static_cast<long long>(window.width) * kPicture.height >
                                 static_cast<long long>(window.height) * kPicture.width;
    if (window_is_wider) {
        box.width = scaled(window.height, kPicture.width, kPicture.height);
    } else {
        box.height = scaled(window.width, kPicture.height, kPicture.width);
    }
    box.x = (window.width - box.width) / 2;
    box.y = (window.height - box.height) / 2;
    return box;
}

bool draws_in_software(const char* renderer) {
    // "Software Rasterizer" is swrast, "SWR (" OpenSWR. Layers put the name into their own, as in
    // "zink Vulkan 1.3(llvmpipe (LLVM 15.0.6))" and "virgl (LLVMPIPE (LLVM 15.0.6))".
    for (const char* name :
         {"llvmpipe", "softpipe", "swrast", "Software Rasterizer", "SWR (", "Basic Render Driver"}) {
        if (renderer && strcasestr(renderer, name)) return true;
    }
    return false;
}

int Sharpness::multiple_for(Extent window) const {
    int multiple = forced;
    if (multiple == 0) {
        const Box place = picture_place(window);
        const int needed = std::max((place.width + kPicture.width - 1) / kPicture.width,
                                    (place.height + kPicture.height - 1) / kPicture.height);
        multiple = in_software ? 1 : std::min(needed, kLargestMultiple);
    }
    return smooth ? multiple + 1 : multiple;
}

} // namespace desktop
