#include "hosts/offscreen/stills.h"

#include <filesystem>

#include "hosts/offscreen/png_file.h"

namespace fs = std::filesystem;

namespace {

std::string file_name(ShowTime time) {
    if (time == kLoadingTime) return "loading.png";
    const std::string text = seconds_text(time);
    return std::string(7 - text.size(), '0') + text + ".png";
}

} // namespace

Stills::Stills(const std::vector<ShowTime>& times, const ShowFrames& frames, const std::string& output) {
    const bool into_folder = times.size() > 1 || output.back() == '/' || fs::is_directory(output);
    if (into_folder) make_folder(output);
    for (ShowTime time : times) {
        const std::string path = into_folder ? (fs::path(output) / file_name(time)).string() : output;
        expect_writable(path);
        const std::int64_t frame = frames.frame_on_screen_at(time);
        frames_.add(frame, frame + 1);
        paths_.emplace(frame, path);
    }
}

void Stills::take(const Picture& picture) {
    const auto [begin, end] = paths_.equal_range(picture.info.frame);
    for (auto path = begin; path != end; ++path) write_png(picture, path->second);
}
