#include "model/TaskRunner.h"

#include <QMetaObject>
#include <QThreadPool>

namespace lumisort::model {

namespace {

/// Document load, import, inspection, marks, scan and organizing may run at the same time.
constexpr int mostJobsAtOnce = 8;

} // namespace

TaskRunner::TaskRunner(Background background)
    : background_(std::move(background)),
      mailbox_(new QObject, [](QObject* mailbox) { mailbox->deleteLater(); }) {
    if (background_) return;
    // A pool of its own: a scan that takes minutes must not keep a mark waiting for a thread. It goes with
    // the last job that was given to it, and waits for them.
    auto pool = std::make_shared<QThreadPool>();
    pool->setMaxThreadCount(mostJobsAtOnce);
    background_ = [pool](std::function<void()> job) { pool->start(std::move(job)); };
}

std::function<void(std::function<void()>)> TaskRunner::mainThread() const {
    return [mailbox = mailbox_](std::function<void()> function) {
        QMetaObject::invokeMethod(mailbox.get(), std::move(function), Qt::QueuedConnection);
    };
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
