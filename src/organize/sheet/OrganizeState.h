#pragma once

#include "model/ModelDependencies.h"
#include "organize/OrganizeEngine.h"
#include "organize/SavedPlan.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QString>
#include <QUrl>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace lumisort::organize {

/// What stands behind the sheet that copies photos into a dated tree: ready, running, then done with a report
/// or failed with an error. Main thread.
class OrganizeState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    Q_PROPERTY(int photoCount READ photoCount NOTIFY openChanged)
    Q_PROPERTY(QString destination READ destination NOTIFY changed)
    Q_PROPERTY(QUrl destinationUrl READ destinationUrl NOTIFY changed)
    Q_PROPERTY(bool skipDuplicates READ skipDuplicates WRITE setSkipDuplicates NOTIFY changed)
    Q_PROPERTY(QString unfinished READ unfinished NOTIFY changed)
    Q_PROPERTY(int alreadyThere READ alreadyThere NOTIFY changed)
    Q_PROPERTY(bool leaveOut READ leaveOut WRITE setLeaveOut NOTIFY changed)
    Q_PROPERTY(QString resumedNote READ resumedNote NOTIFY changed)
    Q_PROPERTY(bool busy READ busy NOTIFY changed)
    Q_PROPERTY(bool stopping READ stopping NOTIFY changed)
    Q_PROPERTY(bool canRun READ canRun NOTIFY changed)
    Q_PROPERTY(QString reason READ reason NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)
    Q_PROPERTY(QString headline READ headline NOTIFY changed)
    Q_PROPERTY(QString cancelledNote READ cancelledNote NOTIFY changed)
    Q_PROPERTY(QString failures READ failures NOTIFY changed)
    Q_PROPERTY(QString log READ log NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString status READ status NOTIFY progressChanged)

public:
    explicit OrganizeState(model::ModelDependencies deps = {});
    /// Stops a run.
    ~OrganizeState() override;

    /// Opens the sheet for these photos, with nothing else chosen. Not during a run.
    void open(std::vector<library::Photo> photos);
    /// Closes the sheet, which forgets everything. Not during a run.
    Q_INVOKABLE void done();
    /// Takes the folder that the user chose, and looks there for unfinished and earlier runs. One that is not
    /// local, as some desktops offer, becomes the error. Not during a run.
    Q_INVOKABLE void choose(const QUrl& folder);
    void setSkipDuplicates(bool skip);
    void setLeaveOut(bool leaveOut);
    /// Goes on with the unfinished run on another thread.
    Q_INVOKABLE void resume();
    /// Copies on another thread. Nothing happens while `canRun` is false.
    Q_INVOKABLE void run();
    /// Stops the run; the report says what was copied until then.
    Q_INVOKABLE void cancel();

    bool isOpen() const { return open_; }
    int photoCount() const { return static_cast<int>(photos_->size()); }
    /// The path, "" before one is chosen.
    QString destination() const;
    QUrl destinationUrl() const;
    bool skipDuplicates() const { return skipDuplicates_; }
    /// Says which run at the destination did not come to its end, the latest one; "" for none.
    QString unfinished() const;
    /// How many photos seem to have a copy there.
    int alreadyThere() const { return alreadyThere_; }
    /// Whether photos that earlier runs copied there are left out.
    bool leaveOut() const { return leaveOut_; }
    bool busy() const { return busy_; }
    bool stopping() const { return busy_ && stop_.stop_requested(); }
    bool canRun() const { return reason().isEmpty(); }
    /// Why there can be no run now, "" where there can.
    QString reason() const;
    /// Why the last run failed as a whole, "" where it did not.
    QString error() const { return error_; }

    // Of the report; "" without one.

    QString headline() const;
    /// Says that the run was cancelled and how far it came, "" where it was not.
    QString cancelledNote() const;
    /// What of a run that went on was there before, and what is different; "" for another run.
    QString resumedNote() const;
    /// Files of a resumed run that are not what its report says, and photos that failed, one a line; past
    /// mostFailureLines the number of those left out.
    QString failures() const;
    /// The URL of the report on disk, "" where none was written.
    QString log() const;

    /// 0 to 1, with what is being done.
    double progress() const { return progress_; }
    QString status() const { return status_; }

    /// A text of a hundred thousand lines would hold up the window.
    static constexpr std::size_t mostFailureLines = 1000;

Q_SIGNALS:
    void openChanged();
    void changed();
    void progressChanged();

private:
    /// How far the run is, on its way to the main thread.
    struct Progress {
        std::mutex mutex;
        double fraction = 0; ///< guarded by mutex
        std::string text;    ///< guarded by mutex
    };

    /// What became of a run.
    struct Done {
        OrganizeReport report;
        std::optional<ResumedRun> resumed; ///< its report is above
    };
    /// What is at a destination.
    struct Look {
        std::vector<UnfinishedRun> unfinished;
        std::shared_ptr<const EarlierCopies> earlier;
        std::int64_t likely = 0;
    };

    QCoro::Task<> look();
    void start(std::optional<files::FileUrl> run);
    QCoro::Task<> copy(std::optional<files::FileUrl> run);
    void followProgress();
    void forget();
    void finish(model::Outcome<Done> outcome);

    model::ModelDependencies deps_;
    std::shared_ptr<const std::vector<library::Photo>> photos_;
    std::optional<files::FileUrl> destination_;
    Look look_;
    int alreadyThere_ = 0;
    std::uint64_t looks_ = 0; ///< the latest; what an older one finds is dropped
    std::optional<ResumedRun> resumed_;
    bool open_ = false, skipDuplicates_ = true, leaveOut_ = false, busy_ = false;
    std::optional<OrganizeReport> report_;
    QString error_, status_;
    double progress_ = 0;
    std::shared_ptr<Progress> underWay_; ///< of the run under way, none without
    std::stop_source stop_;
    model::TaskRunner runner_; // last: no job outlives what it posts to
};

} // namespace lumisort::organize
