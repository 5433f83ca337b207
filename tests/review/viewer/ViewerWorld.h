#pragma once

#include "model/ModelWorld.h"
#include "review/marks/MarkHistory.h"

#include <memory>
#include <string>
#include <vector>

namespace lumisort::review {

/// A library with a history of marks, over a machine that the test moves.
class ViewerWorld : public model::ModelWorld {
protected:
    void open(const std::vector<std::string>& names) {
        session_ = libraryOf(names);
        model_ = model(session_);
        history_ = std::make_unique<MarkHistory>(*model_);
    }

    std::vector<library::Photo> photos(const std::vector<std::size_t>& indices) const {
        std::vector<library::Photo> chosen;
        for (const auto index : indices) chosen.push_back(session_.photos[index]);
        return chosen;
    }

    library::LibraryContents session_;
    std::unique_ptr<model::LibraryModel> model_;
    std::unique_ptr<MarkHistory> history_;
};

} // namespace lumisort::review
