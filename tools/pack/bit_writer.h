// Writes a bit stream, most significant bit first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class BitWriter {
public:
    // Appends the n lowest bits of value, 0 <= n <= 32.
    void write(unsigned value, int n) {
        for (int bit = n - 1; bit >= 0; --bit) {
            if (bit_count_ % 8 == 0) bytes_.push_back(0);
            if ((value >> bit) & 1u)
                bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | (0x80u >> (bit_count_ % 8)));
            ++bit_count_;
        }
    }

    // Appends the exponential-Golomb code (order 0) of value.
    void write_gamma(unsigned value) {
        int k = 0;
        while ((value + 1) >> (k + 1)) ++k;
        write(0, k);
        write(1, 1);
        write(value + 1 - (1u << k), k);
    }

    std::size_t bit_count() const { return bit_count_; }

    // All bits so far; the last byte is padded with zero bits.
    const std::vector<std::uint8_t>& bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
    std::size_t bit_count_ = 0;
};
