// The image operations that scenes use, at the sizes at which they use them, with each variant of the inner loops.
// Every benchmark also times a memcpy of the same planes in the same run and reports `x_memcpy`, the quotient of the
// shortest times of both: the figure to compare between machines and commits. Plasma, whose cost is mostly random
// numbers, also reports `x_draws`, its time relative to a loop that only draws as many.
#include <GL/glu.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "show/image/filters.h"
#include "show/image/generators.h"
#include "show/image/loops.h"
#include "show/image/noise.h"
#include "show/image/random.h"
#include "show/image/upload.h"
#include "tests/support/image.h"

// GL functions that do nothing: only the conversion to bytes is measured.
extern "C" {
void glGenTextures(GLsizei, GLuint* names) { *names = 1; }
void glBindTexture(GLenum, GLuint) {}
void glTexParameteri(GLenum, GLenum, GLint) {}
GLenum glGetError() { return GL_NO_ERROR; }
GLint gluBuild2DMipmaps(GLenum, GLint, GLsizei, GLsizei, GLenum, GLenum, const void* pixels) {
    benchmark::DoNotOptimize(pixels);
    return 0;
}
}

namespace {

using Operation = std::function<void(Image*)>;

ImagePtr noisy_image(int width, int height, unsigned flags) {
    ImagePtr img(image_create(width, height, flags));
    image_fill(img.get(), 0xFF808080);
    image_noise(img.get(), 32000);
    return img;
}

double seconds_of(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// Copies the colour planes of an image to memory that is already allocated.
struct PlaneCopy {
    std::vector<std::vector<std::int32_t>> copies;

    void run(const Image* img) {
        const std::int32_t* const planes[] = {img->green, img->red, img->blue};
        copies.resize(3);
        for (std::size_t i = 0; i < 3; ++i) {
            if (!planes[i]) continue;
            copies[i].resize(image_count(img));
            std::memcpy(copies[i].data(), planes[i], image_count(img) * sizeof(std::int32_t));
            benchmark::DoNotOptimize(copies[i].data());
            benchmark::ClobberMemory();
        }
    }
};

// Restores the original values, so that an operation does not work on its own result.
void restore(Image* img, const Image* original) { image_blend(img, original, kMixReplace, 256); }

void draw_numbers(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) benchmark::DoNotOptimize(random_next());
}

struct Case {
    std::string name;
    int width, height;
    unsigned flags;
    Operation operation;
    bool compare_draws = false;
};

void measure(benchmark::State& state, const Case& c, const Loops* variant) {
    loops_use(variant);
    const ImagePtr img = noisy_image(c.width, c.height, c.flags);
    const ImagePtr original(image_copy(img.get()));
    const std::size_t draws = image_count(img.get()) * (image_has_three_planes(img.get()) ? 3 : 1);
    PlaneCopy copy;
    copy.run(img.get());

    double shortest = std::numeric_limits<double>::max(), shortest_copy = shortest, shortest_draws = shortest;
    for (auto _ : state) {
        restore(img.get(), original.get());
        const double seconds = seconds_of([&] { c.operation(img.get()); });
        state.SetIterationTime(seconds);
        shortest = std::min(shortest, seconds);
        shortest_copy = std::min(shortest_copy, seconds_of([&] { copy.run(img.get()); }));
        if (c.compare_draws)
            shortest_draws = std::min(shortest_draws, seconds_of([=] { draw_numbers(draws); }));
    }
    state.counters["x_memcpy"] = shortest / shortest_copy;
    if (c.compare_draws) state.counters["x_draws"] = shortest / shortest_draws;
    state.SetLabel(variant->name);
}

// The steps of a scene after drawing the lines of a panel of text.
void embolden_and_blur(Image* img) {
    image_levels(img, 7, 0, 65535, 65535, 0);
    image_rank(img, 0);
    image_levels(img, 7, 0, 65535, 65535, 0);
    image_blur_h(img, 4, 1.0);
}

Operation blending(int mode, std::int32_t opacity) {
    return [mode, opacity, src = std::shared_ptr<Image>()](Image* img) mutable {
        if (!src) {
            src.reset(image_create(img->width, img->height, kImageGrey));
            image_fill(src.get(), 0xFF959595);
        }
        image_blend(img, src.get(), mode, opacity);
    };
}

const Case kCases[] = {
    {"fill/256x256", 256, 256, 9, [](Image* img) { image_fill(img, 0xFF000095); }},
    {"fill_rect/236x256", 256, 256, 9, [](Image* img) { image_fill_rect(img, 10, 0, 236, 256, 0xFF959595); }},
    {"line/256", 256, 256, 9, [](Image* img) { image_line(img, 12, 0, 13, 255, 0xFFFFFFFF); }},
    {"set_alpha/512x512", 512, 512, 1, [](Image* img) { image_set_alpha(img, img); }},
    {"noise/512x128", 512, 128, 1, [](Image* img) { image_noise(img, 41728); }},
    {"radial/256x256", 256, 256, 1, [](Image* img) { image_radial(img, 0.0, 1.0); }},
    {"levels_invert/512x512", 512, 512, 1, [](Image* img) { image_levels(img, 7, 0, 65535, 65535, 0); }},
    {"levels_linear/512x512", 512, 512, 1, [](Image* img) { image_levels(img, 7, 1000, 65000, 0, 65535); }},
    {"contrast/512x128", 512, 128, 1, [](Image* img) { image_contrast(img, 7, -15000, 2.47); }},
    {"blend_add/256x256", 256, 256, 9, blending(kMixAdd, 244)},
    {"blend_subtract/256x256_color", 256, 256, 6, blending(kMixSubtract, 200)},
    {"blend_multiply/256x256", 256, 256, 9, blending(kMixMultiply, 76)},
    {"rank_min/512x512", 512, 512, 1, [](Image* img) { image_rank(img, 0); }},
    {"rank_max/512x700", 512, 700, 1, [](Image* img) { image_rank(img, 1); }},
    {"blur_h_r63/128x256", 128, 256, 1, [](Image* img) { image_blur_h(img, 63, 85.0); }},
    {"blur_h_r19/256x256", 256, 256, 9, [](Image* img) { image_blur_h(img, 19, 25.0); }},
    {"blur_h_r8/512x512", 512, 512, 1, [](Image* img) { image_blur_h(img, 8, 1.0); }},
    {"blur_h_r4/512x512", 512, 512, 1, [](Image* img) { image_blur_h(img, 4, 1.0); }},
    {"blur_h_r1/512x128", 512, 128, 1, [](Image* img) { image_blur_h(img, 1, 1.0); }},
    {"blur_v_r1/512x128", 512, 128, 1, [](Image* img) { image_blur_v(img, 1, 1.0); }},
    {"blur_directional_7x7/256x256", 256, 256, 9,
     [](Image* img) { image_blur_directional(img, 3, 0.0, 1.0, 1.0); }},
    {"upload/512x512", 512, 512, 1, [](Image* img) { image_upload(img, 1); }},
    {"upload/1024x1024_color", 1024, 1024, 2, [](Image* img) { image_upload(img, 1); }},
    {"plasma/256x256_tile", 256, 256, 9, [](Image* img) { image_plasma(img, 32768, 0.67); }, true},
    {"recipe_plasma/1024x1024_color", 1024, 1024, 2, [](Image* img) { image_plasma(img, 33280, 0.8); }, true},
    {"recipe_text_panel/512x512", 512, 512, 1, embolden_and_blur},
};

// A kernel of all different weights, which cannot be grouped.
void register_kernel_cases() {
    static std::int32_t weights[49];
    for (int i = 0; i < 49; ++i) weights[i] = 1 + i * 5;
    static const Case kernel = {"convolve_7x7_uneven/256x256", 256, 256, 9,
                                [](Image* img) { image_convolve(img, weights, 3, 24.0, 0); }};
    for (int v = 0; const Loops* variant = loops_variant(v); ++v) {
        benchmark::RegisterBenchmark((kernel.name + "/" + variant->name).c_str(), measure, kernel, variant)
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
    }
}

} // namespace

int main(int argc, char** argv) {
    for (const Case& c : kCases) {
        for (int v = 0; const Loops* variant = loops_variant(v); ++v) {
            benchmark::RegisterBenchmark((c.name + "/" + variant->name).c_str(), measure, c, variant)
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
        }
    }
    register_kernel_cases();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
