#pragma once

#include "film/editor/FilmEditorModel.h"

#include <QObject>
#include <QQuickWindow>
#include <map>
#include <memory>
#include <string>

class QQmlEngine;

namespace lumisort::film {

/// Opens film editor windows, one per photo, and closes them. Main thread; engine, services and file system
/// outlive the controller.
class FilmEditorController : public QObject {
    Q_OBJECT

public:
    FilmEditorController(FilmEditorServices& services, QQmlEngine& engine,
                         files::FileSystem& system = files::FileSystem::real(), QObject* parent = nullptr);
    /// Closes every editor; each saves its adjustments.
    ~FilmEditorController() override;

    /// Opens the photo's editor, or brings it to the front where one is open, also under another path that
    /// leads to the same file. Nothing happens for a photo whose extension is not one of RAW files.
    void show(const files::FileUrl& photo);
    void closeAll();

    /// The photo's window; none while it has no editor.
    QQuickWindow* window(const files::FileUrl& photo) const;
    /// The photo's editor; null while it has none.
    FilmEditorModel* editor(const files::FileUrl& photo) const;
    /// Some editor is loading or has no preview of its present settings yet.
    bool isRendering() const;
    std::size_t count() const { return editors_.size(); }

private:
    struct Editor {
        std::unique_ptr<FilmEditorModel> model;
        QQuickWindow* window = nullptr;
    };
    std::string keyOf(const files::FileUrl& photo) const;
    QQuickWindow* makeWindow(FilmEditorModel& model);
    void windowClosed(const std::string& key);

    FilmEditorServices& services_;
    QQmlEngine& engine_;
    files::FileSystem& system_;
    std::map<std::string, Editor> editors_; ///< by path with symbolic links resolved
};

} // namespace lumisort::film
