// The parts of loading that are not image operations: decoding the stored picture, and drawing a panel full of text.
// Each also times a reference in the same run and reports the quotient of the shortest times of both, the figure to
// compare between machines and commits: `x_memcpy` compares decoding with copying the decoded planes, `x_glyphs`
// drawing with FreeType's rendering of the same characters.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "show/stage/loading_picture_data.h"
#include "show/stage/packed_picture.h"
#include "tests/support/image.h"

namespace {

using FontPtr = std::unique_ptr<Font, decltype(&font_free)>;

double seconds_of(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// Times `work` for the benchmark and `reference` beside it, and reports the quotient of their best times.
void compare(benchmark::State& state, const char* quotient, const std::function<void()>& work,
             const std::function<void()>& reference) {
    double best_work = std::numeric_limits<double>::infinity();
    double best_reference = best_work;
    for (auto _ : state) {
        const double seconds = seconds_of(work);
        state.SetIterationTime(seconds);
        best_work = std::min(best_work, seconds);
        best_reference = std::min(best_reference, seconds_of(reference));
    }
    state.counters[quotient] = best_work / best_reference;
}

void load_stored_picture(benchmark::State& state) {
    const ImagePtr shown(load_packed_picture(kLoadingPicture));
    std::vector<std::int32_t> copy(3 * image_count(shown.get()));
    compare(
        state, "x_memcpy", [] { ImagePtr(load_packed_picture(kLoadingPicture)); },
        [&] {
            auto out = copy.begin();
            for (const std::int32_t* plane : {shown->red, shown->green, shown->blue})
                out = std::copy_n(plane, image_count(shown.get()), out);
            benchmark::DoNotOptimize(copy.data());
        });
}
BENCHMARK(load_stored_picture)->UseManualTime()->Unit(benchmark::kMicrosecond);

// A panel of 512 by 512 pixels in three colours with 24 lines of 40 characters.
void draw_text_panel(benchmark::State& state) {
    const FontPtr font(font_load(SKAV_DATA "/Vera.ttf"), font_free);
    if (!font) {
        state.SkipWithError("data/Vera.ttf cannot be opened");
        return;
    }
    constexpr int kSize = 20;
    const std::string line = "Die Nacht ist lang, das Bier ist kalt. 1";
    const ImagePtr img(image_create(512, 512, kImageColor));
    image_fill(img.get(), 0xFF000000);
    compare(
        state, "x_glyphs",
        [&] {
            for (int row = 1; row <= 24; ++row)
                draw_text(img.get(), font.get(), 4, 20 * row, kSize, kSize, 0, line.c_str());
        },
        [&] {
            FT_Set_Pixel_Sizes(font->face, kSize, kSize);
            for (int row = 1; row <= 24; ++row)
                for (const char c : line)
                    FT_Load_Char(font->face, static_cast<unsigned char>(c), FT_LOAD_RENDER);
        });
}
BENCHMARK(draw_text_panel)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
