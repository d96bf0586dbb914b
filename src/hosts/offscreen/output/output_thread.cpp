#include "hosts/offscreen/output/output_thread.h"

#include <utility>

namespace offscreen {

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

PicturePtr OutputThread::blank() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (used_.empty()) return std::make_unique<Picture>();
    PicturePtr picture = std::move(used_.back());
    used_.pop_back();
    return picture;
}

void OutputThread::deliver(PicturePtr picture) {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return queue_.size() < kQueueLength || error_; });
    rethrow();
    queue_.push_back(std::move(picture));
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
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return !queue_.empty() || closing_; });
        if (abandoned_ || queue_.empty()) return;
        PicturePtr picture = std::move(queue_.front());
        queue_.pop_front();
        lock.unlock();
        std::exception_ptr error;
        try {
            sink_.take(*picture);
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
        used_.push_back(std::move(picture));
        changed_.notify_all();
    }
}

void OutputThread::rethrow() const {
    if (error_) std::rethrow_exception(error_);
}

} // namespace offscreen
