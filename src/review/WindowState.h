#pragma once

#include "model/LibraryModel.h"
#include "review/VisiblePhotos.h"

#include <QtQml/qqmlregistration.h>

#include <QString>
#include <optional>
#include <vector>

namespace lumisort::review {

/// What the library's window shows: section, folder, search, and the photos that follow from them; and what
/// else it asks for (sheets and windows, by signals). Holds nothing of the library. Main thread; the model
/// outlives it.
class WindowState : public model::MainThreadObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("part of the library's window")
    Q_PROPERTY(ShownSection section READ shownSection NOTIFY sectionChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)

public:
    /// model::Section for views.
    enum ShownSection {
        Library = static_cast<int>(model::Section::library),
        Folder = static_cast<int>(model::Section::folder),
        Offline = static_cast<int>(model::Section::offline),
        Keep = static_cast<int>(model::Section::keep),
        Cleanup = static_cast<int>(model::Section::cleanup),
        Similar = static_cast<int>(model::Section::similar),
    };
    Q_ENUM(ShownSection)

    explicit WindowState(model::LibraryModel& model);

    model::Section section() const { return section_; }
    void setSection(model::Section section);
    ShownSection shownSection() const { return static_cast<ShownSection>(section_); }
    /// The text that a file's name must contain, "" for any.
    QString query() const { return query_; }
    void setQuery(const QString& query);
    const std::optional<files::FileUrl>& folder() const { return folder_; }
    /// Shows the photos of a folder, none of them selected.
    void showFolder(const files::FileUrl& folder);
    VisiblePhotos& photos() { return photos_; }
    const VisiblePhotos& photos() const { return photos_; }

    /// Asks for the folder chooser, at `startingAt` where given; not while a task runs.
    void chooseFolder(const std::optional<files::FileUrl>& startingAt = {});
    /// Selects and focuses a readable photo, where one is given; then asks for the details panel if there is
    /// a photo to show.
    void showDetails(const std::optional<library::Photo>& photo = {});
    /// Asks for the full-screen viewer at a readable photo, among the photos on show.
    void openFullscreen(const library::Photo& photo);
    /// Asks to compare the selected photos, if they are two.
    void compare();
    /// Prepares to organize and asks for the sheet if there is a photo to copy. Not while a task runs.
    void organize();

    /// Asks for the film editor of a readable RAW photo.
    void editFilm(const library::Photo& photo) { Q_EMIT filmWanted(photo); }
    /// Asks to export RAW photos with their stored film adjustments.
    void exportFilm(const std::vector<library::Photo>& photos) { Q_EMIT filmExportWanted(photos); }
    /// Asks to give RAW photos the film adjustments on the clipboard.
    void pasteFilm(const std::vector<library::Photo>& photos) { Q_EMIT filmPasteWanted(photos); }

Q_SIGNALS:
    void sectionChanged();
    void queryChanged();
    void folderWanted(const std::optional<lumisort::files::FileUrl>& startingAt);
    void detailsWanted();
    void fullscreenWanted(const std::vector<lumisort::library::Photo>& sequence, int index);
    /// `group` is the group of similar photos on show that holds both, empty where none does.
    void compareWanted(const std::vector<lumisort::library::Photo>& photos,
                       const std::vector<lumisort::library::Photo>& group);
    void filmWanted(const lumisort::library::Photo& photo);
    void filmExportWanted(const std::vector<lumisort::library::Photo>& photos);
    void filmPasteWanted(const std::vector<lumisort::library::Photo>& photos);
    void organizeWanted(const std::vector<lumisort::library::Photo>& photos);

private:
    std::vector<const similarity::SimilarityGroup*> groupsOnShow() const;
    void update();

    model::LibraryModel& model_;
    model::Section section_ = model::Section::library;
    QString query_;
    std::optional<files::FileUrl> folder_; ///< for Section::folder
    VisiblePhotos photos_;
};

} // namespace lumisort::review
