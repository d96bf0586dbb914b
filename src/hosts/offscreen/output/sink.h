// Pictures and the sinks that take them. A sink takes the wanted pictures in the order of the show; what it makes
// gets its final name only when it is complete.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "hosts/common/frame_clock.h"

namespace offscreen {

struct PictureInfo {
    std::int64_t frame = 0;
    std::shared_ptr<const common::Played> sound; // what is heard from this frame's time on; null: nothing
};

struct Picture {
    PictureInfo info;
    int width = 0;
    int height = 0;
    // Not owned; four bytes each: red, green, blue, unused; the bottom row first.
    const std::uint8_t* pixels = nullptr;

    std::size_t stride() const { return static_cast<std::size_t>(width) * 4; }

    // Row `y` counted from the top.
    const std::uint8_t* row(int y) const {
        return pixels + static_cast<std::size_t>(height - 1 - y) * stride();
    }

    // Three bytes a pixel, red, green and blue, the top row first.
    std::vector<std::uint8_t> rgb() const;
};

class Sink {
public:
    virtual ~Sink() = default; // without finish: leaves nothing incomplete behind

    // Throws Failure when the picture cannot be written.
    virtual void take(const Picture& picture) = 0;

    // All wanted pictures were taken. Throws Failure when the result cannot be completed.
    virtual void finish() {}

    // The export was stopped after at least one picture: completes what is of use without the rest. Throws Failure.
    virtual void finish_early() {}

    // What remains of an export that ended early, after `pictures` were taken, for the message.
    virtual std::string kept(std::int64_t /*pictures*/) const { return "nothing was kept"; }
};

// "1 picture", "2 pictures"
std::string count_of_pictures(std::int64_t count);

enum class StreamFormat {
    y4m, // YUV4MPEG2: 4:2:0, BT.709, limited range; its header tells size and rate
    rgb, // three bytes a pixel, top row first, nothing between the pictures
};

// The sinks. Each throws Failure when it finds that the output cannot be written; `force` allows it to replace files
// without asking.

// PNG files of single moments. One time goes to the file `output`, unless that is a folder or ends in a slash;
// several go into the folder `output`, which is made if it is missing, under names such as 012.500.png.
std::unique_ptr<Sink> make_stills(const std::vector<common::ShowTime>& times,
                                  const common::ShowFrames& frames, const std::string& output, bool force);

// Every picture of `wanted` as a PNG file in `folder`, which is made if it is missing: frame-000000.png and so on,
// counted over the whole show, so that ranges rendered apart fit together.
std::unique_ptr<Sink> make_frame_folder(const std::string& folder, const common::FrameSet& wanted,
                                        bool force);

// The storyboard: a PNG file `path` with a small picture of each of kMoments, its time and its caption. The captions
// are set in Vera.ttf of the current folder.
std::unique_ptr<Sink> make_sheet(const std::string& path, const common::ShowFrames& frames, bool force);

// Bytes on `descriptor`, which stays open.
std::unique_ptr<Sink> make_stream(int descriptor, StreamFormat format, common::FrameRate rate);

// How x264 encodes.
struct VideoQuality {
    int crf = 18;                    // 0 (lossless) to 51
    const char* preset = "veryfast"; // x264's name for how much time it takes to make the file smaller
};

// A video file: H.264 (4:2:0, BT.709) and the music, with a chapter at every cue. The extension of `path` chooses
// what the file is for and how it holds the sound:
//   .mp4   playing and sharing: AAC
//   .mkv   archiving: FLAC
//   .mov   editing, and joining ranges rendered apart: PCM
std::unique_ptr<Sink> make_video(const std::string& path, const common::ShowFrames& frames,
                                 const VideoQuality& quality, bool force);

// Whether `path` has one of these extensions, in capitals or not.
bool is_video_name(const std::string& path);

} // namespace offscreen
