#pragma once

#include "review/VisiblePhotos.h"

#include <QtQml/qqmlregistration.h>

namespace lumisort::review {

/// Presents the visible window of a long list as a fixed set of rows. A photo keeps its row, and so its
/// delegate, while it stays inside the window; rows whose photos leave it are reused for those that enter.
///
/// The roles are those of the source and `position`. Changes of the source are taken over with the next turn
/// of the event loop, many at once. Main thread.
class VisibleWindowModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QAbstractItemModel* source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(int first READ first WRITE setFirst NOTIFY firstChanged)
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged)
    Q_PROPERTY(int total READ total NOTIFY totalChanged)

public:
    static constexpr int PositionRole = Qt::UserRole + 1000;

    /// A list with the roles of VisiblePhotos. It outlives the window or is reset before.
    QAbstractItemModel* source() const { return source_; }
    void setSource(QAbstractItemModel* source);
    /// Position in the source at which the window begins; it begins earlier where fewer than `limit` follow.
    int first() const { return first_; }
    void setFirst(int first);
    /// Number of rows, as far as the source has as many.
    int limit() const { return limit_; }
    void setLimit(int limit);
    /// Rows of the source.
    int total() const { return total_; }

    /// The row that holds a position of the source, or -1.
    Q_INVOKABLE int rowOf(int position) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void sourceChanged();
    void firstChanged();
    void limitChanged();
    void totalChanged();

private:
    struct Row {
        int position;
        QString url;
    };

    void updateLater();
    void update();
    /// Assigns the photos of the window to rows.
    void arrange();
    void emitDataChanged(int fromPosition, int toPosition);

    QAbstractItemModel* source_ = nullptr;
    int first_ = 0, limit_ = 0, total_ = 0;
    std::vector<Row> rows_;
    bool outdated_ = false; ///< the source has changed since the last update()
};

} // namespace lumisort::review
