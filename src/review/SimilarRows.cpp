#include "review/SimilarRows.h"

#include "model/Utf8.h"
#include "model/VisibleRows.h"

#include <algorithm>

namespace lumisort::review {

using library::Photo;

SimilarRows::SimilarRows(const model::LibraryModel& model) : model_(model) {
    connect(&model, &model::LibraryModel::similarityChanged, this, &SimilarRows::refill);
    connect(&model, &model::LibraryModel::queryChanged, this, &SimilarRows::refill);
    refill();
}

const similarity::SimilarityGroup& SimilarRows::group(std::size_t shown) const {
    return model_.similarGroups()[shown_[shown]];
}

void SimilarRows::refill() {
    beginResetModel();
    shown_.clear();
    const auto wanted = model::SearchNames::folded(model_.query().toStdString());
    const auto& groups = model_.similarGroups();
    for (std::size_t i = 0; i < groups.size(); ++i)
        if (wanted.empty() || std::ranges::any_of(groups[i].photos, [&](const Photo& photo) {
                return model::SearchNames::folded(photo.url.name()).find(wanted) != std::string::npos;
            }))
            shown_.push_back(i);
    arrange();
    endResetModel();
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

int SimilarRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant SimilarRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto line = static_cast<std::size_t>(index.row());
    const auto& row = layout_.rows()[lines_[line]];
    const bool heading = line + 1 < lines_.size() && lines_[line + 1] == lines_[line];
    switch (role) {
    case HeadingRole: return heading;
    case NumberRole: return static_cast<int>(shown_[row.group]) + 1;
    case CountRole: return static_cast<int>(group(row.group).photos.size());
    case FirstRole: return static_cast<int>(row.first);
    case LengthRole: return heading ? 0 : static_cast<int>(row.length);
    default: return {};
    }
}

QHash<int, QByteArray> SimilarRows::roleNames() const {
    return {{HeadingRole, "heading"}, {NumberRole, "number"}, {CountRole, "count"},
            {FirstRole, "first"},     {LengthRole, "length"}};
}

const Photo& SimilarRows::photo(std::size_t position) const {
    const auto shown = layout_.rows()[layout_.rowOf(position)].group;
    return group(shown).photos[position - start_[shown]];
}

QVariantMap SimilarRows::card(int position) const {
    const auto at = static_cast<std::size_t>(position);
    if (position < 0 || at >= layout_.size()) return {};
    const auto& all = group(layout_.rows()[layout_.rowOf(at)].group);
    const auto& shown = photo(at);
    QString note;
    if (shown.url == all.anchor.url)
        note = QStringLiteral("anchor");
    else if (const auto distance = all.distances.find(shown.url); distance != all.distances.end())
        note = QString::number(static_cast<double>(distance->second), 'f', 2);
    return {{QStringLiteral("url"), model::fromUtf8(shown.url.string())},
            {QStringLiteral("name"), model::fromUtf8(shown.url.name())},
            {QStringLiteral("note"), note}};
}

int SimilarRows::rowOf(int position) const {
    const auto at = static_cast<std::size_t>(position);
    if (position < 0 || at >= layout_.size()) return -1;
    const auto row = layout_.rowOf(at);
    return static_cast<int>(std::ranges::upper_bound(lines_, row) - lines_.begin()) - 1;
}

std::vector<Photo> SimilarRows::groupOf(const Photo& a, const Photo& b) const {
    for (std::size_t i = 0; i < shown_.size(); ++i) {
        const auto& photos = group(i).photos;
        const auto holds = [&](const Photo& photo) {
            return std::ranges::find(photos, photo.url, &Photo::url) != photos.end();
        };
        if (holds(a) && holds(b)) return photos;
    }
    return {};
}

} // namespace lumisort::review
