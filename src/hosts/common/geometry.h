// Sizes and places in pixels, origin at the lower left as in GL.
#pragma once

namespace common {

struct Extent {
    int width, height;
};

struct Box {
    int x, y, width, height;
};

// The size of the picture that the show draws.
constexpr Extent kPicture = {1024, 768};

} // namespace common
