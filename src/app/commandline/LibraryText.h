#pragma once

#include "model/Report.h"

#include <string>

namespace lumisort::app {

// What the library commands print about the outcome of an operation, one line without its end.

std::string outcomeText(const model::ImportSummary& summary);
std::string outcomeText(const model::MarkSummary& summary);
std::string outcomeText(const model::PhotoRenamed& renamed);
std::string outcomeText(const model::FolderRemoved& removed);
std::string outcomeText(const model::AvailabilitySummary& summary);

} // namespace lumisort::app
