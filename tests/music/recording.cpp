#include "tests/music/recording.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "tests/support/mp3.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Biquad {
    double b0, b1, b2, a1, a2; // normalised by a0

    std::vector<double> operator()(const std::vector<double>& x) const {
        std::vector<double> y(x.size());
        double z1 = 0.0, z2 = 0.0;
        for (std::size_t i = 0; i < x.size(); ++i) {
            y[i] = b0 * x[i] + z1;
            z1 = b1 * x[i] - a1 * y[i] + z2;
            z2 = b2 * x[i] - a2 * y[i];
        }
        return y;
    }
};

Biquad normalised(double b0, double b1, double b2, double a0, double a1, double a2) {
    return {b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0};
}

// Root mean square of the 5 ms that end with each millisecond, as a multiple of its mean.
std::vector<double> amplitude_per_millisecond(const std::vector<double>& x) {
    std::vector<double> sum(x.size() + 1, 0.0);
    for (std::size_t i = 0; i < x.size(); ++i) sum[i + 1] = sum[i] + x[i] * x[i];
    std::vector<double> amplitude;
    const std::size_t window = kRate * 5 / 1000;
    for (std::size_t ms = 0;; ++ms) {
        std::size_t end = (ms + 1) * kRate / 1000;
        if (end > x.size()) break;
        std::size_t begin = end > window ? end - window : 0;
        amplitude.push_back(std::sqrt(std::max(0.0, sum[end] - sum[begin]) / static_cast<double>(window)));
    }
    double mean = 0.0;
    for (double a : amplitude) mean += a / static_cast<double>(amplitude.size());
    for (double& a : amplitude) a /= mean;
    return amplitude;
}

} // namespace

std::string path_of(const MusicFile& file) { return std::string(MUSIC_FOLDER) + "/" + file.name; }

double Recording::power(double begin, double end) const {
    auto first = static_cast<std::size_t>(std::lround(begin * kRate));
    auto last = std::min(left.size(), static_cast<std::size_t>(std::lround(end * kRate)));
    double sum = 0.0;
    for (std::size_t i = first; i < last; ++i) sum += left[i] * left[i] + right[i] * right[i];
    return first < last ? sum / (2.0 * static_cast<double>(last - first)) : 0.0;
}

const Recording& decode(const MusicFile& file) {
    static std::map<std::string, Recording> decoded;
    const auto [entry, is_new] = decoded.try_emplace(file.name);
    Recording& recording = entry->second;
    if (!is_new) return recording;
    const std::vector<float> samples = read_mp3(path_of(file));
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        recording.left.push_back(static_cast<double>(samples[i]));
        recording.right.push_back(static_cast<double>(samples[i + 1]));
    }
    return recording;
}

std::vector<double> mid(const Recording& recording) {
    std::vector<double> x(recording.left.size());
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = (recording.left[i] + recording.right[i]) / 2.0;
    return x;
}

std::vector<double> side(const Recording& recording) {
    std::vector<double> x(recording.left.size());
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = (recording.left[i] - recording.right[i]) / 2.0;
    return x;
}

std::vector<double> low_pass(const std::vector<double>& x, double frequency) {
    double w = 2.0 * kPi * frequency / kRate, alpha = std::sin(w) / std::sqrt(2.0), c = std::cos(w);
    return normalised((1 - c) / 2, 1 - c, (1 - c) / 2, 1 + alpha, -2 * c, 1 - alpha)(x);
}

std::vector<double> high_pass(const std::vector<double>& x, double frequency) {
    double w = 2.0 * kPi * frequency / kRate, alpha = std::sin(w) / std::sqrt(2.0), c = std::cos(w);
    return normalised((1 + c) / 2, -1 - c, (1 + c) / 2, 1 + alpha, -2 * c, 1 - alpha)(x);
}

std::vector<double> octave_band(const std::vector<double>& x, double centre) {
    double w = 2.0 * kPi * centre / kRate, c = std::cos(w);
    double alpha = std::sin(w) * std::sinh(std::log(2.0) / 2.0 * w / std::sin(w));
    Biquad filter = normalised(alpha, 0, -alpha, 1 + alpha, -2 * c, 1 - alpha);
    return filter(filter(x));
}

double mean_power(const std::vector<double>& x) {
    double sum = 0.0;
    for (double v : x) sum += v * v;
    return x.empty() ? 0.0 : sum / static_cast<double>(x.size());
}

double decibel(double power) { return 10.0 * std::log10(std::max(power, 1e-12)); }

const std::vector<double>& onset_strength(const MusicFile& file) {
    static std::map<std::string, std::vector<double>> computed;
    const auto [entry, is_new] = computed.try_emplace(file.name);
    std::vector<double>& strength = entry->second;
    if (!is_new) return strength;
    const std::vector<double> x = mid(decode(file));
    const std::array<std::vector<double>, 3> bands{
        amplitude_per_millisecond(low_pass(x, 150.0)),
        amplitude_per_millisecond(low_pass(high_pass(x, 150.0), 2000.0)),
        amplitude_per_millisecond(high_pass(x, 2000.0)),
    };
    strength.resize(bands[0].size());
    for (const std::vector<double>& amplitude : bands) {
        for (std::size_t ms = 0; ms < strength.size(); ++ms) {
            double before = ms >= 10 ? amplitude[ms - 10] : 0.0;
            strength[ms] += std::max(0.0, amplitude[ms] - before);
        }
    }
    return strength;
}
