// Sounds whose place can be told from any piece of them.
#pragma once

#include <cstdint>
#include <vector>

// `seconds` of stereo noise at 44.1 kHz, a different one per `seed`. No piece of it repeats.
std::vector<float> noise(double seconds, std::uint32_t seed);

// A sine of `hertz` on `channels` channels at `rate`.
std::vector<float> sine(double seconds, double hertz, int rate, int channels);

// The frame in [from, to] of `music` at which `count` frames of `piece`, both stereo, fit best, or -1 if they
// fit nowhere: louder than a hundredth of full scale apart on average.
std::int64_t find_piece(const std::vector<float>& music, const float* piece, std::int64_t count,
                        std::int64_t from, std::int64_t to);
