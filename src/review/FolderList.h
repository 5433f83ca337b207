#pragma once

#include "review/WindowState.h"

#include <QAbstractListModel>

namespace lumisort::review {

/// The library's folders for the sidebar. Main thread; model and window outlive it.
class FolderList : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        UrlRole = Qt::UserRole + 1, ///< the file URL as text
        NameRole,
        PathRole,
        StateRole,     ///< "Offline", "Unavailable", "" while it is online or not looked at yet
        ProtectorRole, ///< path of the protected folder, this or one above it; "" without
        CurrentRole,   ///< whether the grid shows it
    };

    FolderList(const model::LibraryModel& model, const WindowState& window);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    void refill();

    const model::Library& library_;
    const model::Protection& protection_;
    const WindowState& window_;
    std::vector<files::FileUrl> folders_;
};

} // namespace lumisort::review
