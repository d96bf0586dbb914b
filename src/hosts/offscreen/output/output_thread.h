// Writes pictures on a thread of its own: while the next frame is drawn, the last ones are compressed.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "hosts/offscreen/output/sink.h"

namespace offscreen {

class OutputThread {
public:
    // The sink belongs to the thread until finish returns.
    explicit OutputThread(Sink& sink);
    ~OutputThread(); // without finish: as abandon
    OutputThread(const OutputThread&) = delete;
    OutputThread& operator=(const OutputThread&) = delete;

    // A picture to be overwritten: a used one where there is one.
    PicturePtr blank();

    // Queues `picture`; waits while the queue is full. Throws what the sink threw, as does finish.
    void deliver(PicturePtr picture);

    // Waits until everything is written.
    void finish();

    // Ends the thread after the picture that it is writing.
    void abandon();

    // How many pictures the sink has taken. Exact after finish or abandon.
    std::int64_t taken() const { return taken_; }

private:
    static constexpr std::size_t kQueueLength = 4;

    void work();
    void rethrow() const;

    Sink& sink_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<PicturePtr> queue_;
    std::vector<PicturePtr> used_;
    std::exception_ptr error_;
    std::atomic<std::int64_t> taken_ = 0;
    bool closing_ = false;
    bool abandoned_ = false;
    std::thread thread_;
};

} // namespace offscreen
