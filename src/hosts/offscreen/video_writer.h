// The show as a video file: H.264 (4:2:0, BT.709) and the music, with a chapter at every cue.
#pragma once

#include <memory>
#include <string>

#include "hosts/offscreen/show_frames.h"
#include "hosts/offscreen/sink.h"

class VideoWriter : public Sink {
public:
    // The extension of `path` chooses what the file is for and how it keeps the sound:
    //   .mp4   playing and sharing: AAC
    //   .mkv   archiving: FLAC
    //   .mov   editing, and joining ranges rendered apart: PCM
    // `crf` is x264's quality, 0 (lossless) to 51. The file is written under a provisional name until it is
    // whole. Throws Failure.
    VideoWriter(const std::string& path, const ShowFrames& frames, int crf);
    ~VideoWriter() override;

    void take(const Picture& picture) override;
    void finish() override;

    // Whether a video can be written under that name.
    static bool has_known_extension(const std::string& path);

private:
    class File;

    std::string path_;
    std::unique_ptr<File> file_;
};
