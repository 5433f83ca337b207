#pragma once

#include "library/Photo.h"
#include "library/ReviewMark.h"
#include "model/Decision.h"

#include <QString>
#include <optional>

namespace lumisort::review {

/// One photo as the details panel words it.
struct PhotoFacts {
    QString url; ///< the text of its file URL, "" for no photo
    QString name;
    model::Decision::Value decision = model::Decision::None;
    QString dimensions; ///< "6000 × 4000", stored pixels; "Unknown" where they are
    QString size;       ///< "12.4 MB"
    QString format;     ///< the extension in upper case
    QString date;       ///< "Nov 22, 2026, 6:45 PM" on the local clock, in English everywhere, or "Unknown"
    QString location;   ///< the whole path

    friend bool operator==(const PhotoFacts&, const PhotoFacts&) = default;
};

PhotoFacts factsOf(const library::Photo& photo, std::optional<library::ReviewDecision> decision);

} // namespace lumisort::review
