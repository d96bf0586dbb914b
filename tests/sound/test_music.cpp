#include "tests/sound/test_music.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "hosts/common/mp3_stream.h"

std::vector<float> noise(double seconds, std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<float> samples(2 * static_cast<std::size_t>(seconds * common::kSoundRate));
    float left = 0;
    float right = 0;
    const auto next = [&random] { return (static_cast<float>(random() >> 8) / 8388608.0f - 1.0f) * 0.4f; };
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        left += 0.5f * (next() - left); // softer at the top, which an encoder keeps better
        right += 0.5f * (next() - right);
        samples[i] = left;
        samples[i + 1] = right;
    }
    return samples;
}

std::vector<float> sine(double seconds, double hertz, int rate, int channels) {
    const auto frames = static_cast<std::size_t>(seconds * rate);
    std::vector<float> samples;
    samples.reserve(frames * static_cast<std::size_t>(channels));
    for (std::size_t i = 0; i < frames; ++i) {
        const double phase = 2 * M_PI * hertz * static_cast<double>(i) / rate;
        for (int channel = 0; channel < channels; ++channel)
            samples.push_back(static_cast<float>(0.5 * std::sin(phase)));
    }
    return samples;
}

std::int64_t find_piece(const std::vector<float>& music, const float* piece, std::int64_t count,
                        std::int64_t from, std::int64_t to) {
    from = std::max<std::int64_t>(from, 0);
    to = std::min(to, static_cast<std::int64_t>(music.size() / 2) - count);
    std::int64_t best = -1;
    float least = 0.01f * 2 * static_cast<float>(count);
    for (std::int64_t at = from; at <= to; ++at) {
        float apart = 0;
        for (std::int64_t i = 0; i < 2 * count && apart < least; ++i)
            apart += std::fabs(music[static_cast<std::size_t>(2 * at + i)] - piece[i]);
        if (apart >= least) continue;
        least = apart;
        best = at;
    }
    return best;
}
