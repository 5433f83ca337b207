#include "review/VisibleWindowModel.h"

#include <algorithm>
#include <utility>

namespace lumisort::review {

void VisibleWindowModel::setSource(QAbstractItemModel* source) {
    if (source == source_) return;
    if (source_) disconnect(source_, nullptr, this, nullptr);
    beginResetModel(); // the roles are others
    source_ = source;
    rows_.clear();
    endResetModel();
    if (source_) {
        connect(source_, &QAbstractItemModel::rowsInserted, this, &VisibleWindowModel::updateLater);
        connect(source_, &QAbstractItemModel::rowsRemoved, this, &VisibleWindowModel::updateLater);
        connect(source_, &QAbstractItemModel::modelReset, this, &VisibleWindowModel::updateLater);
        connect(source_, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex& from, const QModelIndex& to) {
                    emitDataChanged(from.row(), to.row());
                });
    }
    Q_EMIT sourceChanged();
    update();
}

void VisibleWindowModel::setFirst(int first) {
    if (std::exchange(first_, first) == first) return;
    arrange();
    Q_EMIT firstChanged();
}

void VisibleWindowModel::setLimit(int limit) {
    limit = std::max(limit, 0);
    if (std::exchange(limit_, limit) == limit) return;
    arrange();
    Q_EMIT limitChanged();
}

int VisibleWindowModel::rowOf(int position) const {
    const auto found = std::ranges::find(rows_, position, &Row::position);
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

int VisibleWindowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant VisibleWindowModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const int position = rows_[static_cast<std::size_t>(index.row())].position;
    if (role == PositionRole) return position;
    // The source may have become shorter since the last update().
    return source_->hasIndex(position, 0) ? source_->data(source_->index(position, 0), role) : QVariant();
}

QHash<int, QByteArray> VisibleWindowModel::roleNames() const {
    auto names = source_ ? source_->roleNames() : QHash<int, QByteArray>();
    names.insert(PositionRole, "position");
    return names;
}

void VisibleWindowModel::updateLater() {
    if (!std::exchange(outdated_, true))
        QMetaObject::invokeMethod(this, &VisibleWindowModel::update, Qt::QueuedConnection);
}

void VisibleWindowModel::update() {
    outdated_ = false;
    const int before = std::exchange(total_, source_ ? source_->rowCount() : 0);
    arrange();
    // Photos that stayed may have changed, too: a reset of the source does not name them.
    if (!rows_.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    if (total_ != before) Q_EMIT totalChanged();
}

void VisibleWindowModel::arrange() {
    const int size = std::min(limit_, total_), first = std::clamp(first_, 0, total_ - size);
    QHash<QString, std::size_t> held;
    for (auto& [position, url] : rows_) {
        position = -1;
        held.insert(url, held.size());
    }
    std::vector<Row> coming;
    for (int position = first; position < first + size; ++position) {
        auto url = source_->index(position, 0).data(VisiblePhotos::UrlRole).toString();
        if (const auto found = held.constFind(url); found != held.cend())
            rows_[*found].position = position;
        else
            coming.push_back({position, std::move(url)});
    }
    auto next = coming.begin();
    std::vector<int> given;
    for (auto& row : rows_) {
        if (row.position >= 0 || next == coming.end()) continue;
        row = std::move(*next++);
        given.push_back(row.position);
    }
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (rows_[static_cast<std::size_t>(row)].position >= 0) continue;
        beginRemoveRows({}, row, row);
        rows_.erase(rows_.begin() + row);
        endRemoveRows();
    }
    if (next != coming.end()) {
        beginInsertRows({}, rowCount(), size - 1);
        rows_.insert(rows_.end(), std::make_move_iterator(next), std::make_move_iterator(coming.end()));
        endInsertRows();
    }
    for (const int position : given) { // cards request their previews in this order
        const auto row = index(rowOf(position));
        Q_EMIT dataChanged(row, row);
    }
}

void VisibleWindowModel::emitDataChanged(int from, int to) {
    for (int row = 0; row < rowCount(); ++row)
        if (const int position = rows_[static_cast<std::size_t>(row)].position;
            from <= position && position <= to)
            Q_EMIT dataChanged(index(row), index(row));
}

} // namespace lumisort::review
