#include "tests/sound/pulse_recorder.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "hosts/desktop/sound/position_clock.h"
#include "tests/sound/urgent.h"

namespace {

constexpr double kRate = 44100;
constexpr double kAround = 0.5; // seconds on either side whose timing counts

} // namespace

struct PulseRecorder::Stream {
    // What the server said at one moment: stream time 0 was, or would have been, at `origin`.
    struct Timing {
        std::int64_t frame; // recorded up to here at that moment
        double origin;      // seconds of the steady clock
    };

    pa_threaded_mainloop* loop = nullptr;
    pa_context* context = nullptr;
    pa_stream* stream = nullptr;
    std::vector<float> samples;
    std::vector<Timing> timings;

    template <typename Ready>
    void wait(Ready ready, const char* what) {
        while (!ready()) {
            const pa_context_state_t state = pa_context_get_state(context);
            if (!PA_CONTEXT_IS_GOOD(state)) {
                pa_threaded_mainloop_unlock(loop);
                throw std::runtime_error(std::string("recording: ") + what);
            }
            pa_threaded_mainloop_wait(loop);
        }
    }

    // True once the server's timing has been steady for a while: it stumbles in the first second of a device.
    bool steady() const {
        constexpr std::size_t kSteady = 40;
        if (timings.size() < 2 * kSteady || samples.size() < 2 * 1.5 * kRate) return false;
        const auto [least, most] =
            std::minmax_element(timings.end() - kSteady, timings.end(),
                                [](const Timing& a, const Timing& b) { return a.origin < b.origin; });
        return most->origin - least->origin < 0.002;
    }

    static void on_data(pa_stream* stream, std::size_t, void* user);
};

void PulseRecorder::Stream::on_data(pa_stream* stream, std::size_t, void* user) {
    auto* self = static_cast<Stream*>(user);
    while (pa_stream_readable_size(stream) > 0) {
        const void* data = nullptr;
        std::size_t bytes = 0;
        if (pa_stream_peek(stream, &data, &bytes) < 0 || bytes == 0) break;
        const auto* floats = static_cast<const float*>(data);
        if (data)
            self->samples.insert(self->samples.end(), floats, floats + bytes / sizeof(float));
        else // a hole: the server lost something
            self->samples.resize(self->samples.size() + bytes / sizeof(float));
        pa_stream_drop(stream);
    }
    pa_usec_t stream_time = 0;
    if (pa_stream_get_time(stream, &stream_time) == 0)
        self->timings.push_back({static_cast<std::int64_t>(self->samples.size() / 2),
                                 desktop::steady_seconds() - 1e-6 * static_cast<double>(stream_time)});
    pa_threaded_mainloop_signal(self->loop, 0);
}

PulseRecorder::PulseRecorder() : stream_(std::make_unique<Stream>()) {
    Stream& s = *stream_;
    s.samples.reserve(2 * 200 * static_cast<std::size_t>(kRate));
    s.loop = pa_threaded_mainloop_new();
    s.context = pa_context_new(pa_threaded_mainloop_get_api(s.loop), "recorder");
    const auto wake = [](auto*, void* loop) {
        pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop*>(loop), 0);
    };
    pa_context_set_state_callback(s.context, wake, s.loop);
    pa_context_connect(s.context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);

    pa_threaded_mainloop_lock(s.loop);
    make_urgent(true);
    pa_threaded_mainloop_start(s.loop);
    make_urgent(false);
    s.wait([&] { return pa_context_get_state(s.context) == PA_CONTEXT_READY; }, "no server");
    pa_sample_spec format{};
    format.format = PA_SAMPLE_FLOAT32NE;
    format.rate = static_cast<std::uint32_t>(kRate);
    format.channels = 2;
    s.stream = pa_stream_new(s.context, "recorder", &format, nullptr);
    pa_stream_set_read_callback(s.stream, Stream::on_data, &s);
    pa_buffer_attr attributes{};
    attributes.maxlength = static_cast<std::uint32_t>(-1);
    attributes.fragsize = 882 * 2 * sizeof(float);
    const auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE | PA_STREAM_ADJUST_LATENCY);
    pa_stream_connect_record(s.stream, "nothing.monitor", &attributes, flags);
    s.wait([&] { return s.steady(); }, "no data");
    pa_threaded_mainloop_unlock(s.loop);
}

PulseRecorder::~PulseRecorder() { stop(); }

void PulseRecorder::stop() {
    Stream& s = *stream_;
    if (!s.loop) return;
    make_urgent(false);
    pa_threaded_mainloop_stop(s.loop);
    if (s.stream) {
        pa_stream_disconnect(s.stream);
        pa_stream_unref(s.stream);
    }
    pa_context_disconnect(s.context);
    pa_context_unref(s.context);
    pa_threaded_mainloop_free(s.loop);
    s.loop = nullptr;
}

const std::vector<float>& PulseRecorder::samples() const { return stream_->samples; }

double PulseRecorder::time_of(std::int64_t frame) const {
    const auto around = static_cast<std::int64_t>(kAround * kRate);
    const auto by_frame = [](const Stream::Timing& timing, std::int64_t at) { return timing.frame < at; };
    const auto& timings = stream_->timings;
    auto from = std::lower_bound(timings.begin(), timings.end(), frame - around, by_frame);
    auto to = std::lower_bound(from, timings.end(), frame + around, by_frame);
    if (from == to) throw std::runtime_error("recording: no timing there");
    std::vector<double> origins;
    for (; from != to; ++from) origins.push_back(from->origin);
    const auto middle = origins.begin() + static_cast<std::ptrdiff_t>(origins.size() / 2);
    std::nth_element(origins.begin(), middle, origins.end());
    return *middle + static_cast<double>(frame) / kRate;
}

std::int64_t PulseRecorder::frame_at(double time) const {
    std::int64_t frame = frames() / 2;
    for (int step = 0; step < 4; ++step) {
        const double off = time - time_of(std::min(std::max<std::int64_t>(frame, 0), frames() - 1));
        frame += std::llround(off * kRate);
    }
    return frame;
}
