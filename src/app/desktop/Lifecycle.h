#pragma once

#include "model/LibraryModel.h"

#include <QObject>
#include <QPointer>
#include <functional>

namespace lumisort::app {

/// The way out: the program ends once the library is written. Main thread.
class Lifecycle : public QObject {
    Q_OBJECT

public:
    /// `exit` ends the program; it is called once.
    explicit Lifecycle(std::function<void()> exit, QObject* parent = nullptr);

    /// The library whose changes must not be lost, known from when its window first shows. Quitting before
    /// that ends the program at once.
    void setModel(model::LibraryModel* model) { model_ = model; }

    /// Ends the program when the start-up read, pending marks and the last write are through; the event loop
    /// goes on meanwhile. A write that fails keeps nobody from quitting.
    Q_INVOKABLE void quit();

Q_SIGNALS:
    /// Quitting has begun: windows go.
    void quitting();

private:
    std::function<void()> exit_;
    QPointer<model::LibraryModel> model_;
    bool quitting_ = false;
};

} // namespace lumisort::app
