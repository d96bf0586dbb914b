#include "show/image/loops.h"

extern const Loops loops_plain;
#ifdef SKAV_X86_LOOPS
extern const Loops loops_avx2, loops_avx512;
#endif

namespace {

const Loops* g_in_use = nullptr;

} // namespace

const Loops* loops_variant(int index) {
    const Loops* variants[4] = {&loops_plain};
#ifdef SKAV_X86_LOOPS
    int n = 1;
    if (__builtin_cpu_supports("avx2")) variants[n++] = &loops_avx2;
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl")) {
        variants[n] = &loops_avx512;
    }
#endif
    return index < 0 || index > 3 ? nullptr : variants[index];
}

const Loops& loops() {
    if (!g_in_use) {
        for (int i = 0; const Loops* variant = loops_variant(i); ++i) g_in_use = variant;
    }
    return *g_in_use;
}

void loops_use(const Loops* variant) { g_in_use = variant; }
