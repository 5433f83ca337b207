// Scans for matching photos: started, followed, stopped, shown.

#include "model/LibraryModel.h"
#include "model/Utf8.h"
#include "platform/tasks/Cancellation.h"
#include "similarity/featureprint/FeaturePrintModel.h"

#include <algorithm>

namespace lumisort::model {

using library::Photo;
using similarity::SimilarityGroup;

/// What a scan brings back; the counts of the other methods are zero.
struct LibraryModel::SimilarityOutcome {
    SimilarityMethod method = SimilarityMethod::exact;
    std::vector<SimilarityGroup> groups;
    std::size_t unreadable = 0;
    std::size_t lowDetail = 0;
    std::vector<std::string> failures;
    similarity::FingerprintCache fingerprints;
    similarity::FeaturePrintCache prints;
};

namespace {

constexpr int scanWorkers = 4;

std::vector<SimilarityGroup> asGroups(std::vector<std::vector<Photo>> copies) {
    std::vector<SimilarityGroup> groups;
    for (auto& photos : copies) groups.push_back({.anchor = photos.front(), .photos = std::move(photos)});
    return groups;
}

QString nearProgressText(std::size_t completed, std::size_t total) {
    return completed == total ? QStringLiteral("Grouping matches…")
                              : QStringLiteral("Analyzing %1 of %2…").arg(completed).arg(total);
}

bool isCancellation(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const tasks::Cancelled&) {
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

void LibraryModel::setSimilarityMethod(SimilarityMethod method) {
    if (std::exchange(similarityMethod_, method) == method) return;
    similarGroups_.clear();
    similarityComplete_ = false;
    setSelected({});
    Q_EMIT similarityChanged();
}

void LibraryModel::setSimilarityLevel(similarity::SimilarityLevel level) {
    if (std::exchange(similarityLevel_, level) != level) Q_EMIT similarityChanged();
}

void LibraryModel::findSimilar() {
    refreshAvailability();
    if (busy_ || availableCount() == 0) return;
    const auto scan = ++similarityScan_;
    similarityCancellationRequested_ = false;
    scanStop_ = std::stop_source();
    setBusy(true);
    similarityRunning_ = true;
    similarityComplete_ = false;
    similarGroups_.clear();
    similarityFailures_.clear();
    similarityProgress_ = 0;
    Q_EMIT similarityProgressChanged();
    setSelected({});
    setSection(QStringLiteral("similar"));
    say(QStringLiteral("Analyzing photos…"));
    Q_EMIT similarityChanged();

    const auto report = [post = runner_.mainThread(), model = QPointer(this), scan](double fraction,
                                                                                    QString status) {
        post([model, scan, fraction, status = std::move(status)] {
            if (model) model->showSimilarityProgress(scan, fraction, status);
        });
    };
    const auto stop = scanStop_.get_token();
    const auto job = [engines = with_.engines, report, stop, photos = availablePhotos(),
                      method = similarityMethod_, level = similarityLevel_, fingerprints = similarityCache_,
                      prints = visionCache_] {
        SimilarityOutcome outcome{.method = method};
        if (method == SimilarityMethod::exact) {
            auto [groups, failed] = engines.exact(photos, stop);
            outcome.groups = asGroups(std::move(groups));
            outcome.unreadable = failed;
        } else if (method == SimilarityMethod::nearDuplicates) {
            auto result = engines.near(
                photos, level, fingerprints, scanWorkers,
                [&](std::size_t completed, std::size_t total) {
                    report(static_cast<double>(completed) /
                               static_cast<double>(std::max<std::size_t>(total, 1)),
                           nearProgressText(completed, total));
                },
                stop);
            outcome.groups = std::move(result.groups);
            outcome.unreadable = result.unreadable;
            outcome.lowDetail = result.lowDetail;
            outcome.fingerprints = std::move(result.cache);
        } else {
            auto result = engines.visual(
                photos, level, prints, scanWorkers,
                [&](double fraction, std::string_view status) { report(fraction, fromUtf8(status)); }, stop);
            outcome.groups = std::move(result.groups);
            outcome.failures = std::move(result.failures);
            outcome.prints = std::move(result.cache);
        }
        return outcome;
    };
    work_ = runner_.start(
        this, job, [this](Outcome<SimilarityOutcome> outcome) { applySimilarity(std::move(outcome)); });
}

void LibraryModel::stopSimilarity() {
    similarityCancellationRequested_ = true;
    scanStop_.request_stop();
    say(QStringLiteral("Stopping…"));
}

void LibraryModel::showSimilarityProgress(std::uint64_t scan, double fraction, const QString& text) {
    if (!similarityRunning_ || scan != similarityScan_ || similarityCancellationRequested_) return;
    similarityProgress_ = fraction;
    Q_EMIT similarityProgressChanged();
    say(text);
}

void LibraryModel::applySimilarity(Outcome<SimilarityOutcome> outcome) {
    if (!outcome) {
        say(isCancellation(outcome.error()) ? QStringLiteral("Scan cancelled")
                                            : QStringLiteral("Similarity scan failed: ") +
                                                  QString::fromStdString(describe(outcome.error())));
    } else {
        similarGroups_ = std::move(outcome->groups);
        QString status = QString::number(similarGroups_.size());
        const auto append = [&status](std::size_t count, const QString& what) {
            if (count > 0) status += QStringLiteral(" · %1 ").arg(count) + what;
        };
        switch (outcome->method) {
        case SimilarityMethod::exact:
            status += QStringLiteral(" exact-copy groups");
            append(outcome->unreadable, QStringLiteral("unreadable"));
            break;
        case SimilarityMethod::nearDuplicates:
            similarityCache_ = std::move(outcome->fingerprints);
            status += QStringLiteral(" near-duplicate groups");
            append(outcome->unreadable, QStringLiteral("unreadable"));
            append(outcome->lowDetail, QStringLiteral("low-detail skipped"));
            break;
        case SimilarityMethod::visual:
            visionCache_ = std::move(outcome->prints);
            for (const auto& line : outcome->failures) similarityFailures_.push_back(fromUtf8(line));
            status += QStringLiteral(" visual groups");
            append(outcome->failures.size(), QStringLiteral("failed"));
            break;
        }
        say(status);
        similarityComplete_ = true;
    }
    setBusy(false);
    similarityRunning_ = false;
    Q_EMIT similarityChanged();
}

void LibraryModel::invalidateSimilarity() {
    similarGroups_.clear();
    similarityComplete_ = false;
    similarityCache_.clear();
    visionCache_.clear();
    similarityFailures_.clear();
    Q_EMIT similarityChanged();
}

} // namespace lumisort::model
