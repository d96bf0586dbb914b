#include "tests/support/mp3.h"

#include <lame/lame.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "hosts/common/mp3_stream.h"

namespace {

struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
    void operator()(lame_global_flags* lame) const { lame_close(lame); }
};

void require(bool fact, const char* what) {
    if (!fact) throw std::runtime_error(what);
}

} // namespace

void write_mp3(const std::string& path, const std::vector<float>& samples, const Mp3Options& options) {
    const std::unique_ptr<lame_global_flags, Closer> lame(lame_init());
    const std::unique_ptr<std::FILE, Closer> file(std::fopen(path.c_str(), "wb+"));
    require(lame && file, "cannot write the test's MP3 file");

    lame_set_in_samplerate(lame.get(), options.rate);
    lame_set_out_samplerate(lame.get(), options.rate);
    lame_set_num_channels(lame.get(), options.channels);
    lame_set_mode(lame.get(), options.channels == 1 ? MONO : JOINT_STEREO);
    lame_set_brate(lame.get(), options.bit_rate);
    lame_set_quality(lame.get(), 7);
    lame_set_bWriteVbrTag(lame.get(), options.info_tag ? 1 : 0);
    require(lame_init_params(lame.get()) >= 0, "LAME refuses the test's options");

    const auto frames = samples.size() / static_cast<std::size_t>(options.channels);
    std::vector<unsigned char> block(1 << 16);
    constexpr std::size_t kStep = 4096;
    const auto put = [&](int bytes) {
        require(bytes >= 0, "LAME failed");
        std::fwrite(block.data(), 1, static_cast<std::size_t>(bytes), file.get());
    };
    for (std::size_t at = 0; at < frames; at += kStep) {
        const auto count = static_cast<int>(std::min(kStep, frames - at));
        const float* in = samples.data() + at * static_cast<std::size_t>(options.channels);
        const auto size = static_cast<int>(block.size());
        put(options.channels == 1
                ? lame_encode_buffer_ieee_float(lame.get(), in, in, count, block.data(), size)
                : lame_encode_buffer_interleaved_ieee_float(lame.get(), in, count, block.data(), size));
    }
    put(lame_encode_flush(lame.get(), block.data(), static_cast<int>(block.size())));
    if (!options.info_tag) return;
    const std::size_t tag = lame_get_lametag_frame(lame.get(), block.data(), block.size());
    std::rewind(file.get());
    std::fwrite(block.data(), 1, tag, file.get());
}

std::vector<float> read_mp3(const std::string& path) {
    common::Mp3Error error = common::Mp3Error::none;
    const std::unique_ptr<common::Mp3Stream> stream = common::Mp3Stream::open(path.c_str(), error);
    if (!stream) throw std::runtime_error("cannot decode " + path);
    std::vector<float> samples(2 * static_cast<std::size_t>(stream->length()));
    samples.resize(2 * stream->read(samples.data(), samples.size() / 2));
    return samples;
}
