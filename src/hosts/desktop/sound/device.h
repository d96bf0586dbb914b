// A sound device, and where devices come from. The desktop's are libcubeb's streams (cubeb_devices.h); tests have
// stand-ins.
//
// Threads: a device asks for frames on a thread of its own, which never waits. Everything else belongs to the thread
// that watches it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>

#include "hosts/desktop/sound/mixer.h"

namespace desktop {

// An open device that plays: silence, until it is connected with the mixer. Its frames are counted from its start, at
// 44.1 kHz.
class Device {
public:
    Device() = default;
    virtual ~Device() = default; // stops it; may wait for a sound server
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    // The frame that is audible, as the device says; 0 while it does not know.
    virtual double position() = 0;

    // True once it has reported an error.
    virtual bool failed() const = 0;

    // How many frames it has asked for. None of them is audible before it was asked for.
    std::uint64_t asked_for() const { return asked_for_.load(std::memory_order_acquire); }

    // From its next request on it plays what the mixer renders, which must outlive the connection. Once.
    void connect(Mixer& mixer) { mixer_.store(&mixer); }

    // Ends that: when this returns, the device no longer touches the mixer.
    void disconnect();

    // The mixer's frame that its frame 0 would be; none before the first request of the connected device.
    std::optional<double> offset() const;

protected:
    // Writes the next frames that the device plays. For the device's own thread; never waits.
    void fill(float* out, std::size_t frames);

private:
    static constexpr std::int64_t kUnknown = std::numeric_limits<std::int64_t>::min();

    std::atomic<Mixer*> mixer_{nullptr};
    std::atomic<bool> filling_{false};
    std::atomic<std::uint64_t> asked_for_{0};
    std::atomic<std::int64_t> offset_{kUnknown};
};

// Opens devices, one at a time, and goes on trying while there is none. Calls never wait.
class Devices {
public:
    virtual ~Devices() = default;

    // The device that has been opened since the last call; null if there is none.
    virtual std::unique_ptr<Device> take() = 0;

    // True if the last attempt to open one has failed.
    virtual bool failed() const = 0;

    // Closes a device that was taken, and looks for another.
    virtual void give_back(std::unique_ptr<Device> device) = 0;
};

} // namespace desktop
