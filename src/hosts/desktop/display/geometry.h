// Sizes and places in pixels, origin at the lower left as in GL.
#pragma once

namespace desktop {

struct Extent {
    int width, height;
};

struct Box {
    int x, y, width, height;
};

// The size of the picture that a show draws, whatever it is shown on.
constexpr Extent kPicture = {1024, 768};

// Where a picture goes in a window: as large as fits with its aspect kept, centred. At least one pixel each
// way; both sizes must be positive.
Box fit(Extent picture, Extent window);

} // namespace desktop
