#pragma once

#include "review/FolderList.h"
#include "review/PhotoCursor.h"
#include "review/SimilarRows.h"
#include "review/WindowCommands.h"
#include "review/marks/MarkHistory.h"

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace lumisort::review {

/// The state behind the library's window: what QML cannot ask the model for itself. It holds nothing of the
/// library. Main thread; the model outlives it.
class LibraryWindow : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QObject* model READ modelObject CONSTANT)
    Q_PROPERTY(QAbstractItemModel* photos READ photos CONSTANT)
    Q_PROPERTY(QAbstractItemModel* folders READ folders CONSTANT)
    Q_PROPERTY(lumisort::review::SimilarRows* groups READ groups CONSTANT)
    Q_PROPERTY(lumisort::review::PhotoCursor* cursor READ cursor CONSTANT)
    Q_PROPERTY(lumisort::review::WindowCommands* commands READ commands CONSTANT)
    Q_PROPERTY(lumisort::review::MarkHistory* marks READ marks CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(QString page READ page NOTIFY pageChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY pageChanged)
    Q_PROPERTY(int recordedCount READ recordedCount NOTIFY pageChanged)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY selectionChanged)
    Q_PROPERTY(int selectionRevision READ selectionRevision NOTIFY selectionChanged)
    Q_PROPERTY(int marksRevision READ marksRevision NOTIFY marksChanged)
    Q_PROPERTY(int method READ method WRITE setMethod NOTIFY similarityChanged)
    Q_PROPERTY(int level READ level WRITE setLevel NOTIFY similarityChanged)
    Q_PROPERTY(QStringList methods READ methods CONSTANT)
    Q_PROPERTY(QStringList levels READ levels CONSTANT)
    Q_PROPERTY(int groupCount READ groupCount NOTIFY similarityChanged)
    Q_PROPERTY(QString deviceName READ deviceName NOTIFY deviceChanged)
    Q_PROPERTY(QString folderToRemove READ folderToRemove NOTIFY folderToRemoveChanged)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)

public:
    explicit LibraryWindow(model::LibraryModel& model, QObject* parent = nullptr);

    QObject* modelObject() const { return &model_; }
    QAbstractItemModel* photos() const { return &model_.visiblePhotos(); }
    QAbstractItemModel* folders() { return &folders_; }
    SimilarRows* groups() { return &groups_; }
    PhotoCursor* cursor() { return &cursor_; }
    WindowCommands* commands() { return &commands_; }
    MarkHistory* marks() { return &marks_; }

    /// The heading over the photos.
    QString title() const;
    /// What fills the window: "welcome", "photos", "empty" (no photo to show; `emptyText` says why),
    /// "groups", "scanning", "findMatches" (no scan yet), "noMatches".
    QString page() const;
    QString emptyText() const;
    int recordedCount() const { return static_cast<int>(model_.photos().size()); }

    int selectedCount() const { return static_cast<int>(model_.selected().size()); }
    /// Goes up with every change, so that cards on show ask isSelected or decision again.
    int selectionRevision() const { return selectionRevision_; }
    int marksRevision() const { return marksRevision_; }
    Q_INVOKABLE bool isSelected(const QString& url) const;
    Q_INVOKABLE bool isReadable(const QString& url) const;
    /// "Keep", "For Cleanup" or "".
    Q_INVOKABLE QString decision(const QString& url) const;

    Q_INVOKABLE void showSection(const QString& section);
    Q_INVOKABLE void showFolder(const QString& url);
    /// What the context menu of one photo asks for.
    Q_INVOKABLE void showDetails(const QString& url);
    /// `decision` as in decision().
    Q_INVOKABLE void mark(const QString& url, const QString& decision);

    /// The picker's choices: another method scans anew; another level scans anew where a scan had finished.
    int method() const { return static_cast<int>(model_.similarityMethod()); }
    void setMethod(int method);
    int level() const { return static_cast<int>(model_.similarityLevel()); }
    void setLevel(int level);
    static QStringList methods();
    static QStringList levels();
    int groupCount() const { return static_cast<int>(model_.similarGroups().size()); }

    /// The first drive that waits for an answer, "" for none.
    QString deviceName() const;
    Q_INVOKABLE void browseDevice();
    Q_INVOKABLE void dismissDevice();

    /// The URL of the folder whose removal waits to be confirmed, "" for none.
    QString folderToRemove() const { return folderToRemove_; }
    Q_INVOKABLE void askToRemove(const QString& url);
    Q_INVOKABLE void answerRemoval(bool remove);

    /// Adds folders one after another, chosen or dropped; what is no folder is named in `notice`.
    Q_INVOKABLE void addFolders(const QList<QUrl>& urls);
    QString notice() const { return notice_; }
    Q_INVOKABLE void dismissNotice() { say({}); }

    /// The photos to compare, and the group of similar photos that holds them, if one on show does.
    std::vector<library::Photo> comparedGroup() const;

Q_SIGNALS:
    void titleChanged();
    void pageChanged();
    void selectionChanged();
    void marksChanged();
    void similarityChanged();
    void deviceChanged();
    void folderToRemoveChanged();
    void noticeChanged();
    /// A folder is to be chosen and given to addFolders; `startingAt` is a file URL, or "" for anywhere.
    void folderWanted(const QString& startingAt);

private:
    std::optional<library::Photo> photoOf(const QString& url) const;
    void say(const QString& notice);
    void refuse(const QStringList& names);

    model::LibraryModel& model_;
    MarkHistory marks_;
    FolderList folders_;
    SimilarRows groups_;
    PhotoCursor cursor_;
    WindowCommands commands_;
    int selectionRevision_ = 0, marksRevision_ = 0;
    QString folderToRemove_, notice_;
};

} // namespace lumisort::review
