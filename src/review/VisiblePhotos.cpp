#include "review/VisiblePhotos.h"

#include "model/Decision.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace lumisort::review {

using model::Library;
using model::PhotoRow;

namespace {

/// More runs than this cost a view more than a new list.
constexpr std::size_t mostRuns = 256;

/// Positions in `list` whose rows `other` lacks, as runs [first, last]. Both ascend.
std::vector<std::pair<int, int>> runsMissing(const std::vector<PhotoRow>& list,
                                             const std::vector<PhotoRow>& other) {
    std::vector<std::pair<int, int>> runs;
    auto match = other.begin();
    for (std::size_t i = 0; i < list.size(); ++i) {
        while (match != other.end() && *match < list[i]) ++match;
        if (match != other.end() && *match == list[i]) continue;
        const int position = static_cast<int>(i);
        if (!runs.empty() && runs.back().second == position - 1)
            runs.back().second = position;
        else
            runs.emplace_back(position, position);
    }
    return runs;
}

} // namespace

VisiblePhotos::VisiblePhotos(const Library& library) : library_(library), rows_(passing()) {
    connect(&library, &Library::photosReplaced, this, &VisiblePhotos::reset);
    connect(&library, &Library::photoChanged, this, &VisiblePhotos::touch);
    connect(&library, &Library::marksChanged, this, [this] {
        if (query_.section == model::Section::keep || query_.section == model::Section::cleanup) update();
    });
    connect(&library, &Library::availabilityChanged, this, [this] {
        update();
        touchAll();
    });
    connect(&library, &Library::renamed, this, &VisiblePhotos::update);
}

int VisiblePhotos::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant VisiblePhotos::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const PhotoRow row = rows_[static_cast<std::size_t>(index.row())];
    const auto& photo = library_.state().photos()[row];
    switch (role) {
    case UrlRole:
        return QString::fromUtf8(photo.url.string());
    case Qt::DisplayRole:
    case NameRole:
        return QString::fromUtf8(photo.url.name());
    case PathRole:
        return QString::fromUtf8(photo.url.path());
    case WidthRole:
        return static_cast<qlonglong>(photo.width);
    case HeightRole:
        return static_cast<qlonglong>(photo.height);
    case BytesRole:
        return static_cast<qlonglong>(photo.bytes);
    case ReadableRole:
        return library_.state().isReadable(row);
    case DecisionRole:
        return model::Decision::of(library_.state().decision(row));
    default:
        return {};
    }
}

QHash<int, QByteArray> VisiblePhotos::roleNames() const {
    return {{UrlRole, "url"},           {NameRole, "name"},        {PathRole, "path"},
            {WidthRole, "width"},       {HeightRole, "height"},    {BytesRole, "bytes"},
            {ReadableRole, "readable"}, {DecisionRole, "decision"}};
}

std::vector<PhotoRow> VisiblePhotos::passing() const {
    return model::visibleRows(library_.state(), library_.searchNames(), query_);
}

void VisiblePhotos::show(model::VisibleQuery query) {
    query_ = std::move(query);
    update();
}

void VisiblePhotos::update() {
    moveTo(passing());
}

void VisiblePhotos::reset() {
    beginResetModel();
    rows_ = passing();
    endResetModel();
}

void VisiblePhotos::touch(PhotoRow row) {
    const auto found = std::ranges::lower_bound(rows_, row);
    if (found == rows_.end() || *found != row) return;
    const auto position = index(static_cast<int>(found - rows_.begin()));
    Q_EMIT dataChanged(position, position);
}

void VisiblePhotos::touchAll() {
    if (!rows_.empty()) Q_EMIT dataChanged(index(0), index(static_cast<int>(rows_.size()) - 1));
}

void VisiblePhotos::moveTo(std::vector<PhotoRow> rows) {
    auto gone = runsMissing(rows_, rows);
    auto come = runsMissing(rows, rows_);
    if (gone.size() + come.size() > mostRuns) {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
        return;
    }
    // From the back, so that the positions in front stay what they were.
    for (const auto& [first, last] : gone | std::views::reverse) {
        beginRemoveRows({}, first, last);
        rows_.erase(rows_.begin() + first, rows_.begin() + last + 1);
        endRemoveRows();
    }
    for (const auto& [first, last] : come) {
        beginInsertRows({}, first, last);
        rows_.insert(rows_.begin() + first, rows.begin() + first, rows.begin() + last + 1);
        endInsertRows();
    }
}

} // namespace lumisort::review
