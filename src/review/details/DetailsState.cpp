#include "review/details/DetailsState.h"

#include <utility>

namespace lumisort::review {

using model::LibraryModel;

DetailsState::DetailsState(LibraryModel& model, QObject* parent)
    : QObject(parent), model_(model), renaming_(model) {
    // Which photo is on show changes with the selection; what is known of it with marks, availability and
    // renaming, all of which may change the counts; a count that stays the same is told nevertheless.
    connect(&model.selection(), &model::Selection::changed, this, &DetailsState::follow);
    connect(&model.library(), &model::Library::countsChanged, this, &DetailsState::follow);
    connect(&model.library(), &model::Library::thumbnailRevisionChanged, this,
            &DetailsState::thumbnailRevisionChanged);
    follow();
}

void DetailsState::beginRename() {
    if (const auto photo = model_.selection().detailPhoto()) renaming_.begin(*photo);
}

void DetailsState::follow() {
    const auto photo = model_.selection().detailPhoto();
    auto facts = photo ? factsOf(*photo, model_.library().decision(*photo)) : PhotoFacts();
    if (std::exchange(facts_, facts) != facts) Q_EMIT changed();
}

} // namespace lumisort::review
