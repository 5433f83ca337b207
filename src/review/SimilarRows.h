#pragma once

#include "model/Decision.h"
#include "review/GridLayout.h"
#include "review/WindowState.h"

#include <QtQml/qqmlregistration.h>

#include <QAbstractListModel>
#include <memory>
#include <vector>

namespace lumisort::review {

/// One photo of a group as its card shows it.
struct GroupPhoto {
    Q_GADGET
    Q_PROPERTY(QString url MEMBER url CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString note MEMBER note CONSTANT)
    Q_PROPERTY(bool readable MEMBER readable CONSTANT)
    Q_PROPERTY(bool selected MEMBER selected CONSTANT)
    Q_PROPERTY(int decision MEMBER decision CONSTANT)

public:
    QString url;  ///< the file URL as text
    QString name; ///< the file's name
    QString note; ///< "anchor", the distance from it, or ""
    bool readable = false, selected = false;
    int decision = model::Decision::None; ///< Decision::Value
};

/// The groups of similar photos that the search lets through, as rows of a list: a heading, then its photos
/// in rows of so many columns. A view's cost does not depend on the number of groups. Main thread.
/// The groups of similar photos that pass the search, as rows of a list: of each group a heading and its
/// photos in rows of so many columns. Ten thousand groups cost a view no more than what is on show. Main
/// thread; search and window outlive it.
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
        PhotosRole,                     ///< the row's photos, a list of GroupPhoto; empty for a heading
    };

    SimilarRows(const model::LibraryModel& model, const WindowState& window);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int groupCount() const { return static_cast<int>(shown_.size()); }
    Q_INVOKABLE void setColumns(int columns);
    /// The row of the list that holds a position.
    Q_INVOKABLE int rowOf(int position) const;
    /// The position of the first photo in a row of the list; -1 for a row that does not exist.
    Q_INVOKABLE int firstOf(int row) const;

    const GridLayout& layout() const { return layout_; }
    /// `position` < layout().size().
    const library::Photo& photo(std::size_t position) const;

Q_SIGNALS:
    void changed();

private:
    using Groups = model::MatchSearch::Groups;
    const similarity::SimilarityGroup& group(std::size_t shown) const;
    GroupPhoto shownPhoto(std::size_t position) const;
    void refill();
    void follow();
    void arrange();
    void updatePhotos();

    const model::LibraryModel& model_;
    const WindowState& window_;
    std::shared_ptr<const Groups> groups_; ///< as they are on show, whatever is found meanwhile
    std::vector<std::size_t> shown_;       ///< positions in groups_
    std::vector<std::size_t> start_;       ///< position of the first photo of each group on show
    GridLayout layout_;
    /// For each list row the index into layout_.rows(). A group's heading has the index of the group's first
    /// row, so that index appears twice.
    std::vector<std::size_t> lines_;
    std::size_t columns_ = 1;
};

} // namespace lumisort::review
