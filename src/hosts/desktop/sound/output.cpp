#include "hosts/desktop/sound/output.h"

#include <cubeb/cubeb.h>

#include <algorithm>
#include <array>
#include <chrono>

namespace desktop {

namespace {

constexpr std::chrono::milliseconds kPause{5};
constexpr double kLongestPause = 0.02;      // seconds that one pause of this program may count as
constexpr double kLostAfter = 0.8;          // seconds without a sign of life
constexpr double kLostAtStartAfter = 5.0;   // the same, in its first second: some devices wake up slowly
constexpr double kAskWithin = 0.03;         // seconds after the device's last request; see follow_device
constexpr std::uint32_t kMinLatency = 1323; // frames: 30 ms, enough for a thread without priority
constexpr std::uint64_t kSilentBlock = 512; // frames

} // namespace

// The device's stream and what the library's threads leave behind for the watching one.
struct Output::Device {
    explicit Device(Mixer& fed_by) : mixer(fed_by) {}
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    ~Device() {
        lost.store(true);
        if (stream) {
            cubeb_stream_stop(stream);
            cubeb_stream_destroy(stream);
        }
        if (context) cubeb_destroy(context);
    }

    bool open();
    bool start() { return cubeb_stream_start(stream) == CUBEB_OK; }
    double position() const;

    static long on_data(cubeb_stream*, void* user, const void*, void* out, long frames);
    static void on_state(cubeb_stream*, void* user, cubeb_state state);

    Mixer& mixer;
    cubeb* context = nullptr;
    cubeb_stream* stream = nullptr;
    std::atomic<bool> failed{false}; // the device said so
    std::atomic<bool> lost{false};   // given up: whatever it still asks for is silence
};

bool Output::Device::open() {
    if (cubeb_init(&context, "skav", nullptr) != CUBEB_OK) return false;
    cubeb_stream_params params{};
    params.format = CUBEB_SAMPLE_FLOAT32NE;
    params.rate = kRate;
    params.channels = 2;
    params.layout = CUBEB_LAYOUT_STEREO;
    params.prefs = CUBEB_STREAM_PREF_NONE;
    std::uint32_t latency = 0;
    if (cubeb_get_min_latency(context, &params, &latency) != CUBEB_OK) latency = kMinLatency;
    latency = std::max(latency, kMinLatency);
    return cubeb_stream_init(context, &stream, "music", nullptr, nullptr, nullptr, &params, latency, on_data,
                             on_state, this) == CUBEB_OK;
}

// The frame that is audible, as the device says; 0 while it does not know.
double Output::Device::position() const {
    std::uint64_t frames = 0;
    if (cubeb_stream_get_position(stream, &frames) != CUBEB_OK) return 0;
    return static_cast<double>(frames);
}

long Output::Device::on_data(cubeb_stream*, void* user, const void*, void* out, long frames) {
    auto* device = static_cast<Device*>(user);
    auto* samples = static_cast<float*>(out);
    if (device->lost.load(std::memory_order_acquire))
        std::fill_n(samples, 2 * frames, 0.0f);
    else
        device->mixer.render(samples, static_cast<std::size_t>(frames));
    return frames;
}

void Output::Device::on_state(cubeb_stream*, void* user, cubeb_state state) {
    auto* device = static_cast<Device*>(user);
    if (state == CUBEB_STATE_ERROR) device->failed.store(true, std::memory_order_release);
}

Output::Output(Mixer& mixer) : mixer_(mixer), position_{{steady_seconds(), 0, 0}, false} {
    device_ = std::make_unique<Device>(mixer);
    if (!device_->open() || !device_->start()) device_.reset();
    if (!device_) publish({steady_seconds(), 0, kRate}, true);
    thread_ = std::thread([this] { run(); });
}

Output::~Output() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stop_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void Output::publish(const Line& line, bool silent) {
    const std::lock_guard<std::mutex> lock(mutex_);
    position_ = {line, silent};
}

double Output::audible() const {
    std::unique_lock<std::mutex> lock(mutex_);
    const Position position = position_;
    lock.unlock();
    const double frame = position.line.at(steady_seconds());
    if (position.silent) return frame;
    // A device that stalls is noticed a little later than it does: nothing is heard before it is handed out.
    return std::min(frame, static_cast<double>(mixer_.handed_out()));
}

// Waits a little; false when the owner wants the thread to end.
bool Output::pause() {
    std::unique_lock<std::mutex> lock(mutex_);
    return !wake_.wait_for(lock, kPause, [this] { return stop_; });
}

void Output::run() {
    if (device_) follow_device();
    play_silently();
}

// Measures the device's position until the device is lost, or the owner wants an end.
void Output::follow_device() {
    PositionClock clock(kRate);
    double last_look = steady_seconds();
    double last_position = 0;
    double without_position = 0; // seconds that the position has stood still
    double without_request = 0;  // seconds that the device has asked for nothing
    std::uint64_t last_handed_out = 0;
    while (pause()) {
        // A program that was stopped for a while must not take its own absence for the device's.
        const double passed = std::min(steady_seconds() - last_look, kLongestPause);
        const std::uint64_t handed_out = mixer_.handed_out();
        without_request = handed_out > last_handed_out ? 0 : without_request + passed;
        last_handed_out = handed_out;
        clock.limit(steady_seconds(), static_cast<double>(handed_out));

        // The library guesses the position between two words from a sound server. When the device stalls its
        // guess runs on, and later stands until the device has caught up: so it is left alone then.
        without_position += passed;
        if (without_request < kAskWithin) {
            const double position = device_->position();
            clock.measure(steady_seconds(), position);
            if (position > last_position) without_position = 0;
            last_position = std::max(position, last_position);
        }
        const double now = steady_seconds();
        last_look = now;
        publish(clock.line(), false);
        const double patience = handed_out > kRate ? kLostAfter : kLostAtStartAfter;
        const bool silent = without_position > patience || without_request > patience;
        if (!silent && !device_->failed.load(std::memory_order_acquire)) continue;

        device_->lost.store(true, std::memory_order_release);
        publish({now, audible(), kRate}, true);
        return;
    }
}

// Takes from the mixer what would have become audible by now, until the owner wants an end.
void Output::play_silently() {
    std::array<float, 2 * kSilentBlock> unheard;
    do {
        const auto target = static_cast<std::uint64_t>(audible());
        while (mixer_.handed_out() < target)
            mixer_.render(unheard.data(), std::min(target - mixer_.handed_out(), kSilentBlock));
    } while (pause());
}

} // namespace desktop
