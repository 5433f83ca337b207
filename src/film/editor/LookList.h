#pragma once

#include "film/editor/FilmEditorModel.h"

#include <QCoroTask>
#include <QPointer>
#include <QStringList>
#include <vector>

namespace lumisort::film {

/// The user's looks as an editor's menu lists them. Main thread.
class LookList : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumisort::film::FilmEditorModel* editor READ editor WRITE setEditor NOTIFY changed)
    Q_PROPERTY(QStringList names READ names NOTIFY changed)
    Q_PROPERTY(QString current READ current NOTIFY changed)

public:
    FilmEditorModel* editor() const { return editor_; }
    void setEditor(FilmEditorModel* editor);
    QStringList names() const;
    /// Name of the look whose settings the editor has; "" for none.
    QString current() const;

    /// Reads the looks anew, as other windows save them, too.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void apply(int index);
    /// Saves the editor's settings under `name`, in place of a look that has it.
    Q_INVOKABLE void save(const QString& name);
    Q_INVOKABLE void remove(int index);
    /// Adds the look in `file` to the list.
    Q_INVOKABLE void importFrom(const QUrl& file);
    /// Writes the look to "NAME.json" in `folder`.
    Q_INVOKABLE void exportTo(int index, const QUrl& folder);

Q_SIGNALS:
    void changed();

private:
    QCoro::Task<> run(QFuture<void> change);
    QCoro::Task<> load();
    QCoro::Task<> write(FilmLook look, files::FileUrl folder);
    QCoro::Task<> import(files::FileUrl file);
    const FilmLook* at(int index) const;

    QPointer<FilmEditorModel> editor_;
    std::vector<FilmLook> looks_;
};

} // namespace lumisort::film
