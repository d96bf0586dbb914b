// What is played and the position that is audible of it, whatever happens to the sound device: a device that comes,
// plays, is lost and comes back, and the system's steady clock while there is none.
//
// The audible position counts the mixer's frames, at 44.1 kHz. It stands until there is a device or none is found, for
// two seconds at most. From then on it runs: as the device plays, or, without one, with real time, while the frames
// that nobody hears are taken from the mixer. It never falls.
//
// A device is lost when it reports an error, or asks for nothing or plays nothing for most of a second. Another is
// looked for from then on. A new one first plays silence until it tells its position, and is then connected in time:
// what is heard goes on at the position that has been reached. One that was suspended meanwhile may claim to have
// played more than it asked for, for as long as it was suspended; it is replaced.
//
// Music that falls behind real time catches up: smoothly while nothing is heard; while it is heard by skipping
// forward, so that it is at most half a second late. A sound that is played less than a second after another was
// stopped continues it: it takes over how late that one was, and is late by the time between them.
//
// A process that is stopped for more than a second does not run, and neither does its time: it goes on where it was,
// with a fresh device. It counts as stopped where no thread has called anything here meanwhile; a thread that alone
// gets no processor for so long stops nothing.
//
// Threads: one thread calls step(), one, the controlling one, play(), stop() and position(). audible() is for any
// thread. No call waits for a sound server. Times are seconds of one clock that never goes back; nothing here reads a
// clock.
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

    // Plays `sound` from its begin() on. Nothing may play. The sound stays the caller's, and must live until stop().
    void play(StreamedSound& sound, double now);

    // Silence. When this returns, the sound that played is no longer touched.
    void stop(double now);

    // The frame that is audible of the sound last played: its begin() until the first one is, and its length once the
    // last one is. A gap in the sound delays it. It never falls.
    double position(double now);

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
    void catch_up(double now);
    void take_unheard(double until);
    void publish(const Line& line, bool limited);
    void run_clock(double now) const;

    // What plays, and when it should.
    struct Playing {
        std::uint64_t number = 0; // the mixer's; 0 for nothing
        double begin = 0;         // frames
        double length = 0;
        double started = 0; // the mixer's frame that was audible when it was played
        double due = 0;     // time of the process at which the frame `begin` should be audible
    };

    // How a play is getting on.
    struct Progress {
        std::uint64_t number; // the mixer's; 0 for nothing
        double next;          // the music's frame that the mixer delivers next
        double behind;        // frames that it is behind real time
    };
    Progress progress(double now) const;

    Mixer& mixer_;
    Devices& devices_;
    State state_ = State::waiting;
    Watch watch_;
    double begun_;         // when the waiting began
    double last_step_ = 0; // time of the process at the last step

    // The controlling thread's.
    std::uint64_t plays_ = 0;
    double begin_ = 0;    // of the sound last played
    double started_ = 0;  // as Playing::started
    double position_ = 0; // last returned
    double behind_ = 0;   // frames that the last play was behind when it was stopped
    double stopped_at_;   // time of the process then

    // Guarded by the mutex.
    mutable std::mutex mutex_;
    Line line_;
    bool limited_ = false; // nothing is heard before it is handed out
    Playing playing_;
    mutable double seen_;              // when anything was last called
    mutable double ran_ = 0;           // time of the process: seconds that it was not stopped
    mutable bool was_stopped_ = false; // since the last step
};

} // namespace desktop
