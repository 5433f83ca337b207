#pragma once

#include "model/ExclusiveTask.h"
#include "model/Reports.h"

#include <QtQml/qqmlregistration.h>

#include <QString>

namespace lumisort::review {

/// The one line that says what the library does or did last. Main thread; task and reports outlive it.
class StatusLine : public model::MainThreadObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QString text READ text NOTIFY changed)

public:
    StatusLine(const model::ExclusiveTask& task, const model::Reports& reports);

    const QString& text() const { return text_; }

Q_SIGNALS:
    void changed();

private:
    void show(const model::Report& report);

    const model::ExclusiveTask& task_;
    QString text_;
};

} // namespace lumisort::review
