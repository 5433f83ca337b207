#pragma once

#include "review/actions/ActionSet.h"

#include <span>

namespace lumisort::review {

/// One action as every scope shows it. What it does is added per scope (ActionSet::add).
struct ActionRow {
    ActionSet::Id id;
    const char* text;
    const char* icon;     ///< name in ui/icons, "" for none
    const char* keys;     ///< portable key sequences with spaces between them, "" for none
    unsigned scopes;      ///< ActionSet::Scope values or-ed together
    bool repeats = false; ///< whether holding its key triggers it again and again
};

/// The table of all actions. No two actions of one scope share a key.
std::span<const ActionRow> actionTable();

inline bool isIn(const ActionRow& row, ActionSet::Scope scope) {
    return (row.scopes & static_cast<unsigned>(scope)) != 0;
}

} // namespace lumisort::review
