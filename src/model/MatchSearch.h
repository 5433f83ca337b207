#pragma once

#include "model/Availability.h"
#include "model/ExclusiveTask.h"
#include "model/MatchEngine.h"
#include "model/SimilarityMethod.h"

#include <QStringList>
#include <memory>
#include <stop_token>
#include <variant>
#include <vector>

namespace lumisort::model {

using MatchOutcome = std::variant<MatchSummary, MatchCancelled, MatchFailed>;

/// Finds matching photos on other threads, as the exclusive task, and holds the groups until the user asks
/// for others or their files change. Main thread; everything given outlives it.
class MatchSearch : public MainThreadObject {
    Q_OBJECT
    Q_PROPERTY(bool running READ running NOTIFY changed)
    Q_PROPERTY(bool complete READ complete NOTIFY changed)
    Q_PROPERTY(int groupCount READ groupCount NOTIFY changed)
    Q_PROPERTY(QStringList failures READ failures NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)

public:
    using Groups = std::vector<similarity::SimilarityGroup>;

    MatchSearch(Library& library, Availability& availability, ExclusiveTask& task, Reports& reports,
                const TaskRunner& runner, MatchEngine engine);
    ~MatchSearch() override;

    /// Asks for a look at the files and scans the photos that can be read, as they are known now. Nothing
    /// happens while another task runs or no photo can be read; the future is cancelled then.
    QFuture<MatchOutcome> find();
    /// Ends the scan that runs, if one does.
    void stop();

    SimilarityMethod method() const { return method_; }
    /// Drops the groups: those of another method say nothing about this one's.
    void setMethod(SimilarityMethod method);
    similarity::SimilarityLevel level() const { return level_; }
    void setLevel(similarity::SimilarityLevel level);

    const Groups& groups() const { return *groups_; }
    /// The groups as they are now, whatever is found later.
    std::shared_ptr<const Groups> sharedGroups() const { return groups_; }
    int groupCount() const { return static_cast<int>(groups_->size()); }
    /// "name: reason" of each photo that the last scan could not analyse.
    const QStringList& failures() const { return failures_; }
    bool running() const { return running_; }
    /// Whether a scan has ended and its groups still stand.
    bool complete() const { return complete_; }
    double progress() const { return progress_; } ///< 0 to 1

Q_SIGNALS:
    void started();
    void changed();
    /// A photo of the groups has another name; nothing else is different.
    void renamed(const lumisort::files::FileUrl& before, const lumisort::library::Photo& after);
    void progressChanged();

private:
    struct Found;
    QCoro::Task<MatchOutcome> scan(ExclusiveTask::Hold hold);
    MatchOutcome apply(Outcome<Found> found);
    void showProgress(std::uint64_t scan, double fraction, const std::string& text);
    void dropGroups();
    void dropOutdated();
    void follow(const files::FileUrl& before, const library::Photo& after);

    Library& library_;
    Availability& availability_;
    ExclusiveTask& task_;
    Reports& reports_;
    const TaskRunner& runner_;
    const MatchEngine engine_;
    SimilarityMethod method_ = SimilarityMethod::visual;
    similarity::SimilarityLevel level_ = similarity::SimilarityLevel::balanced;
    std::shared_ptr<const Groups> groups_ = std::make_shared<const Groups>();
    QStringList failures_;
    bool running_ = false, complete_ = false;
    double progress_ = 0;
    std::uint64_t scan_ = 0; ///< the latest scan; progress of an older one is dropped
    std::stop_source stop_;  ///< of the latest scan
    /// Entries carry the stamp of their file. The scan that runs has it to itself.
    std::shared_ptr<similarity::MatchCaches> caches_ = std::make_shared<similarity::MatchCaches>();
    std::string storageProblem_; ///< the latest reported one
};

} // namespace lumisort::model
