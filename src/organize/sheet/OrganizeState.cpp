#include "organize/sheet/OrganizeState.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace lumisort::organize {

namespace {

/// How often the bar moves: often enough to look steady, whatever number of photos a second there is.
constexpr std::chrono::milliseconds progressInterval(100);

} // namespace

OrganizeState::OrganizeState(model::ModelDependencies deps)
    : deps_(std::move(deps)), photos_(std::make_shared<const std::vector<library::Photo>>()),
      runner_(deps_.background) {}

OrganizeState::~OrganizeState() {
    stop_.request_stop();
}

void OrganizeState::open(std::vector<library::Photo> photos) {
    if (busy_) return;
    open_ = true;
    photos_ = std::make_shared<const std::vector<library::Photo>>(std::move(photos));
    destination_.reset();
    skipDuplicates_ = true;
    report_.reset();
    error_.clear();
    stop_ = {};
    Q_EMIT openChanged();
    Q_EMIT changed();
}

void OrganizeState::done() {
    if (!busy_ && std::exchange(open_, false)) Q_EMIT openChanged();
}

void OrganizeState::choose(const QUrl& folder) {
    if (busy_) return;
    report_.reset();
    error_.clear();
    if (const auto url = files::FileUrl::fromString(folder.toEncoded().toStdString()))
        destination_ = url;
    else
        error_ = QStringLiteral("“%1” is not on a drive of this system. Choose a folder that is.")
                     .arg(folder.toDisplayString());
    Q_EMIT changed();
}

void OrganizeState::setSkipDuplicates(bool skip) {
    if (busy_ || skip == skipDuplicates_) return;
    skipDuplicates_ = skip;
    report_.reset();
    error_.clear();
    Q_EMIT changed();
}

void OrganizeState::run() {
    if (!canRun()) return;
    busy_ = true;
    error_.clear();
    progress_ = 0;
    status_ = QStringLiteral("Checking photos…");
    stop_ = {};
    underWay_ = std::make_shared<Progress>();
    underWay_->text = status_.toStdString();
    copy();
    Q_EMIT progressChanged();
    Q_EMIT changed();
    followProgress();
}

QCoro::Task<> OrganizeState::copy() {
    auto job = [engine = OrganizeEngine(deps_.system, deps_.clock), photos = photos_,
                destination = *destination_, skip = skipDuplicates_, underWay = underWay_,
                stop = stop_.get_token()] {
        const auto note = [&underWay](double fraction, const std::string& text) {
            const std::scoped_lock lock(underWay->mutex);
            underWay->fraction = fraction;
            underWay->text = text;
        };
        return engine.copy(*photos, destination, skip, note, stop);
    };
    auto outcome = co_await runner_.run(std::move(job));
    finish(std::move(outcome));
}

void OrganizeState::cancel() {
    if (!busy_ || !stop_.request_stop()) return;
    Q_EMIT changed();
}

void OrganizeState::followProgress() {
    deps_.after(progressInterval, this, [this, run = underWay_] {
        if (run != underWay_ || !run) return; // that run is over
        {
            const std::scoped_lock lock(run->mutex);
            progress_ = run->fraction;
            status_ = QString::fromUtf8(run->text);
        }
        Q_EMIT progressChanged();
        followProgress();
    });
}

void OrganizeState::finish(model::Outcome<OrganizeReport> outcome) {
    busy_ = false;
    underWay_.reset();
    if (outcome)
        report_ = std::move(*outcome);
    else
        error_ = QString::fromUtf8(model::describe(outcome.error()));
    Q_EMIT changed();
}

QString OrganizeState::destination() const {
    return destination_ ? QString::fromUtf8(destination_->path()) : QString();
}

QUrl OrganizeState::destinationUrl() const {
    return destination_ ? QUrl(QString::fromStdString(destination_->string())) : QUrl();
}

QString OrganizeState::reason() const {
    if (busy_) return QStringLiteral("The import is running.");
    if (photos_->empty()) return QStringLiteral("There are no photos to import.");
    if (!destination_) return QStringLiteral("Choose a destination first.");
    if (report_)
        return QStringLiteral("This import is done. Choose a destination again to start another one.");
    return {};
}

QString OrganizeState::headline() const {
    if (!report_) return {};
    return QStringLiteral("%1 copied · %2 skipped · %3 failed")
        .arg(report_->copied.size())
        .arg(report_->duplicates)
        .arg(report_->failures.size());
}

QString OrganizeState::cancelledNote() const {
    if (!report_ || !stop_.stop_requested() || report_->failures.empty()) return {};
    return QStringLiteral("Cancelled. %1 of %2 photos were copied before.")
        .arg(report_->copied.size())
        .arg(photos_->size());
}

QString OrganizeState::failures() const {
    if (!report_) return {};
    const auto& lines = report_->failures;
    const auto shown = std::min(lines.size(), mostFailureLines);
    QString text;
    for (std::size_t i = 0; i < shown; ++i) {
        if (i > 0) text += u'\n';
        text += QString::fromUtf8(lines[i]);
    }
    if (shown < lines.size()) text += QStringLiteral("\n… and %1 more").arg(lines.size() - shown);
    return text;
}

QString OrganizeState::log() const {
    return report_ && report_->logURL ? QString::fromStdString(report_->logURL->string()) : QString();
}

} // namespace lumisort::organize
