#include "review/PhotoSlots.h"

#include <algorithm>
#include <utility>

namespace lumisort::review {

using model::VisiblePhotos;

void PhotoSlots::setSource(QAbstractItemModel* source) {
    if (source == source_) return;
    if (source_) disconnect(source_, nullptr, this, nullptr);
    beginResetModel(); // the roles are others
    source_ = source;
    places_.clear();
    endResetModel();
    if (source_) {
        connect(source_, &QAbstractItemModel::rowsInserted, this, &PhotoSlots::followLater);
        connect(source_, &QAbstractItemModel::rowsRemoved, this, &PhotoSlots::followLater);
        connect(source_, &QAbstractItemModel::modelReset, this, &PhotoSlots::followLater);
        connect(source_, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex& from, const QModelIndex& to) { tell(from.row(), to.row()); });
    }
    Q_EMIT sourceChanged();
    followSource();
}

void PhotoSlots::setFirst(int first) {
    if (std::exchange(first_, first) == first) return;
    arrange();
    Q_EMIT firstChanged();
}

void PhotoSlots::setLimit(int limit) {
    limit = std::max(limit, 0);
    if (std::exchange(limit_, limit) == limit) return;
    arrange();
    Q_EMIT limitChanged();
}

int PhotoSlots::placeOf(int position) const {
    const auto found = std::ranges::find(places_, position, &Place::position);
    return found == places_.end() ? -1 : static_cast<int>(found - places_.begin());
}

int PhotoSlots::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(places_.size());
}

QVariant PhotoSlots::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const int position = places_[static_cast<std::size_t>(index.row())].position;
    if (role == PositionRole) return position;
    // The list may have become shorter since.
    return source_->hasIndex(position, 0) ? source_->data(source_->index(position, 0), role) : QVariant();
}

QHash<int, QByteArray> PhotoSlots::roleNames() const {
    auto names = source_ ? source_->roleNames() : QHash<int, QByteArray>();
    names.insert(PositionRole, "position");
    return names;
}

void PhotoSlots::followLater() {
    if (!std::exchange(behind_, true))
        QMetaObject::invokeMethod(this, &PhotoSlots::followSource, Qt::QueuedConnection);
}

void PhotoSlots::followSource() {
    behind_ = false;
    const int before = std::exchange(total_, source_ ? source_->rowCount() : 0);
    arrange();
    // Photos that stayed may have changed, too: a list that starts anew says nothing of each.
    if (!places_.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    if (total_ != before) Q_EMIT totalChanged();
}

void PhotoSlots::arrange() {
    const int size = std::min(limit_, total_), first = std::clamp(first_, 0, total_ - size);
    QHash<QString, std::size_t> held;
    for (auto& [position, url] : places_) {
        position = -1;
        held.insert(url, held.size());
    }
    std::vector<Place> coming;
    for (int position = first; position < first + size; ++position) {
        auto url = source_->index(position, 0).data(VisiblePhotos::UrlRole).toString();
        if (const auto found = held.constFind(url); found != held.cend())
            places_[*found].position = position;
        else
            coming.push_back({position, std::move(url)});
    }
    auto next = coming.begin();
    std::vector<int> given;
    for (auto& place : places_) {
        if (place.position >= 0 || next == coming.end()) continue;
        place = std::move(*next++);
        given.push_back(place.position);
    }
    for (int place = rowCount() - 1; place >= 0; --place) {
        if (places_[static_cast<std::size_t>(place)].position >= 0) continue;
        beginRemoveRows({}, place, place);
        places_.erase(places_.begin() + place);
        endRemoveRows();
    }
    if (next != coming.end()) {
        beginInsertRows({}, rowCount(), size - 1);
        places_.insert(places_.end(), std::make_move_iterator(next), std::make_move_iterator(coming.end()));
        endInsertRows();
    }
    for (const int position : given) { // in this order cards ask for their pictures
        const auto place = index(placeOf(position));
        Q_EMIT dataChanged(place, place);
    }
}

void PhotoSlots::tell(int from, int to) {
    for (int row = 0; row < rowCount(); ++row)
        if (const int position = places_[static_cast<std::size_t>(row)].position;
            from <= position && position <= to)
            Q_EMIT dataChanged(index(row), index(row));
}

} // namespace lumisort::review
