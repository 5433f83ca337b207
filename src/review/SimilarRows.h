#pragma once

#include "model/LibraryModel.h"
#include "review/GridLayout.h"

#include <QAbstractListModel>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace lumisort::review {

/// The groups of similar photos that the search lets through, as rows to scroll: a heading, then its photos
/// in rows of so many columns. Ten thousand groups cost a view no more than what is on show. Main thread.
class SimilarRows : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("part of the library's window")
    Q_PROPERTY(int groupCount READ groupCount NOTIFY changed)

public:
    enum Role {
        HeadingRole = Qt::UserRole + 1, ///< whether the row is a heading
        NumberRole,                     ///< of the group, from 1
        CountRole,                      ///< photos in the group
        FirstRole,                      ///< position of the row's first photo among all on show
        LengthRole,                     ///< photos in the row
    };

    explicit SimilarRows(const model::LibraryModel& model);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int groupCount() const { return static_cast<int>(shown_.size()); }
    Q_INVOKABLE void setColumns(int columns);
    /// What the card at a position shows: url, name, note ("anchor", the distance, or "").
    Q_INVOKABLE QVariantMap card(int position) const;
    /// The row of the list that holds a position.
    Q_INVOKABLE int rowOf(int position) const;

    const GridLayout& layout() const { return layout_; }
    /// `position` < layout().size().
    const library::Photo& photo(std::size_t position) const;
    /// The photos of the group on show that holds both; empty when none does.
    std::vector<library::Photo> groupOf(const library::Photo& a, const library::Photo& b) const;

Q_SIGNALS:
    void changed();

private:
    const similarity::SimilarityGroup& group(std::size_t shown) const;
    void refill();
    void arrange();

    const model::LibraryModel& model_;
    std::vector<std::size_t> shown_; ///< positions in the model's groups
    std::vector<std::size_t> start_; ///< position of the first photo of each group on show
    GridLayout layout_;
    std::vector<std::size_t> lines_; ///< row of the layout by list row; a heading names the row below it
    std::size_t columns_ = 1;
};

} // namespace lumisort::review
