#pragma once

#include "film/editor/CoalescedRender.h"
#include "film/editor/DraftSize.h"
#include "film/editor/FilmEditorServices.h"
#include "film/editor/SettingsHistory.h"

#include <QtQml/qqmlregistration.h>

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <functional>
#include <optional>

namespace lumisort::film {

/// The state behind one film editor window. It loads the saved adjustments of one photo, renders a preview
/// after each change of the settings, saves the adjustments with it, exports, and stops editing when the
/// photo's file changes. Every request carries the revision that was current when it began; a result is
/// applied only while that revision is still current and the window is open. Main thread; the services
/// outlive the model.
class FilmEditorModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by FilmEditorController")
    Q_PROPERTY(QString photoName READ photoName CONSTANT)
    Q_PROPERTY(bool hasPreview READ hasPreview NOTIFY previewChanged)
    Q_PROPERTY(bool isRAW READ isRAW NOTIFY previewChanged)
    Q_PROPERTY(bool isRendering READ isRendering NOTIFY stateChanged)
    Q_PROPERTY(bool isExporting READ isExporting NOTIFY stateChanged)
    Q_PROPERTY(bool loaded READ isLoaded NOTIFY stateChanged)
    Q_PROPERTY(bool sourceChanged READ sourceChanged NOTIFY stateChanged)
    Q_PROPERTY(bool editable READ isEditable NOTIFY stateChanged)
    Q_PROPERTY(bool canExport READ canExport NOTIFY stateChanged)
    Q_PROPERTY(bool isDefault READ isDefault NOTIFY settingsChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY settingsChanged)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY settingsChanged)
    Q_PROPERTY(bool showsOriginal READ showsOriginal WRITE setShowsOriginal NOTIFY showsOriginalChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY stateChanged)
    Q_PROPERTY(QUrl exportedURL READ exportedURL NOTIFY stateChanged)
    Q_PROPERTY(bool savePanelOpen READ isSavePanelOpen NOTIFY stateChanged)
    Q_PROPERTY(QString proposedName READ proposedName CONSTANT)
    Q_PROPERTY(QUrl photoFolder READ photoFolder CONSTANT)

public:
    using Sleep = std::function<QFuture<void>(std::chrono::milliseconds)>;
    static constexpr std::chrono::milliseconds debounce{150};
    /// How long the full-resolution development outlives the view at actual size: who compares with the whole
    /// photo comes back within that time.
    static constexpr std::chrono::seconds detailKept{20};

    FilmEditorModel(files::FileUrl photo, FilmEditorServices& services, QObject* parent = nullptr,
                    Sleep sleep = sleepOnTimer);
    ~FilmEditorModel() override;

    /// Loads the saved adjustments and asks for the first preview. Once, and again after `reload`.
    void start();
    /// The window is closing: cancels everything and saves what is not saved. Nothing is applied afterwards.
    void close();
    /// Back to the settings of a new edit.
    Q_INVOKABLE void reset() { change({}, wholeEdit); }
    /// Starts anew with the file as it is now. Not while an export runs.
    Q_INVOKABLE void reload();
    /// Opens the save panel, which ends with `finishSavePanel`.
    Q_INVOKABLE void exportPhoto();
    /// Exports to `destination`; an empty URL stands for Cancel.
    Q_INVOKABLE void finishSavePanel(const QUrl& destination);
    Q_INVOKABLE void dismissError();
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// A control was released: its changes so far are one step of undo.
    Q_INVOKABLE void seal() { history_.seal(); }

    /// A change made through the control with the number `control`; no change where the settings are equal.
    void change(const FilmSettings& settings, int control);
    static constexpr int wholeEdit = -1; ///< `control` of a change of several values at once

    /// The clipboard takes the settings, or gives them; what it holds besides is passed over.
    Q_INVOKABLE void copySettings() const;
    Q_INVOKABLE void pasteSettings();
    /// Shows a message.
    void tell(const QString& message);

    FilmEditorServices& services() { return services_; }
    const files::FileUrl& photo() const { return photo_; }
    QString photoName() const;
    const FilmSettings& settings() const { return settings_; }
    const std::optional<EditorPreview>& preview() const { return preview_; }
    /// The draft that is shown in place of the preview's print; null without one.
    const QImage& draft() const { return draft_; }
    /// Export pixels of the present settings and the rectangle of the photo that they cover; null without.
    const QImage& detail() const { return detail_; }
    QRect detailRectangle() const { return detailRectangle_; }
    /// The canvas shows this rectangle of the photo at actual size, so its export pixels are rendered; an
    /// empty one stops that.
    void showDetail(const QRect& rectangle);
    bool hasPreview() const { return preview_.has_value(); }
    bool isRAW() const { return preview_ && preview_->isRAW; }
    bool isRendering() const { return rendering_; }
    bool isExporting() const { return exporting_; }
    bool isLoaded() const { return loaded_; }
    bool sourceChanged() const { return sourceChanged_; }
    bool isEditable() const { return loaded_ && !sourceChanged_ && !exporting_; }
    bool canExport() const { return !closed_ && isEditable() && preview_; }
    bool isDefault() const { return settings_ == FilmSettings(); }
    bool canUndo() const { return history_.canUndo(); }
    bool canRedo() const { return history_.canRedo(); }
    bool showsOriginal() const { return showsOriginal_; }
    void setShowsOriginal(bool shows);
    QString errorMessage() const { return error_; }
    QUrl exportedURL() const { return exportedURL_; }
    bool isSavePanelOpen() const { return savePanelOpen_; }
    /// Name and folder that the save panel begins with.
    QString proposedName() const;
    QUrl photoFolder() const;
    /// The file called `name` in `folder`; ".tif" is added to a name without an extension of TIFF files.
    Q_INVOKABLE QUrl destination(const QUrl& folder, const QString& name) const;
    /// Revision of the newest picture that was shown, draft or preview.
    quint64 shownRevision() const { return shownRevision_; }
    /// Counts requests; a result that carries an older one is not shown.
    quint64 revision() const { return revision_; }

    static QFuture<void> sleepOnTimer(std::chrono::milliseconds delay);

Q_SIGNALS:
    void settingsChanged();
    void previewChanged();
    void draftChanged();
    void detailChanged();
    void stateChanged();
    void showsOriginalChanged();

private:
    enum class Persist { no, yes };
    /// What a render task began with.
    struct Request {
        library::FileStamp stamp;
        quint64 revision;
        FilmSettings settings;
        std::stop_token stop;
    };

    QCoro::Task<> load(quint64 revision);
    QCoro::Task<> renderPreview(Request request, Persist persist);
    QCoro::Task<> writeExport(Request request, files::FileUrl destination);
    /// Saves the settings of `request`. A failure other than a changed photo becomes the message while
    /// `isCurrent` holds.
    QCoro::Task<> save(const Request& request, std::function<bool()> isCurrent, std::function<void()> saved);
    QCoro::Task<> requireUnchanged(library::FileStamp expected);
    void applySettings(const FilmSettings& settings);
    void requestPreview(Persist persist);
    void cancelPreview();
    void show(const std::exception_ptr& error);
    void requestDetail();
    void dropDetail();

    struct DraftRequest {
        FilmSettings settings;
        quint64 revision;
        int longEdge;
    };
    struct DetailRequest {
        FilmSettings settings;
        quint64 revision;
        QRect rectangle;
    };
    void showDraft(const DraftRequest& request, const QImage& picture, double milliseconds);
    void applyDetail(const DetailRequest& request, const QImage& picture);

    const files::FileUrl photo_;
    FilmEditorServices& services_;
    const Sleep sleep_;
    SettingsHistory history_;
    FilmSettings settings_;
    std::optional<EditorPreview> preview_;
    std::optional<FilmSettings> previewSettings_; ///< of the preview on show
    quint64 shownRevision_ = 0;                   ///< of the newest picture that was shown, draft or preview
    QImage draft_, detail_;
    QRect detailRectangle_, wantedDetail_;
    QString error_;
    QUrl exportedURL_;
    std::optional<library::FileStamp> sourceStamp_; ///< of the file that was loaded
    bool rendering_ = true, exporting_ = false, loaded_ = false, sourceChanged_ = false;
    bool showsOriginal_ = false, savePanelOpen_ = false;
    bool loading_ = false;   ///< a load task exists
    bool canPersist_ = true; ///< the edit store could be read
    bool dirty_ = false;     ///< settings changed since the last save
    bool closed_ = false;
    quint64 revision_ = 0;
    std::stop_source loadStop_, previewStop_, exportStop_;
    DraftSize draftSize_;
    CoalescedRender<DraftRequest> drafts_;
    CoalescedRender<DetailRequest> details_;
    QTimer detailUnused_; ///< runs from the end of the view at actual size until its source is freed
};

} // namespace lumisort::film
