#include "platform/tasks/ThreadPool.h"

#include <thread>
#include <utility>

namespace lumisort::tasks {

ThreadPool& ThreadPool::shared() {
    // Never destroyed: its threads may still be waiting while the program's static objects are.
    static auto& pool = *new ThreadPool;
    return pool;
}

void ThreadPool::start(std::function<void()> job) {
    {
        const std::scoped_lock lock(mutex_);
        jobs_.push_back(std::move(job));
        if (idle_ < jobs_.size()) {
            try {
                std::thread([this] { run(); }).detach();
            } catch (...) {
                jobs_.pop_back();
                throw;
            }
            ++idle_;
        }
    }
    changed_.notify_one();
}

void ThreadPool::run() noexcept {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return !jobs_.empty(); });
        --idle_;
        auto job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        job();
        job = nullptr; // what the job holds is released outside the lock
        lock.lock();
        ++idle_;
    }
}

TaskGroup::~TaskGroup() {
    std::unique_lock lock(mutex_);
    ended_.wait(lock, [this] { return running_ == 0; });
}

void TaskGroup::start(std::function<void()> job) {
    {
        const std::scoped_lock lock(mutex_);
        ++running_;
    }
    try {
        ThreadPool::shared().start([this, job = std::move(job)] {
            job();
            end();
        });
    } catch (...) {
        end();
        throw;
    }
}

void TaskGroup::end() {
    const std::scoped_lock lock(mutex_); // held while notifying: the group may be gone right after
    if (--running_ == 0) ended_.notify_all();
}

} // namespace lumisort::tasks
