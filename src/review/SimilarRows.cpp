#include "review/SimilarRows.h"

#include <algorithm>

namespace lumisort::review {

using library::Photo;

SimilarRows::SimilarRows(const model::LibraryModel& model, const WindowState& window)
    : model_(model), window_(window), groups_(model.matches().sharedGroups()) {
    connect(&model.matches(), &model::MatchSearch::changed, this, &SimilarRows::refill);
    connect(&model.matches(), &model::MatchSearch::renamed, this, &SimilarRows::follow);
    connect(&model.library(), &model::Library::countsChanged, this, &SimilarRows::updatePhotos);
    connect(&model.selection(), &model::Selection::changed, this, &SimilarRows::updatePhotos);
    connect(&window, &WindowState::queryChanged, this, &SimilarRows::refill);
    refill();
}

const similarity::SimilarityGroup& SimilarRows::group(std::size_t shown) const {
    return (*groups_)[shown_[shown]];
}

void SimilarRows::refill() {
    auto groups = model_.matches().sharedGroups();
    auto shown = model::visibleGroups(*groups, window_.query().toStdString());
    if (groups == groups_ && shown == shown_) return;
    beginResetModel();
    groups_ = std::move(groups);
    shown_ = std::move(shown);
    arrange();
    endResetModel();
    Q_EMIT changed();
}

void SimilarRows::follow() {
    const auto visible = model::visibleGroups(model_.matches().groups(), window_.query().toStdString());
    if (visible != shown_) return refill();
    groups_ = model_.matches().sharedGroups(); // the same rows under other names
    updatePhotos();
    Q_EMIT changed();
}

void SimilarRows::setColumns(int columns) {
    const auto wanted = static_cast<std::size_t>(std::max(columns, 1));
    if (wanted == columns_) return;
    beginResetModel();
    columns_ = wanted;
    arrange();
    endResetModel();
    Q_EMIT changed();
}

void SimilarRows::arrange() {
    std::vector<std::size_t> sizes;
    start_.clear();
    std::size_t position = 0;
    for (std::size_t i = 0; i < shown_.size(); ++i) {
        start_.push_back(position);
        sizes.push_back(group(i).photos.size());
        position += sizes.back();
    }
    layout_ = GridLayout(sizes, columns_);
    lines_.clear();
    const auto& rows = layout_.rows();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (row == 0 || rows[row].group != rows[row - 1].group) lines_.push_back(row); // the heading
        lines_.push_back(row);
    }
}

void SimilarRows::updatePhotos() {
    if (!lines_.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {PhotosRole});
}

int SimilarRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant SimilarRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto line = static_cast<std::size_t>(index.row());
    const auto& row = layout_.rows()[lines_[line]];
    const bool heading = line + 1 < lines_.size() && lines_[line + 1] == lines_[line];
    switch (role) {
    case HeadingRole:
        return heading;
    case NumberRole:
        return static_cast<int>(shown_[row.group]) + 1;
    case CountRole:
        return static_cast<int>(group(row.group).photos.size());
    case FirstRole:
        return static_cast<int>(row.first);
    case PhotosRole: {
        QVariantList photos;
        for (std::size_t i = 0; i < row.length && !heading; ++i)
            photos << QVariant::fromValue(shownPhoto(row.first + i));
        return photos;
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> SimilarRows::roleNames() const {
    return {{HeadingRole, "heading"},
            {NumberRole, "number"},
            {CountRole, "count"},
            {FirstRole, "first"},
            {PhotosRole, "photos"}};
}

const Photo& SimilarRows::photo(std::size_t position) const {
    const auto shown = layout_.rows()[layout_.rowOf(position)].group;
    return group(shown).photos[position - start_[shown]];
}

GroupPhoto SimilarRows::shownPhoto(std::size_t position) const {
    const auto& all = group(layout_.rows()[layout_.rowOf(position)].group);
    const auto& shown = photo(position);
    QString note;
    if (shown.url == all.anchor.url)
        note = QStringLiteral("anchor");
    else if (const auto distance = all.distances.find(shown.url); distance != all.distances.end())
        note = QString::number(static_cast<double>(distance->second), 'f', 2);
    return {.url = QString::fromUtf8(shown.url.string()),
            .name = QString::fromUtf8(shown.url.name()),
            .note = note,
            .readable = model_.library().isReadable(shown),
            .selected = model_.selection().selected().contains(shown.url),
            .decision = model::Decision::of(model_.library().decision(shown))};
}

int SimilarRows::firstOf(int row) const {
    return row < 0 || row >= rowCount()
               ? -1
               : static_cast<int>(layout_.rows()[lines_[static_cast<std::size_t>(row)]].first);
}

int SimilarRows::rowOf(int position) const {
    const auto at = static_cast<std::size_t>(position);
    if (position < 0 || at >= layout_.size()) return -1;
    const auto row = layout_.rowOf(at);
    return static_cast<int>(std::ranges::upper_bound(lines_, row) - lines_.begin()) - 1;
}

} // namespace lumisort::review
