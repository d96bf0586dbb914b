// The picture that the test show draws, as rectangles in painting order: what is drawn and what is expected.
#pragma once

struct Patch {
    int x, y, width, height; // pixels, y upwards from the lower edge
    int red, green, blue;
};

constexpr int kPictureWidth = 1024;
constexpr int kPictureHeight = 768;

constexpr Patch kBackground = {0, 0, 1024, 768, 0, 0, 255};
constexpr Patch kBand = {0, 76, 1024, 614, 128, 128, 128}; // drawn as a viewport filled from edge to edge
constexpr Patch kReadBackLeft = {600, 200, 150, 300, 0, 255, 0};
constexpr Patch kReadBackRight = {750, 200, 150, 300, 255, 255, 0};
constexpr Patch kNear = {100, 300, 200, 200, 255, 0, 255}; // drawn before something that lies behind it
constexpr Patch kCorners[] = {{0, 0, 16, 16, 255, 255, 255},
                              {1008, 0, 16, 16, 255, 255, 0},
                              {0, 752, 16, 16, 0, 255, 255},
                              {1008, 752, 16, 16, 255, 0, 0}};

// The patch that is on top at a pixel, y upwards.
constexpr Patch top_patch(int x, int y) {
    Patch top = kBackground;
    const auto put = [&](const Patch& patch) {
        if (x >= patch.x && x < patch.x + patch.width && y >= patch.y && y < patch.y + patch.height)
            top = patch;
    };
    put(kBand);
    put(kReadBackLeft);
    put(kReadBackRight);
    put(kNear);
    for (const Patch& corner : kCorners) put(corner);
    return top;
}
