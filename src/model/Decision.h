#pragma once

#include "library/ReviewMark.h"

#include <QObject>
#include <optional>

/// The decision about a photo as views see it, where "no decision" is a value like the others.
namespace lumisort::model::Decision {
Q_NAMESPACE

enum Value { None, Keep, Skip };
Q_ENUM_NS(Value)

Value of(std::optional<library::ReviewDecision> decision);

} // namespace lumisort::model::Decision
