#pragma once

#include "film/editor/CoalescedRender.h"
#include "film/editor/FilmEditorModel.h"

#include <QAbstractListModel>
#include <QPointer>
#include <vector>

namespace lumisort::film {

/// Every pair of stock and paper with a small picture of an editor's photo on it: a contact sheet. The
/// pictures are rendered one after another while the list is active. Main thread.
class PairList : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumisort::film::FilmEditorModel* editor READ editor WRITE setEditor NOTIFY editorChanged)
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY editorChanged)

public:
    enum Role { TitleRole = Qt::UserRole, PictureRole, CurrentRole };
    static constexpr int longEdge = 240;

    PairList();
    FilmEditorModel* editor() const { return editor_; }
    void setEditor(FilmEditorModel* editor);
    bool isActive() const { return active_; }
    /// Renders the pictures anew with the editor's present settings when it becomes active.
    void setActive(bool active);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Gives the editor the stock and paper of a row.
    Q_INVOKABLE void pick(int row);

Q_SIGNALS:
    void editorChanged();

private:
    void renderNext();

    QPointer<FilmEditorModel> editor_;
    bool active_ = false;
    std::vector<QImage> pictures_; ///< by row; null until rendered
    int next_ = 0;                 ///< the row to render next
    CoalescedRender<int> render_;
};

} // namespace lumisort::film
