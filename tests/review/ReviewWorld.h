#pragma once

#include "model/ModelWorld.h"
#include "review/LibraryWindow.h"

namespace lumisort::review {

/// The state of a library's window over a machine that the test moves.
class ReviewWorld : public model::ModelWorld {
protected:
    ReviewWorld() {
        findMatches_ = [this](const auto&, auto, auto, auto&, const auto&, const auto&) {
            return similarity::MatchResult{.groups = groups_};
        };
    }

    void open(const std::vector<std::string>& names) {
        session_ = libraryOf(names);
        model_ = model(session_);
        window_ = std::make_unique<LibraryWindow>(*model_);
    }

    const library::Photo& named(std::size_t index) const { return session_.photos[index]; }
    std::string urlOf(std::size_t index) const { return named(index).url.string(); }

    /// Finds groups of these photos, by index.
    void findGroups(const std::vector<std::vector<std::size_t>>& groups) {
        groups_.clear();
        for (const auto& members : groups) {
            similarity::SimilarityGroup group{.anchor = named(members.front())};
            for (const auto index : members) group.photos.push_back(named(index));
            group.distances[group.photos.back().url] = 0.375F;
            groups_.push_back(group);
        }
        model_->matches().find();
        settle();
    }

    std::vector<std::string> selectedNames() const {
        std::vector<std::string> names;
        for (const auto& photo : model_->selection().picked()) names.emplace_back(photo.url.name());
        return names;
    }

    library::LibraryContents session_;
    std::vector<similarity::SimilarityGroup> groups_;
    std::unique_ptr<model::LibraryModel> model_;
    std::unique_ptr<LibraryWindow> window_;
};

} // namespace lumisort::review
