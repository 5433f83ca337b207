#include "model/TaskRunner.h"

#include <QMetaObject>
#include <QThreadPool>
#include <deque>
#include <mutex>

namespace lumisort::model {

namespace {

/// Document load, import, inspection, marks, scan and organizing may run at the same time.
constexpr int mostJobsAtOnce = 8;

} // namespace

/// The functions that other threads want to be called on the main thread, in the order of their arrival. They
/// are kept here, not in the events that announce them: the application deletes the events that it could not
/// deliver under a lock, and the end of a function resumes a coroutine, which may send further events.
class TaskRunner::Mailbox : public QObject {
public:
    void post(std::function<void()> function) {
        {
            const std::scoped_lock lock(mutex_);
            waiting_.push_back(std::move(function));
        }
        QMetaObject::invokeMethod(this, [this] { deliverOne(); }, Qt::QueuedConnection);
    }

private:
    void deliverOne() {
        std::function<void()> next;
        {
            const std::scoped_lock lock(mutex_);
            next = std::move(waiting_.front());
            waiting_.pop_front();
        }
        next();
    }

    std::mutex mutex_;
    std::deque<std::function<void()>> waiting_; // guarded by mutex_
};

TaskRunner::TaskRunner(Background background)
    : background_(std::move(background)),
      mailbox_(new Mailbox, [](Mailbox* mailbox) { mailbox->deleteLater(); }) {
    if (background_) return;
    // A pool of its own: a scan that takes minutes must not keep a mark waiting for a thread. It goes with
    // the last job that was given to it, and waits for them.
    auto pool = std::make_shared<QThreadPool>();
    pool->setMaxThreadCount(mostJobsAtOnce);
    background_ = [pool](std::function<void()> job) { pool->start(std::move(job)); };
}

std::function<void(std::function<void()>)> TaskRunner::mainThread() const {
    return [mailbox = mailbox_](std::function<void()> function) { mailbox->post(std::move(function)); };
}

std::string describe(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "an unknown failure";
    }
}

} // namespace lumisort::model
