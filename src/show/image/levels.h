// The level mapping of one plane, for the operations that are made of it.
#pragma once

#include <cstddef>
#include <cstdint>

// As image_levels, for in_lo < in_hi.
void map_levels(std::int32_t* values, std::size_t count, std::int32_t in_lo, std::int32_t in_hi,
                std::int32_t out_lo, std::int32_t out_hi);
