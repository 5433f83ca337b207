#pragma once

#include "model/Decision.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace lumisort::review {

/// The values of model::Decision for QML, as Decision.Keep and so on.
class DecisionNames : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Decision)
    QML_UNCREATABLE("holds names alone")

public:
    enum Value { None = model::Decision::None, Keep = model::Decision::Keep, Skip = model::Decision::Skip };
    Q_ENUM(Value)
};

} // namespace lumisort::review
