#pragma once

#include "model/LibraryModel.h"

#include <QObject>
#include <QPointer>
#include <functional>

namespace lumisort::app {

/// Ends the program: asks first where that would end work of the user's, then waits until the library is
/// written. Main thread.
class Lifecycle : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString question READ question NOTIFY questionChanged)

public:
    /// Work that must not end without the user's word.
    struct Work {
        /// Says what is under way, "" for nothing.
        std::function<QString()> underWay = [] { return QString(); };
        /// Stops it; it may take a while to end.
        std::function<void()> cancel = [] {};
    };

    /// `exit` ends the program; it is called once.
    explicit Lifecycle(std::function<void()> exit, QObject* parent = nullptr);

    /// The library whose changes must not be lost, known from when its window first shows. Quitting before
    /// that ends the program at once.
    void setModel(model::LibraryModel* model) { model_ = model; }
    void setWork(Work work) { work_ = std::move(work); }
    /// To be called when the work has begun, ended or gone on.
    void workChanged();

    /// Quits, or where work is under way asks whether to.
    Q_INVOKABLE void requestQuit();
    /// What is under way while the user is asked, "" while nothing is asked.
    QString question() const { return question_; }
    void ask(const QString& question);
    /// The answer: cancel the work and quit when it has ended, or go on.
    Q_INVOKABLE void answer(bool quit);

    /// Ends the program without a question when the start-up read, pending marks and the last write are
    /// through; the event loop goes on meanwhile. A write that fails keeps nobody from quitting.
    Q_INVOKABLE void quit();

Q_SIGNALS:
    void questionChanged();
    /// Quitting has begun: windows are to be hidden.
    void quitting();

private:
    std::function<void()> exit_;
    Work work_;
    QPointer<model::LibraryModel> model_;
    QString question_;
    bool quitsAfterWork_ = false;
    bool quitting_ = false;
};

} // namespace lumisort::app
