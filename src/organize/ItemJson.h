#pragma once

#include "organize/OrganizePlan.h"
#include "platform/json/Reader.h"
#include "platform/json/Writer.h"

namespace lumisort::organize {

// The JSON form of one copy: an object with "source", "destination", "digest" and "bytes".

void writeItem(json::Writer& out, const OrganizeItem& item);

/// Throws json::FormatError where a key is missing or holds something else.
OrganizeItem readItem(json::Value value);

} // namespace lumisort::organize
