#include "review/FolderList.h"

namespace lumisort::review {

using model::Library;

FolderList::FolderList(const model::LibraryModel& model, const WindowState& window)
    : library_(model.library()), protection_(model.protection()), window_(window),
      folders_(library_.folders()) {
    const auto touch = [this] {
        if (!folders_.empty())
            Q_EMIT dataChanged(index(0), index(rowCount() - 1), {StateRole, ProtectorRole, CurrentRole});
    };
    connect(&library_, &Library::foldersChanged, this, &FolderList::refill);
    connect(&library_, &Library::countsChanged, this, touch);
    connect(&protection_, &model::Protection::changed, this, touch);
    connect(&window, &WindowState::sectionChanged, this, touch);
}

void FolderList::refill() {
    beginResetModel();
    folders_ = library_.folders();
    endResetModel();
}

int FolderList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(folders_.size());
}

QVariant FolderList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto& folder = folders_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case UrlRole:
        return QString::fromUtf8(folder.string());
    case NameRole:
        return QString::fromUtf8(folder.name().empty() ? std::string_view("/") : folder.name());
    case PathRole:
        return QString::fromUtf8(folder.path());
    case StateRole: {
        const auto state = library_.folderState(folder);
        return state && *state != library::FolderState::online ? QString::fromUtf8(title(*state)) : QString();
    }
    case ProtectorRole: {
        const auto protector = protection_.folders().protecting(folder);
        return protector ? QString::fromUtf8(protector->path()) : QString();
    }
    case CurrentRole:
        return window_.section() == model::Section::folder && window_.folder() == folder;
    default:
        return {};
    }
}

QHash<int, QByteArray> FolderList::roleNames() const {
    return {{UrlRole, "url"},           {NameRole, "name"},           {PathRole, "path"},
            {StateRole, "folderState"}, {ProtectorRole, "protector"}, {CurrentRole, "current"}};
}

} // namespace lumisort::review
