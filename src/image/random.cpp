#include "image/random.h"

RandomState g_random = {0x31C95435, 0x1201F90A, 0x76C30533};

std::uint32_t random_next() { return random_step(g_random); }

std::uint32_t random_seed(std::uint32_t seed) {
    g_random = {seed, 0, ~seed};
    return random_next();
}
