#pragma once

#include <QObject>
#include <QThread>

namespace lumisort::model {

/// Base of the objects that belong to the main thread.
class MainThreadObject : public QObject {
public:
    using QObject::QObject;

protected:
    /// Ends the program with the name of the class when another thread calls.
    void assertMainThread() const {
        if (QThread::currentThread() != thread())
            qFatal("%s was called outside its thread", metaObject()->className());
    }
};

} // namespace lumisort::model
