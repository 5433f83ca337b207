#pragma once

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace lumisort::film {

/// Objects that threads borrow for a while, such as memory to work in: as many as were ever borrowed at once,
/// freed with the pool.
template <class T>
class ScratchPool {
public:
    /// Puts the object back when it is destroyed, which is before the pool is.
    class Lease {
    public:
        Lease(ScratchPool& pool, std::unique_ptr<T> object) : pool_(pool), object_(std::move(object)) {}
        ~Lease() {
            const std::scoped_lock lock(pool_.mutex_);
            pool_.idle_.push_back(std::move(object_));
        }
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;

        T& operator*() const { return *object_; }

    private:
        ScratchPool& pool_;
        std::unique_ptr<T> object_;
    };

    Lease borrow() {
        std::unique_ptr<T> object;
        {
            const std::scoped_lock lock(mutex_);
            if (!idle_.empty()) {
                object = std::move(idle_.back());
                idle_.pop_back();
            }
        }
        if (!object) object = std::make_unique<T>();
        return Lease(*this, std::move(object));
    }

private:
    std::mutex mutex_;
    std::vector<std::unique_ptr<T>> idle_; // guarded by mutex_
};

} // namespace lumisort::film
