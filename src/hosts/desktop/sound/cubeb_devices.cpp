#include "hosts/desktop/sound/cubeb_devices.h"

#include <cubeb/cubeb.h>
#include <pulse/pulseaudio.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace desktop {

namespace {

constexpr std::chrono::seconds kBetweenAttempts{1};
constexpr std::uint32_t kMinLatency = 1323; // frames: 30 ms, enough for a thread without priority

// How long a sound server may take to answer. One that hangs answers never.
constexpr std::chrono::seconds kAnswerWithin{1};

// Whether there is a PulseAudio server, or another in its place, that answers.
bool pulse_answers() {
    struct Deleter {
        void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
        void operator()(pa_context* context) const {
            pa_context_disconnect(context);
            pa_context_unref(context);
        }
    };
    const std::unique_ptr<pa_mainloop, Deleter> loop(pa_mainloop_new());
    if (!loop) return false;
    const std::unique_ptr<pa_context, Deleter> context(
        pa_context_new(pa_mainloop_get_api(loop.get()), "skav"));
    if (!context || pa_context_connect(context.get(), nullptr, PA_CONTEXT_NOFLAGS, nullptr) < 0) return false;
    const auto end = std::chrono::steady_clock::now() + kAnswerWithin;
    for (;;) {
        const pa_context_state_t state = pa_context_get_state(context.get());
        if (state == PA_CONTEXT_READY) return true;
        const std::chrono::microseconds left =
            std::chrono::duration_cast<std::chrono::microseconds>(end - std::chrono::steady_clock::now());
        if (!PA_CONTEXT_IS_GOOD(state) || left.count() <= 0) return false;
        if (pa_mainloop_prepare(loop.get(), static_cast<int>(left.count())) < 0 ||
            pa_mainloop_poll(loop.get()) < 0 || pa_mainloop_dispatch(loop.get()) < 0)
            return false;
    }
}

class CubebDevice : public Device {
public:
    // Null if there is no device that plays.
    static std::unique_ptr<Device> open();
    ~CubebDevice() override;

    double position() override;
    bool failed() const override { return failed_.load(std::memory_order_acquire); }

private:
    bool start();

    static long on_data(cubeb_stream*, void* user, const void*, void* out, long frames);
    static void on_state(cubeb_stream*, void* user, cubeb_state state);

    cubeb* context_ = nullptr;
    cubeb_stream* stream_ = nullptr;
    std::atomic<bool> failed_{false};
};

std::unique_ptr<Device> CubebDevice::open() {
    auto device = std::make_unique<CubebDevice>();
    if (!device->start()) return nullptr;
    return device;
}

bool CubebDevice::start() {
    // Where it is not told one that works, the library also tries JACK, whose client library may wait for ever for a
    // lock in shared memory, and leaves the lock behind if the program ends just then.
    const char* backend = pulse_answers() ? "pulse" : "alsa";
    if (cubeb_init(&context_, "skav", backend) != CUBEB_OK) return false;
    cubeb_stream_params params{};
    params.format = CUBEB_SAMPLE_FLOAT32NE;
    params.rate = common::kSoundRate;
    params.channels = common::kSoundChannels;
    params.layout = CUBEB_LAYOUT_STEREO;
    params.prefs = CUBEB_STREAM_PREF_NONE;
    std::uint32_t latency = 0;
    if (cubeb_get_min_latency(context_, &params, &latency) != CUBEB_OK) latency = kMinLatency;
    latency = std::max(latency, kMinLatency);
    return cubeb_stream_init(context_, &stream_, "music", nullptr, nullptr, nullptr, &params, latency,
                             on_data, on_state, this) == CUBEB_OK &&
           cubeb_stream_start(stream_) == CUBEB_OK;
}

CubebDevice::~CubebDevice() {
    if (stream_) {
        cubeb_stream_stop(stream_);
        cubeb_stream_destroy(stream_);
    }
    if (context_) cubeb_destroy(context_);
}

double CubebDevice::position() {
    std::uint64_t frames = 0;
    if (cubeb_stream_get_position(stream_, &frames) != CUBEB_OK) return 0;
    return static_cast<double>(frames);
}

long CubebDevice::on_data(cubeb_stream*, void* user, const void*, void* out, long frames) {
    static_cast<CubebDevice*>(user)->fill(static_cast<float*>(out), static_cast<std::size_t>(frames));
    return frames;
}

void CubebDevice::on_state(cubeb_stream*, void* user, cubeb_state state) {
    auto* device = static_cast<CubebDevice*>(user);
    if (state == CUBEB_STATE_ERROR) device->failed_.store(true, std::memory_order_release);
}

} // namespace

// Guarded by the mutex.
struct CubebDevices::State {
    std::mutex mutex;
    std::condition_variable wake;
    bool over = false;                // nobody wants a device any more
    bool wanted = true;               // a device has to be opened
    bool failed = false;              // the last attempt has
    std::unique_ptr<Device> opened;   // to be taken
    std::unique_ptr<Device> returned; // to be closed

    void work();
};

// The thread: closes and opens devices until the end.
void CubebDevices::State::work() {
    auto next_attempt = std::chrono::steady_clock::now();
    std::unique_lock<std::mutex> lock(mutex);
    for (;;) {
        wake.wait(lock, [this] { return over || wanted; });
        if (over) return;
        std::unique_ptr<Device> to_close = std::move(returned);
        lock.unlock();
        to_close.reset();
        lock.lock();
        wake.wait_until(lock, next_attempt, [this] { return over; });
        if (over) return;
        next_attempt = std::chrono::steady_clock::now() + kBetweenAttempts;
        lock.unlock();
        std::unique_ptr<Device> device = CubebDevice::open();
        lock.lock();
        failed = !device;
        wanted = !device;
        opened = std::move(device);
    }
}

CubebDevices::CubebDevices() : state_(std::make_shared<State>()) {
    std::thread([state = state_] { state->work(); }).detach();
}

CubebDevices::~CubebDevices() {
    {
        const std::lock_guard<std::mutex> lock(state_->mutex);
        state_->over = true;
    }
    state_->wake.notify_one();
}

std::unique_ptr<Device> CubebDevices::take() {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    return std::move(state_->opened);
}

bool CubebDevices::failed() const {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    return state_->failed;
}

void CubebDevices::give_back(std::unique_ptr<Device> device) {
    {
        const std::lock_guard<std::mutex> lock(state_->mutex);
        state_->returned = std::move(device);
        state_->wanted = true;
    }
    state_->wake.notify_one();
}

} // namespace desktop
