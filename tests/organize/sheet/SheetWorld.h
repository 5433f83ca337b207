#pragma once

#include "model/ModelWorld.h"
#include "organize/sheet/OrganizeState.h"

namespace lumisort::organize {

/// A library in memory with a place to copy to, and the state of the sheet that does it.
class SheetWorld : public model::ModelWorld {
protected:
    /// Opens the sheet for these names of /p; the contents of a file are its name's first letter.
    void openFor(const std::vector<std::string>& names) {
        auto session = libraryOf(names);
        for (const auto& name : names) system_.write("/p/" + name, name.substr(0, 1));
        system_.makeFolder("/out");
        sheet_ = std::make_unique<OrganizeState>(dependencies());
        sheet_->open(session.photos);
        ASSERT_TRUE(sheet_->isOpen() || names.empty());
    }
    void choose(const char* url) { sheet_->choose(QUrl(QString::fromUtf8(url))); }
    /// Starts a run; it goes on in `settle`.
    void run() { sheet_->run(); }

    std::unique_ptr<OrganizeState> sheet_;
};

} // namespace lumisort::organize
