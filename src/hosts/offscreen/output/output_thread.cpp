#include "hosts/offscreen/output/output_thread.h"

#include <unistd.h>

#include <utility>

namespace offscreen {

namespace {

constexpr int kNicer = 5; // than the drawing thread

// Lets drawing go first where both want a core: meanwhile pictures queue up, and they are work for the moments in which
// drawing uses one core only. On Linux this is for the calling thread alone, and the encoder's threads inherit it.
void give_way() { [[maybe_unused]] const int niceness = nice(kNicer); }

} // namespace

OutputThread::OutputThread(Sink& sink) : sink_(sink), thread_([this] { work(); }) {}

OutputThread::~OutputThread() { abandon(); }

void OutputThread::abandon() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        closing_ = true;
        abandoned_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void OutputThread::deliver(const Picture& picture) {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return queue_.size() < kQueueLength || error_; });
    rethrow();
    queue_.push_back(picture);
    changed_.notify_all();
}

void OutputThread::finish() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        closing_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
    rethrow();
}

void OutputThread::work() {
    give_way();
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return !queue_.empty() || closing_; });
        if (abandoned_ || queue_.empty()) return;
        const Picture picture = std::move(queue_.front());
        queue_.pop_front();
        lock.unlock();
        std::exception_ptr error;
        try {
            sink_.take(picture);
        } catch (...) {
            error = std::current_exception();
        }
        lock.lock();
        if (error) {
            error_ = error;
            changed_.notify_all();
            return;
        }
        ++taken_;
        changed_.notify_all();
    }
}

void OutputThread::rethrow() const {
    if (error_) std::rethrow_exception(error_);
}

} // namespace offscreen
