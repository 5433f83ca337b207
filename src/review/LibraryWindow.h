#pragma once

#include "review/FolderList.h"
#include "review/ModelTypes.h"
#include "review/PhotoActions.h"
#include "review/PhotoCursor.h"
#include "review/SimilarRows.h"
#include "review/StatusLine.h"
#include "review/WindowActions.h"
#include "review/WindowState.h"
#include "review/marks/MarkHistory.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QUrl>
#include <functional>

namespace lumisort::review {

/// The state behind the library's window: the objects that its views show, and what they cannot ask these
/// for. Holds nothing of the library. Main thread; the model outlives it.
class LibraryWindow : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(lumisort::review::WindowState* state READ state CONSTANT)
    Q_PROPERTY(lumisort::review::StatusLine* status READ status CONSTANT)
    Q_PROPERTY(lumisort::model::Library* library READ library CONSTANT)
    Q_PROPERTY(lumisort::model::ExclusiveTask* task READ task CONSTANT)
    Q_PROPERTY(lumisort::model::FolderImport* folderImport READ folderImport CONSTANT)
    Q_PROPERTY(lumisort::model::MatchSearch* matches READ matches CONSTANT)
    Q_PROPERTY(lumisort::model::Selection* selection READ selection CONSTANT)
    Q_PROPERTY(QAbstractItemModel* photos READ photos CONSTANT)
    Q_PROPERTY(QAbstractItemModel* folders READ folders CONSTANT)
    Q_PROPERTY(lumisort::review::SimilarRows* groups READ groups CONSTANT)
    Q_PROPERTY(lumisort::review::PhotoCursor* cursor READ cursor CONSTANT)
    Q_PROPERTY(lumisort::review::ActionSet* actions READ actions CONSTANT)
    Q_PROPERTY(lumisort::review::PhotoActions* photoActions READ photoActions CONSTANT)
    Q_PROPERTY(lumisort::review::MarkHistory* marks READ marks CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(Page page READ page NOTIFY pageChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY pageChanged)
    Q_PROPERTY(int selectionRevision READ selectionRevision NOTIFY selectionChanged)
    Q_PROPERTY(int method READ method WRITE setMethod NOTIFY similarityChanged)
    Q_PROPERTY(int level READ level WRITE setLevel NOTIFY similarityChanged)
    Q_PROPERTY(QStringList methods READ methods CONSTANT)
    Q_PROPERTY(QStringList levels READ levels CONSTANT)
    Q_PROPERTY(QString deviceName READ deviceName NOTIFY deviceChanged)
    Q_PROPERTY(QString folderToRemove READ folderToRemove NOTIFY folderToRemoveChanged)
    Q_PROPERTY(QString folderToProtect READ folderToProtect NOTIFY folderToProtectChanged)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(bool noticeCanBeUndone READ noticeCanBeUndone NOTIFY noticeChanged)

public:
    /// What fills the window.
    enum Page {
        Welcome, ///< the library has no photos
        Photos,
        Empty, ///< no photo to show; `emptyText` says why
        Groups,
        Scanning,
        FindMatches, ///< no scan yet
        NoMatches,
    };
    Q_ENUM(Page)

    explicit LibraryWindow(model::LibraryModel& model, QObject* parent = nullptr);

    WindowState* state() { return &state_; }
    StatusLine* status() { return &status_; }
    model::Library* library() { return &model_.library(); }
    model::ExclusiveTask* task() { return &model_.task(); }
    model::FolderImport* folderImport() { return &model_.folderImport(); }
    model::MatchSearch* matches() { return &model_.matches(); }
    model::Selection* selection() { return &model_.selection(); }
    QAbstractItemModel* photos() { return &state_.photos(); }
    QAbstractItemModel* folders() { return &folders_; }
    SimilarRows* groups() { return &groups_; }
    PhotoCursor* cursor() { return &cursor_; }
    ActionSet* actions() { return &actions_; }
    PhotoActions* photoActions() { return &photoActions_; }
    MarkHistory* marks() { return &marks_; }

    /// The heading over the photos.
    QString title() const;
    Page page() const;
    QString emptyText() const;

    /// Goes up with every change, so that cards on show ask isSelected again.
    int selectionRevision() const { return selectionRevision_; }
    Q_INVOKABLE bool isSelected(const QString& url) const;

    Q_INVOKABLE void showSection(lumisort::review::WindowState::ShownSection section);
    Q_INVOKABLE void showFolder(const QString& url);
    /// The picker's choices: another method scans anew; another level scans anew where a scan had finished.
    int method() const { return static_cast<int>(model_.matches().method()); }
    void setMethod(int method);
    int level() const { return static_cast<int>(model_.matches().level()); }
    void setLevel(int level);
    static QStringList methods();
    static QStringList levels();

    /// The first drive that waits for an answer, "" for none.
    QString deviceName() const;
    Q_INVOKABLE void browseDevice();
    Q_INVOKABLE void dismissDevice();

    /// The URL of the folder that is to be protected once that is confirmed, "" for none.
    QString folderToProtect() const { return folderToProtect_; }
    Q_INVOKABLE void askToProtect(const QString& url);
    Q_INVOKABLE void answerProtection(bool protect);
    Q_INVOKABLE void endProtection(const QString& url);

    /// The URL of the folder whose removal waits to be confirmed, "" for none.
    QString folderToRemove() const { return folderToRemove_; }
    Q_INVOKABLE void askToRemove(const QString& url);
    Q_INVOKABLE void answerRemoval(bool remove);

    /// Adds folders one after another, chosen or dropped; what is no folder is named in `notice`.
    Q_INVOKABLE void addFolders(const QList<QUrl>& urls);
    QString notice() const { return notice_; }
    Q_INVOKABLE void dismissNotice() { say({}); }
    /// Shows what was done outside of this window, which `undo` takes back where it is given.
    void say(const QString& notice, std::function<void()> undo = {});
    bool noticeCanBeUndone() const { return undoNotice_ != nullptr; }
    /// Takes back what the notice tells of, and dismisses it.
    Q_INVOKABLE void undoNotice();

Q_SIGNALS:
    void titleChanged();
    void pageChanged();
    void selectionChanged();
    void similarityChanged();
    void deviceChanged();
    void folderToRemoveChanged();
    void folderToProtectChanged();
    void noticeChanged();
    /// A folder is to be chosen and given to addFolders; `startingAt` is a file URL, or "" for anywhere.
    void folderWanted(const QString& startingAt);

private:
    void refuse(const QStringList& names);

    model::LibraryModel& model_;
    WindowState state_;
    StatusLine status_;
    MarkHistory marks_;
    FolderList folders_;
    SimilarRows groups_;
    PhotoCursor cursor_;
    WindowActions actions_;
    PhotoActions photoActions_;
    int selectionRevision_ = 0;
    QString folderToRemove_, folderToProtect_, notice_;
    std::function<void()> undoNotice_; ///< none where the notice tells of nothing that can be undone
};

} // namespace lumisort::review
