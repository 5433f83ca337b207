#include "platform/tasks/SerialExecutor.h"

#include <utility>

namespace lumisort::tasks {

SerialExecutor::SerialExecutor() : thread_([this] { run(); }) {}

SerialExecutor::~SerialExecutor() {
    {
        const std::scoped_lock lock(mutex_);
        closing_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void SerialExecutor::post(std::function<void()> job) {
    {
        const std::scoped_lock lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    changed_.notify_one();
}

void SerialExecutor::run() noexcept {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return closing_ || !jobs_.empty(); });
        if (jobs_.empty()) return;
        auto job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        job();
        job = nullptr; // what the job holds is released before the next one runs, outside the lock
        lock.lock();
    }
}

} // namespace lumisort::tasks
