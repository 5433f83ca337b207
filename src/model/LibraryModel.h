#pragma once

#include "library/DeviceDiscovery.h"
#include "library/LibraryContents.h"
#include "library/LibraryFile.h"
#include "model/LibraryState.h"
#include "model/ModelSurroundings.h"
#include "model/SimilarityMethod.h"
#include "model/VisiblePhotos.h"
#include "platform/tasks/SerialExecutor.h"
#include "similarity/SimilarityGroup.h"
#include "similarity/SimilarityLevel.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <deque>
#include <memory>
#include <optional>
#include <stop_token>
#include <unordered_set>
#include <vector>

namespace lumisort::model {

/// The running library: the one place where what the engines find meets what the user sees. One instance per
/// process; it belongs to the main thread, and every signal is emitted there.
///
/// Long work goes to other threads with copies of what it needs and comes back here, where a revision or an
/// identifier says whether it still fits; what does not is dropped. `busy` marks the one exclusive operation
/// at a time (reading the document, importing, preparing to organize, a similarity scan); marking and
/// selecting go on meanwhile. Nothing here throws, except `rename`; operations speak through `status`.
///
/// The sources are split by topic: LibraryModel.cpp (state, selection, navigation), ModelSession.cpp,
/// ModelImport.cpp, ModelAvailability.cpp, ModelMarks.cpp, ModelSimilarity.cpp, ModelRename.cpp.
class LibraryModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
    Q_PROPERTY(bool importRunning READ importRunning NOTIFY busyChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(QString section READ section WRITE setSection NOTIFY sectionChanged)
    Q_PROPERTY(int importCount READ importCount NOTIFY countsChanged)
    Q_PROPERTY(int skipCount READ skipCount NOTIFY countsChanged)
    Q_PROPERTY(int availableCount READ availableCount NOTIFY countsChanged)
    Q_PROPERTY(int unavailableCount READ unavailableCount NOTIFY countsChanged)
    Q_PROPERTY(bool similarityRunning READ similarityRunning NOTIFY similarityChanged)
    Q_PROPERTY(bool similarityComplete READ similarityComplete NOTIFY similarityChanged)
    Q_PROPERTY(double similarityProgress READ similarityProgress NOTIFY similarityProgressChanged)
    Q_PROPERTY(QStringList similarityFailures READ similarityFailures NOTIFY similarityChanged)
    Q_PROPERTY(bool compare READ compare WRITE setCompare NOTIFY compareChanged)
    Q_PROPERTY(bool organize READ organize WRITE setOrganize NOTIFY organizeChanged)
    Q_PROPERTY(int thumbnailRevision READ thumbnailRevision NOTIFY thumbnailRevisionChanged)

public:
    /// With a session the library is there at once; without one the document is read, `busy` until then.
    explicit LibraryModel(files::FileUrl sessionURL,
                          std::optional<library::LibraryContents> initialSession = {},
                          ModelSurroundings with = {});
    ~LibraryModel() override;

    // What the library holds.

    const std::vector<library::Photo>& photos() const { return state_.photos(); }
    const std::vector<files::FileUrl>& folders() const { return state_.folders(); }
    const library::ReviewMarks& reviewMarks() const { return state_.marks(); }
    std::vector<library::Photo> availablePhotos() const;
    std::vector<library::Photo> unavailablePhotos() const;
    std::optional<library::Photo> photo(const files::FileUrl& url) const;
    /// Its place in `photos`.
    std::optional<PhotoRow> row(const files::FileUrl& url) const { return state_.find(url); }
    bool isReadable(const library::Photo& photo) const;
    std::optional<library::FingerprintStamp> stamp(const library::Photo& photo) const;
    std::optional<library::FolderState> folderState(const files::FileUrl& folder) const;
    /// The mark that holds now: of a readable photo that is as it was when it was marked.
    std::optional<library::ReviewDecision> decision(const library::Photo& photo) const;
    int availableCount() const { return static_cast<int>(state_.readableCount()); }
    int unavailableCount() const { return static_cast<int>(photos().size() - state_.readableCount()); }
    int importCount() const { return static_cast<int>(state_.importCount()); }
    int skipCount() const { return static_cast<int>(state_.skipCount()); }
    /// Whether organizing would have a photo to copy.
    bool hasEligiblePhotos() const { return state_.eligibleCount() > 0; }

    // What the user sees and has chosen.

    bool busy() const { return busy_; }
    QString status() const { return status_; }
    /// "library", "folder", "offline", "keep", "cleanup" or "similar"; any other acts like "library".
    QString section() const { return section_; }
    void setSection(const QString& section);
    QString query() const { return query_; }
    void setQuery(const QString& query);
    const std::optional<files::FileUrl>& selectedFolder() const { return selectedFolder_; }
    void showFolder(const files::FileUrl& folder);
    /// The rows of the grid, changed one by one.
    VisiblePhotos& visiblePhotos() { return visible_; }
    std::vector<library::Photo> visible() const;
    const std::unordered_set<files::FileUrl>& selected() const { return selected_; }
    const std::optional<files::FileUrl>& focusedPhotoURL() const { return focused_; }
    /// The selected photos in library order.
    std::vector<library::Photo> picked() const;
    std::optional<library::Photo> detailPhoto() const;
    /// Toggles a readable photo's selection and moves the focus to it.
    void select(const library::Photo& photo);
    /// Selects these and no others, as far as they are readable, and moves the focus.
    void selectAll(std::unordered_set<files::FileUrl> photos, const std::optional<files::FileUrl>& focus);
    /// Selects and focuses a readable photo, where one is given; then asks for the details panel if there is
    /// a photo to show.
    void showDetails(const std::optional<library::Photo>& photo = {});
    /// Asks for the full-screen viewer at a readable photo, within what is on show.
    void openFullscreen(const library::Photo& photo);
    bool compare() const { return compare_; }
    void setCompare(bool open);
    bool organize() const { return organize_; }
    void setOrganize(bool open);
    const std::vector<library::Photo>& importPhotos() const { return importPhotos_; }
    int thumbnailRevision() const { return thumbnailRevision_; }
    const library::DeviceDiscovery& devices() const { return devices_; }

    // Operations. All return at once.

    /// Scans a folder that the user chose and adds the photos that are new.
    void importFolder(const files::FileUrl& folder);
    /// The same for folders that were dropped or named, one after another as soon as nothing else runs. Says
    /// in `foldersRefused` what is no folder.
    void importFolders(std::vector<files::FileUrl> urls);
    /// Whether a folder is being scanned.
    bool importRunning() const { return importRunning_; }
    /// Ends the scan: the folder comes into the library with the photos found so far, and folders that wait
    /// for their turn do not.
    void stopImport();
    void removeFolder(const files::FileUrl& folder);
    /// Asks for the folder chooser, at `startingAt` where given.
    void chooseFolder(const std::optional<files::FileUrl>& startingAt = {});
    /// The answer to "New device detected": browse it, or leave it.
    void browseDevice(const files::FileUrl& volume);
    void dismissDevice(const files::FileUrl& volume);
    void refreshAvailability();
    /// Looks which drives are there, then what can be reached: on a mount or unmount, on activation, and
    /// every 30 seconds while the window shows.
    void updateDevices();
    void mark(const std::vector<library::Photo>& photos, std::optional<library::ReviewDecision> decision);
    void beginOrganize();
    /// Throws library::RenameError and files::FileError with messages fit to be shown; nothing has changed
    /// then.
    void rename(const library::Photo& photo, std::string_view stem);

    void findSimilar();
    void stopSimilarity();
    SimilarityMethod similarityMethod() const { return similarityMethod_; }
    /// Another method's groups would say nothing about this one's: they go.
    void setSimilarityMethod(SimilarityMethod method);
    similarity::SimilarityLevel similarityLevel() const { return similarityLevel_; }
    void setSimilarityLevel(similarity::SimilarityLevel level);
    const std::vector<similarity::SimilarityGroup>& similarGroups() const { return similarGroups_; }
    QStringList similarityFailures() const { return similarityFailures_; }
    bool similarityRunning() const { return similarityRunning_; }
    bool similarityComplete() const { return similarityComplete_; }
    double similarityProgress() const { return similarityProgress_; }

    /// Writes the document one last time if anything was changed since launch; finished when it is on the
    /// medium or the write has failed. Waits for the start-up read and for marks under way.
    QFuture<void> flushSession();

    /// Finished when the operation of that kind that runs now is over; for callers without a window.
    QFuture<void> loading() const { return loadTask_; }
    QFuture<void> working() const { return work_; }
    QFuture<void> marking() const { return markTask_; }
    QFuture<void> refreshing() const { return availabilityTask_; }

Q_SIGNALS:
    void busyChanged();
    void statusChanged();
    void sectionChanged();
    void queryChanged();
    void foldersChanged();
    void countsChanged();
    void devicesChanged();
    void selectionChanged();
    void similarityChanged();
    void similarityProgressChanged();
    void compareChanged();
    void organizeChanged();
    void thumbnailRevisionChanged();
    /// A window is wanted.
    void folderWanted(const std::optional<lumisort::files::FileUrl>& startingAt);
    void detailsWanted();
    void fullscreenWanted(const std::vector<lumisort::library::Photo>& sequence, int index);
    void foldersRefused(const std::vector<lumisort::files::FileUrl>& urls);

private:
    struct MarkRequest {
        std::vector<library::Photo> photos;
        std::optional<library::ReviewDecision> decision;
    };

    // State and derived views (LibraryModel.cpp).
    void setBusy(bool busy);
    void say(const QString& status);
    void installPhotos(std::vector<library::Photo> photos);
    void photosReplaced();
    void derivedChanged();
    void updateVisible();
    void setSelected(std::unordered_set<files::FileUrl> selected);
    QFuture<void> prepareImport();

    // Session.
    void startLoading();
    /// What is worth being made ready on a worker: it takes a large library a hundred milliseconds.
    struct Restored {
        LibraryState state;
        SearchNames names;
    };
    static Restored prepared(library::LibraryContents session);
    void restore(Restored restored);
    void saveSession();
    QFuture<void> writeSession();

    // Import, availability, marks.
    void importNextFolder();
    void applyImport(const files::FileUrl& folder, library::FolderScan result);
    void inspect(const std::shared_ptr<QPromise<void>>& done);
    void applySurvey(library::LibrarySurvey survey);
    void nextMark(const std::shared_ptr<QPromise<void>>& done);
    void applyMark(const MarkRequest& request,
                   const std::vector<std::optional<library::FingerprintStamp>>& stamps);

    // Similarity.
    struct SimilarityOutcome;
    void applySimilarity(Outcome<SimilarityOutcome> outcome);
    void showSimilarityProgress(std::uint64_t scan, double fraction, const QString& text);
    void invalidateSimilarity();

    ModelSurroundings with_;
    std::shared_ptr<library::LibraryFile> document_; ///< shared with jobs, which may outlive the model
    LibraryState state_;
    VisiblePhotos visible_{state_};

    bool busy_ = false;
    QString status_ = QStringLiteral("Ready");
    QString section_ = QStringLiteral("library");
    QString query_;
    std::optional<files::FileUrl> selectedFolder_;
    std::unordered_set<files::FileUrl> selected_;
    std::optional<files::FileUrl> focused_;
    bool compare_ = false;
    bool organize_ = false;
    std::vector<library::Photo> importPhotos_;
    int thumbnailRevision_ = 0;
    library::DeviceDiscovery devices_;

    /// Goes up with every change of the set of photos or folders; an answer to an older one is dropped.
    std::uint64_t libraryRevision_ = 0;
    bool refreshRequested_ = false;
    bool sessionDirty_ = false;
    std::uint64_t saveRequest_ = 0; ///< the latest request; an older one is not written

    bool importRunning_ = false;
    std::deque<files::FileUrl> foldersToImport_;
    std::stop_source scanStop_; ///< of the folder scan or the similarity scan that runs
    std::deque<MarkRequest> markQueue_;

    SimilarityMethod similarityMethod_ = SimilarityMethod::visual;
    similarity::SimilarityLevel similarityLevel_ = similarity::SimilarityLevel::balanced;
    std::vector<similarity::SimilarityGroup> similarGroups_;
    QStringList similarityFailures_;
    bool similarityRunning_ = false;
    bool similarityComplete_ = false;
    bool similarityCancellationRequested_ = false;
    double similarityProgress_ = 0;
    std::uint64_t similarityScan_ = 0; ///< the latest scan; progress of an older one is dropped
    similarity::FingerprintCache similarityCache_;
    similarity::FeaturePrintCache visionCache_;

    QFuture<void> loadTask_, work_, availabilityTask_, markTask_;
    std::stop_source ended_; ///< stops every job when the model goes

    // Last, so that they go first: no job outlives what it posts to.
    tasks::SerialExecutor sessionWriter_;
    TaskRunner runner_;
};

} // namespace lumisort::model
