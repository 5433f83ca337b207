#include "review/FolderList.h"

#include "model/Utf8.h"

namespace lumisort::review {

using model::LibraryModel;

FolderList::FolderList(const LibraryModel& model) : model_(model), folders_(model.folders()) {
    const auto touch = [this] {
        if (!folders_.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {StateRole, CurrentRole});
    };
    connect(&model, &LibraryModel::foldersChanged, this, &FolderList::refill);
    connect(&model, &LibraryModel::countsChanged, this, touch);
    connect(&model, &LibraryModel::sectionChanged, this, touch);
}

void FolderList::refill() {
    beginResetModel();
    folders_ = model_.folders();
    endResetModel();
}

int FolderList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(folders_.size());
}

QVariant FolderList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto& folder = folders_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case UrlRole: return model::fromUtf8(folder.string());
    case NameRole: return model::fromUtf8(folder.name().empty() ? std::string_view("/") : folder.name());
    case PathRole: return model::fromUtf8(folder.path());
    case StateRole: {
        const auto state = model_.folderState(folder);
        return state && *state != library::FolderState::online ? model::fromUtf8(title(*state)) : QString();
    }
    case CurrentRole:
        return model_.section() == QStringLiteral("folder") && model_.selectedFolder() == folder;
    default: return {};
    }
}

QHash<int, QByteArray> FolderList::roleNames() const {
    return {{UrlRole, "url"}, {NameRole, "name"}, {PathRole, "path"}, {StateRole, "folderState"},
            {CurrentRole, "current"}};
}

} // namespace lumisort::review
