// The device: one stream that runs from beginning to end, fed by a mixer, and the position that is audible.
//
// Without sound hardware, or once the device is lost while playing (it reports an error, or asks for nothing
// or plays nothing for most of a second), a silent device takes its place: it takes frames from the mixer at
// the pace of the system's steady clock and goes on from the position that was audible. A device that comes
// back is not picked up again: the sound stays off until the program ends. The show is over in minutes, and a
// half-working device that comes and goes would tear at its only clock.
//
// Threads: the constructor opens the device on the calling thread and may wait for a sound server. From then on
// a thread of its own watches the device, and takes the frames in its place once it is lost. The device's library
// calls back on a thread of the library's. audible() is for any thread.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

#include "hosts/desktop/sound/mixer.h"
#include "hosts/desktop/sound/position_clock.h"

namespace desktop {

class Output {
public:
    static constexpr int kRate = 44100; // frames per second

    // Opens the default device and starts it, or the silent one. The mixer must outlive the output.
    explicit Output(Mixer& mixer);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // The device frame that is audible now. Never falls.
    double audible() const;

private:
    struct Device;

    // What the watching thread last found out about the position.
    struct Position {
        Line line;
        bool silent; // the silent device plays
    };

    void run();
    void follow_device();
    void play_silently();
    void publish(const Line& line, bool silent);
    bool pause();

    Mixer& mixer_;
    std::unique_ptr<Device> device_; // null if there is none

    mutable std::mutex mutex_;
    Position position_; // guarded by mutex_
    std::condition_variable wake_;
    bool stop_ = false; // guarded by mutex_
    std::thread thread_;
};

} // namespace desktop
