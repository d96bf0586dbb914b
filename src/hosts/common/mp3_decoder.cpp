#include "hosts/common/mp3_decoder.h"

#include <fcntl.h>
#include <mpg123.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace common {

namespace {

constexpr std::size_t kFrameBytes = kSoundChannels * sizeof(float);

// A frame may draw on up to 511 bytes before it; at the lowest bit rates these span more than ten frames.
constexpr long kFramesBeforeSeekTarget = 24;

// The longest frame of a fixed bit rate: layer II, 384 kbit/s at 32 kHz, padded.
constexpr std::int64_t kLongestFrame = 1729; // bytes

// Opens `path` for reading if it is a file with something in it, else returns -1 and the reason.
int open_file(const char* path, Mp3Error& error) {
    int descriptor = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK); // a pipe must not be waited for
    if (descriptor < 0) {
        error = errno == ENOENT || errno == ENOTDIR ? Mp3Error::not_found : Mp3Error::unreadable;
        return -1;
    }
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0) {
        ::close(descriptor);
        error = Mp3Error::unreadable;
        return -1;
    }
    return descriptor;
}

// A number that the decoder knows about the file's gapless data, or -1.
long gapless_state(mpg123_handle* handle, int key) {
    long value = -1;
    if (mpg123_getstate(handle, key, &value, nullptr) != MPG123_OK) return -1;
    return value;
}

} // namespace

struct Mp3Decoder::File {
    int descriptor = -1;
    mpg123_handle* handle = nullptr;

    File() = default;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (handle) {
            mpg123_close(handle);
            mpg123_delete(handle);
        }
        if (descriptor >= 0) ::close(descriptor);
    }
};

Mp3Decoder::Mp3Decoder() : file_(std::make_unique<File>()) {}

Mp3Decoder::~Mp3Decoder() = default;

std::unique_ptr<Mp3Decoder> Mp3Decoder::open(const char* path, Mp3Error& error) {
    std::unique_ptr<Mp3Decoder> decoder(new Mp3Decoder);
    File& file = *decoder->file_;

    file.descriptor = open_file(path, error);
    if (file.descriptor < 0) return nullptr;

    error = Mp3Error::no_memory;
    static const int initialised = mpg123_init();
    if (initialised != MPG123_OK) return nullptr;
    file.handle = mpg123_new(nullptr, nullptr);
    if (!file.handle) return nullptr;

    // The music's bounds are kept here: the library drops its own gapless data once a file is truncated.
    mpg123_param(file.handle, MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_NO_FRANKENSTEIN, 0);
    mpg123_param(file.handle, MPG123_REMOVE_FLAGS, MPG123_GAPLESS | MPG123_AUTO_RESAMPLE, 0);
    mpg123_param(file.handle, MPG123_PREFRAMES, kFramesBeforeSeekTarget, 0);
    const long* rates = nullptr;
    std::size_t rate_count = 0;
    mpg123_rates(&rates, &rate_count);
    mpg123_format_none(file.handle);
    for (std::size_t i = 0; i < rate_count; ++i)
        mpg123_format(file.handle, rates[i], MPG123_STEREO, MPG123_ENC_FLOAT_32);

    error = Mp3Error::not_mp3;
    if (mpg123_open_fd(file.handle, file.descriptor) != MPG123_OK) return nullptr;
    if (!decoder->find_bounds()) return nullptr;
    if (!decoder->seek(0)) return nullptr;
    error = Mp3Error::none;
    return decoder;
}

// Finds the rate, and where the music begins and ends in what the file decodes to.
bool Mp3Decoder::find_bounds() {
    mpg123_handle* handle = file_->handle;
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (mpg123_getformat(handle, &rate, &channels, &encoding) != MPG123_OK) return false;
    if (channels != kSoundChannels || encoding != MPG123_ENC_FLOAT_32) return false;

    const std::int64_t promised = mpg123_length(handle);
    const std::int64_t first_frame = mpg123_framepos(handle);
    if (mpg123_scan(handle) != MPG123_OK) return false;
    const std::int64_t decoded = mpg123_length(handle);
    if (decoded <= 0) return false;

    // Any long file has bytes somewhere that look like a frame or two. In music, frames are most of what
    // follows the first one.
    struct stat status {};
    if (fstat(file_->descriptor, &status) != 0) return false;
    const std::int64_t frames = decoded / std::max(1, mpg123_spf(handle));
    if (status.st_size - first_frame > 2 * kLongestFrame * frames) return false;

    std::int64_t end = decoded;
    const long encoder_delay = gapless_state(handle, MPG123_ENC_DELAY);
    const long encoder_padding = gapless_state(handle, MPG123_ENC_PADDING);
    const long decoder_delay = gapless_state(handle, MPG123_DEC_DELAY);
    if (encoder_delay >= 0 && encoder_padding >= 0 && decoder_delay >= 0) {
        begin_ = encoder_delay + decoder_delay;
        const bool whole = decoded == promised;
        if (whole) end -= std::max(0L, encoder_padding - decoder_delay);
    }
    if (end <= begin_) return false;
    rate_ = static_cast<int>(rate);
    length_ = end - begin_;
    return true;
}

std::size_t Mp3Decoder::read(float* out, std::size_t frames) {
    const auto left = static_cast<std::size_t>(length_ - position_);
    const std::size_t wanted = std::min(frames, left);
    std::size_t got = 0;
    while (got < wanted) {
        std::size_t bytes = 0;
        const int result =
            mpg123_read(file_->handle, out + got * kSoundChannels, (wanted - got) * kFrameBytes, &bytes);
        got += bytes / kFrameBytes;
        if (result == MPG123_OK) continue;
        if (result != MPG123_NEW_FORMAT) break;
        long rate = 0; // from here on the file may be of another kind; only another rate ends the music
        int channels = 0;
        int encoding = 0;
        mpg123_getformat(file_->handle, &rate, &channels, &encoding);
        if (rate != rate_) break;
    }
    position_ += static_cast<std::int64_t>(got);
    return got;
}

bool Mp3Decoder::seek(std::int64_t frame) {
    const off_t target = begin_ + frame;
    if (mpg123_seek(file_->handle, target, SEEK_SET) != target) return false;
    position_ = frame;
    return true;
}

std::optional<double> Mp3Decoder::find_damage(double end) {
    mpg123_handle* handle = file_->handle;
    if (mpg123_seek_frame(handle, 0, SEEK_SET) != 0) return 0;
    std::int64_t expected = -1; // where the next frame should begin
    double time = 0;
    while (time < end) {
        const int result = mpg123_framebyframe_next(handle);
        if (result != MPG123_OK && result != MPG123_NEW_FORMAT) return {};
        mpg123_frameinfo info{};
        if (mpg123_info(handle, &info) != MPG123_OK || info.rate != rate_) return time;
        const std::int64_t at = mpg123_framepos(handle);
        if (expected >= 0 && at != expected) return time;
        expected = at + info.framesize;
        time += static_cast<double>(mpg123_spf(handle)) / rate_;
    }
    return {};
}

} // namespace common
