// Writes pictures on a thread of its own: while the next frame is drawn, the last ones are compressed.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

#include "hosts/offscreen/output/sink.h"

namespace offscreen {

class OutputThread {
public:
    // The sink belongs to the thread until finish returns.
    explicit OutputThread(Sink& sink);
    ~OutputThread(); // without finish: as abandon
    OutputThread(const OutputThread&) = delete;
    OutputThread& operator=(const OutputThread&) = delete;

    // Queues `picture`; waits while the queue is full. Throws what the sink threw, as does finish. The picture's pixels
    // must stay until kHeld later ones were delivered.
    void deliver(const Picture& picture);
    static constexpr int kHeld = 5;

    // Waits until everything is written.
    void finish();

    // Ends the thread after the picture that it is writing.
    void abandon();

    // How many pictures the sink has taken. Exact after finish or abandon.
    std::int64_t taken() const { return taken_; }

private:
    static constexpr std::size_t kQueueLength = kHeld - 1; // besides the one being written

    void work();
    void rethrow() const;

    Sink& sink_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Picture> queue_;
    std::exception_ptr error_;
    std::atomic<std::int64_t> taken_ = 0;
    bool closing_ = false;
    bool abandoned_ = false;
    std::thread thread_;
};

} // namespace offscreen
