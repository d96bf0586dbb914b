#include "hosts/common/music.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <utility>

#include "hosts/common/show_files.h"

namespace common {

namespace {

// Added to what the show needs, so that the last frame before a cue's time still sees the position pass it.
constexpr std::int64_t kSpare = kSoundRate;

} // namespace

std::unique_ptr<Music> Music::open(const std::string& path, Mp3Error& error) {
    std::unique_ptr<Mp3Stream> stream = Mp3Stream::open(path.c_str(), error);
    if (!stream) return nullptr;
    return std::unique_ptr<Music>(new Music(path, std::move(stream)));
}

Music::Music(std::string name, std::unique_ptr<Mp3Stream> stream)
    : name_(std::move(name)), stream_(std::move(stream)),
      needed_(std::llround(needed_seconds(name_) * kSoundRate)),
      length_(std::max(stream_->length(), needed_ > 0 ? needed_ + kSpare : 0)) {}

std::size_t Music::read(float* out, std::size_t frames) {
    const std::size_t wanted = std::min(frames, static_cast<std::size_t>(length_ - position_));
    const std::size_t got = broken_ ? 0 : stream_->read(out, wanted);
    position_ += static_cast<std::int64_t>(got);
    if (got == wanted) return wanted;
    broken_ = true;
    if (position_ < std::max(needed_, stream_->length())) report_break();
    std::fill_n(out + kSoundChannels * got, kSoundChannels * (wanted - got), 0.0f);
    position_ += static_cast<std::int64_t>(wanted - got);
    return wanted;
}

void Music::seek(std::int64_t frame) {
    broken_ = frame > stream_->length() || !stream_->seek(frame);
    position_ = frame;
}

// Says once that the music breaks off at position_.
void Music::report_break() {
    if (reported_) return;
    reported_ = true;
    std::fprintf(stderr, "%s: %s breaks off at %.1f s: silence from there on\n",
                 program_invocation_short_name, name_.c_str(), static_cast<double>(position_) / kSoundRate);
}

} // namespace common
