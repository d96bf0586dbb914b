#include "hosts/offscreen/frame_folder.h"

#include <cinttypes>
#include <cstdio>

#include "hosts/offscreen/png_file.h"

FrameFolder::FrameFolder(const std::string& folder) : folder_(folder) {
    make_folder(folder);
    expect_writable(folder + "/frame");
}

void FrameFolder::take(const Picture& picture) {
    char name[40];
    std::snprintf(name, sizeof name, "/frame-%06" PRId64 ".png", picture.info.frame);
    write_png(picture, folder_ + name);
}
