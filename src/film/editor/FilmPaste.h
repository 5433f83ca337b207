#pragma once

#include "film/editor/FilmEditorController.h"

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <vector>

namespace lumisort::film {

/// Gives several RAW photos the adjustments on the clipboard: stored edits alone, or through the editor of a
/// photo that has one open. What was stored before is remembered, so that the last paste can be undone. Main
/// thread; services and controller outlive it.
class FilmPaste : public QObject {
    Q_OBJECT

public:
    FilmPaste(FilmEditorServices& services, FilmEditorController& editors, QObject* parent = nullptr);

    /// Nothing happens while an earlier call is under way.
    void paste(std::vector<files::FileUrl> photos);
    void undo();

Q_SIGNALS:
    /// One sentence for the user, and whether undo() would take something back.
    void finished(const QString& message, bool canUndo);

private:
    struct Edit {
        files::FileUrl photo;
        FilmSettings settings;
    };

    QCoro::Task<> apply(std::vector<Edit> edits, QString done);
    /// Stores the settings and returns those that were there.
    QCoro::Task<FilmSettings> store(Edit edit);

    FilmEditorServices& services_;
    FilmEditorController& editors_;
    std::vector<Edit> before_; ///< of the photos that the last call changed
    bool busy_ = false;
};

} // namespace lumisort::film
