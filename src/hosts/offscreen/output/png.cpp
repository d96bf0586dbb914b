#include "hosts/offscreen/output/png.h"

#include <png.h>

#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <set>

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/output/output_file.h"

namespace fs = std::filesystem;

namespace offscreen {

void write_png(const Picture& picture, const std::string& path, bool replace) {
    OutputFile file(path, replace);
    const std::vector<std::uint8_t> rgb = picture.rgb();
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGB;
    image.flags = PNG_IMAGE_FLAG_FAST; // three times as fast as without, and no larger for these pictures
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<std::uint8_t> bytes(size);
    if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, rgb.data(), 0, nullptr)) {
        throw Failure("cannot write " + path + ": " + image.message);
    }
    file.write(bytes.data(), size);
    file.commit();
}

namespace {

// "012.500.png"
std::string still_name(common::ShowTime time) {
    if (time == common::kLoadingTime) return "loading.png";
    const std::string text = common::seconds_text(time);
    return std::string(7 - text.size(), '0') + text + ".png";
}

// "frame-000012.png"
std::string frame_name(std::int64_t frame) {
    char name[40];
    std::snprintf(name, sizeof name, "frame-%06" PRId64 ".png", frame);
    return name;
}

// PNG files, each of one picture.
class PngFiles : public Sink {
public:
    using Paths = std::set<std::pair<std::int64_t, std::string>>; // frame and path; a frame may go to several

    PngFiles(const Paths& paths, bool force) : paths_(paths) {
        std::vector<std::string> names;
        for (const auto& [frame, path] : paths) names.push_back(path);
        replace_ = check_outputs(names, force);
    }

    void take(const Picture& picture) override {
        const std::int64_t frame = picture.info.frame;
        for (auto at = paths_.lower_bound({frame, ""}); at != paths_.end() && at->first == frame; ++at) {
            write_png(picture, at->second, replace_);
        }
    }

    std::string kept(std::int64_t pictures) const override {
        return pictures == 0 ? Sink::kept(0) : count_of_pictures(pictures) + " kept";
    }

private:
    Paths paths_;
    bool replace_;
};

} // namespace

std::unique_ptr<Sink> make_stills(const std::vector<common::ShowTime>& times,
                                  const common::ShowFrames& frames, const std::string& output, bool force) {
    const bool into_folder = times.size() > 1 || is_folder(output);
    if (into_folder) make_folder(output);
    PngFiles::Paths paths;
    for (common::ShowTime time : times) {
        paths.emplace(frames.frame_on_screen_at(time),
                      into_folder ? (fs::path(output) / still_name(time)).string() : output);
    }
    return std::make_unique<PngFiles>(paths, force);
}

std::unique_ptr<Sink> make_frame_folder(const std::string& folder, const common::FrameSet& wanted,
                                        bool force) {
    make_folder(folder);
    PngFiles::Paths paths;
    for (std::int64_t frame : wanted) {
        paths.emplace_hint(paths.end(), frame, (fs::path(folder) / frame_name(frame)).string());
    }
    return std::make_unique<PngFiles>(paths, force);
}

} // namespace offscreen
