// Processor time of skav-export's own work for a picture of a video, beside GL's drawing and the encoder's: reading it
// back and passing it on, and converting it. bench/waiting_times.sh relates the sum to that of a whole export.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "hosts/offscreen/drawing/egl_screen.h"
#include "hosts/offscreen/drawing/frame_reader.h"
#include "hosts/offscreen/output/output_thread.h"
#include "hosts/offscreen/output/yuv.h"

namespace {

constexpr int kWidth = 1024;
constexpr int kHeight = 768;

// Takes pictures and leaves them.
class NoSink : public offscreen::Sink {
public:
    void take(const offscreen::Picture&) override {}
};

void read_back(benchmark::State& state) {
    static const offscreen::EglScreen screen({kWidth, kHeight}, 1, 1); // a program has one
    NoSink sink;
    offscreen::OutputThread output(sink);
    offscreen::FrameReader reader(screen, output);
    for (auto _ : state) reader.read({});
    reader.drain();
    output.finish();
}

void convert(benchmark::State& state) {
    std::vector<std::uint8_t> pixels(std::size_t{kWidth} * kHeight * 4);
    std::generate(pixels.begin(), pixels.end(), [value = 0u]() mutable {
        value = value * 1664525 + 1013904223; // noise
        return static_cast<std::uint8_t>(value >> 24);
    });
    offscreen::Picture picture;
    picture.width = kWidth;
    picture.height = kHeight;
    picture.pixels = pixels.data();
    const offscreen::YuvConverter converter(kWidth, kHeight);
    const offscreen::AvFramePtr frame = offscreen::make_yuv_frame(kWidth, kHeight);
    for (auto _ : state) converter.convert(picture, *frame);
}

// Of all threads.
BENCHMARK(read_back)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(convert)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
