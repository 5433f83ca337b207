#pragma once

#include "model/Library.h"
#include "model/VisibleRows.h"

#include <QAbstractListModel>
#include <vector>

namespace lumisort::review {

/// The photos of the library that pass a query, as a list that views follow row by row. Follows the library
/// by itself. Main thread; the library outlives it.
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

    explicit VisiblePhotos(const model::Library& library);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    const std::vector<model::PhotoRow>& rows() const { return rows_; }

    /// Shows what passes `query`. Rows that stay keep their place in every view; those that are removed or
    /// inserted are signalled in runs. Where that would be hundreds of runs, as a keystroke in a search can
    /// make them, the list is reset.
    void show(model::VisibleQuery query);

private:
    void reset();
    void update();
    void touch(model::PhotoRow row);
    void touchAll();
    void moveTo(std::vector<model::PhotoRow> rows);
    std::vector<model::PhotoRow> passing() const;

    const model::Library& library_;
    model::VisibleQuery query_;
    std::vector<model::PhotoRow> rows_; ///< ascending
};

} // namespace lumisort::review
