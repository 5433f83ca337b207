#pragma once

#include "model/VisiblePhotos.h"

#include <QtQml/qqmlregistration.h>

namespace lumisort::review {

/// A few places through which a long list of photos scrolls: a view makes one card for each and keeps it. A
/// photo stays in its place for as long as it is within the window, whatever comes, goes or starts anew
/// around it; what comes into the window takes the places of what left it.
///
/// Roles are those of the photos and `position`. What happens to the list is followed with the next turn of
/// the event loop, many changes at once. Main thread.
class PhotoSlots : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QAbstractItemModel* source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(int first READ first WRITE setFirst NOTIFY firstChanged)
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged)
    Q_PROPERTY(int total READ total NOTIFY totalChanged)

public:
    static constexpr int PositionRole = Qt::UserRole + 1000;

    /// A list with the roles of VisiblePhotos, that outlives it.
    QAbstractItemModel* source() const { return source_; }
    void setSource(QAbstractItemModel* source);
    /// Where the window begins. Where too little of the list follows it, the window begins earlier.
    int first() const { return first_; }
    void setFirst(int first);
    /// How many places there are where the list is as long.
    int limit() const { return limit_; }
    void setLimit(int limit);
    /// Rows of the list.
    int total() const { return total_; }

    /// The place that holds a position of the list, or -1.
    Q_INVOKABLE int placeOf(int position) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void sourceChanged();
    void firstChanged();
    void limitChanged();
    void totalChanged();

private:
    struct Place {
        int position;
        QString url;
    };

    void followLater();
    void followSource();
    /// Gives the photos of the window their places.
    void arrange();
    /// Says that what is at these positions of the list has changed.
    void tell(int from, int to);

    QAbstractItemModel* source_ = nullptr;
    int first_ = 0, limit_ = 0, total_ = 0;
    std::vector<Place> places_;
    bool behind_ = false; ///< the list has changed since `followSource`
};

} // namespace lumisort::review
