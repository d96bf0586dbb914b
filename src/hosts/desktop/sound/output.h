// The position that is audible, whatever happens to the sound device: a device that comes, plays, is lost and comes
// back, and the system's steady clock while there is none.
//
// The position counts the mixer's frames, at 44.1 kHz. It stands until there is a device or none is found, for two
// seconds at most. From then on it runs: as the device plays, or, without one, with real time, while the frames that
// nobody hears are taken from the mixer. It never falls.
//
// A device is lost when it reports an error, or asks for nothing or plays nothing for most of a second. Another is
// looked for from then on. A new one first plays silence until it tells its position, and is then connected in time:
// what is heard goes on at the position that has been reached. One that was suspended meanwhile may claim to have
// played more than it asked for, for as long as it was suspended; it is replaced.
//
// Music that falls behind real time catches up: smoothly while nothing is heard; while it is heard by skipping
// forward, so that it is at most half a second late. A process that is stopped for more than a second does not run,
// and neither does its time: it goes on where it was, with a fresh device.
//
// Threads: one thread calls step(). audible() is for any thread. Neither waits for a sound server. Times are seconds
// of one clock that never goes back; nothing here reads a clock.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

#include "hosts/desktop/sound/device.h"
#include "hosts/desktop/sound/mixer.h"
#include "hosts/desktop/sound/position_clock.h"

namespace desktop {

class Output {
public:
    // The mixer and the devices must outlive the output.
    Output(Mixer& mixer, Devices& devices, double now);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // Looks after everything at the time `now`. To be called every few milliseconds.
    void step(double now);

    // The mixer's frame that is audible at the time `now`.
    double audible(double now) const;

private:
    enum class State {
        waiting, // for a device, at the beginning; the position stands
        silent,  // the position runs with real time
        playing, // device_ is connected and determines the position
    };

    // The device, and what is known of how it does.
    struct Watch {
        std::unique_ptr<Device> device; // null if there is none
        PositionClock clock{common::kSoundRate};
        bool connected = false;
        double since = 0;             // when it was taken
        double last_position = 0;     // the furthest it told
        int moves = 0;                // how often it moved on
        std::uint64_t last_asked = 0; // frames it had asked for at the last step
        bool asks = false;            // it asked for frames since the last step
        double without_request = 0;   // seconds that it has asked for nothing
        double without_position = 0;  // seconds that its position has stood still
        double impossible = 0;        // seconds that its position has been ahead of what it asked for
    };

    void take_device(double now);
    void watch_device(double now, double passed);
    bool is_lost(double now) const;
    void lose_device(double now);
    bool connect(double now);
    void run_without(double now);
    void run_with_device(double now);
    double behind(double now);
    void take_unheard(double until);
    void publish(const Line& line, bool limited);

    Mixer& mixer_;
    Devices& devices_;
    State state_ = State::waiting;
    Watch watch_;
    double begun_;           // when the waiting began
    double last_step_;       // time of the last step
    double due_ = 0;         // the frame that would be audible had nothing ever been late
    std::uint64_t play_ = 0; // the mixer's play that due_ belongs to

    // What audible() reads, guarded by the mutex.
    mutable std::mutex mutex_;
    Line line_;
    bool limited_ = false; // nothing is heard before it is handed out
};

} // namespace desktop
