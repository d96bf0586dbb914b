// The operations once more, in the slowest and plainest way: one value at a time, straight from their
// definitions. The library must agree with them bit for bit.
#pragma once

#include <cstdint>

#include "tests/unit/show/image/support.h"

namespace reference {

// The generator as three shift registers that hand out one bit at a time.
class BitSerialGenerator {
public:
    BitSerialGenerator(std::uint32_t s1, std::uint32_t s2, std::uint32_t s3);
    std::uint32_t next();

private:
    // Bits of a sequence with b[j + k] = b[j + q] ^ b[j], `s` further on with each number.
    struct Register {
        int k, q, s;
        std::vector<bool> bits;
        std::uint32_t next();
    };
    Register registers_[3];
};

Picture noise(Picture p, std::int32_t amplitude, BitSerialGenerator& random);

Values plasma(std::int32_t width, std::int32_t height, bool tileable, std::int32_t amplitude,
              double roughness, BitSerialGenerator& random);

Picture convolve(const Picture& p, const Values& kernel, std::int32_t r, double divisor, std::int32_t bias);
Picture convolve_h(const Picture& p, const Values& kernel, std::int32_t r, double divisor, std::int32_t bias);
Picture convolve_v(const Picture& p, const Values& kernel, std::int32_t r, double divisor, std::int32_t bias);

Values blur_weights(std::int32_t r);
Values directional_weights(std::int32_t r, double angle, double aspect);
std::int32_t sum(const Values& weights);

Picture levels(Picture p, std::uint32_t mask, std::int32_t in_lo, std::int32_t in_hi, std::int32_t out_lo,
               std::int32_t out_hi);
Picture blend(Picture dst, const Picture& src, int mode, std::int32_t opacity);
Picture rank(const Picture& p, int which);
Picture shift(const Picture& p, std::int32_t dx, std::int32_t dy);
Picture shrink(const Picture& p, std::int32_t fx, std::int32_t fy);
Picture enlarge(const Picture& p, std::int32_t fx, std::int32_t fy);
Picture displace(const Picture& p, const Picture& map, std::int32_t sx, std::int32_t sy, bool two_planes);

} // namespace reference
