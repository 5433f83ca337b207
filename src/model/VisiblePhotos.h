#pragma once

#include "model/VisibleRows.h"

#include <QAbstractListModel>
#include <vector>

namespace lumisort::model {

/// The photos that the grid shows, as a list that views follow row by row. Belongs to the main thread.
class VisiblePhotos : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        UrlRole = Qt::UserRole + 1, ///< the file URL as text
        NameRole,
        PathRole,
        WidthRole,
        HeightRole,
        BytesRole,
        ReadableRole,
        DecisionRole, ///< "Keep", "For Cleanup" or ""
    };

    /// Views the state, which outlives it.
    explicit VisiblePhotos(const LibraryState& state) : state_(state) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    const std::vector<PhotoRow>& rows() const { return rows_; }

    /// Brings the list to what `query` asks of the state now. Rows that stay keep their place in every view;
    /// those that go or come do so in runs. Where that would be hundreds of runs, as a keystroke in a search
    /// can make them, the list starts anew.
    void show(const VisibleQuery& query);

    /// Names that a worker folded; of use where they are those of the state's photos.
    void adopt(SearchNames names) { names_ = std::move(names); }

    /// The photos were replaced by others: row numbers mean other photos now, so the list starts anew.
    void replacePhotos(const VisibleQuery& query);

    /// Something about this photo changed that its row shows.
    void touch(PhotoRow row);
    void touchAll();

private:
    void moveTo(std::vector<PhotoRow> rows);

    const LibraryState& state_;
    SearchNames names_;
    std::vector<PhotoRow> rows_; ///< ascending
};

} // namespace lumisort::model
