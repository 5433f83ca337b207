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
    forget();
    stop_ = {};
    Q_EMIT openChanged();
    Q_EMIT changed();
}

void OrganizeState::done() {
    if (!busy_ && std::exchange(open_, false)) Q_EMIT openChanged();
}

void OrganizeState::choose(const QUrl& folder) {
    if (busy_) return;
    forget();
    if (const auto url = files::FileUrl::fromString(folder.toEncoded().toStdString()))
        destination_ = url;
    else
        error_ = QStringLiteral("“%1” is not on a drive of this system. Choose a folder that is.")
                     .arg(folder.toDisplayString());
    if (destination_) look();
    Q_EMIT changed();
}

/// Nothing is known of the destination and no run was made.
void OrganizeState::forget() {
    ++looks_;
    look_ = {};
    alreadyThere_ = 0;
    leaveOut_ = false;
    report_.reset();
    resumed_.reset();
    error_.clear();
}

QCoro::Task<> OrganizeState::look() {
    const auto number = looks_;
    auto job = [&system = deps_.system, destination = *destination_, photos = photos_] {
        Look found{.unfinished = unfinishedRuns(system, destination),
                   .earlier =
                       std::make_shared<const EarlierCopies>(EarlierCopies::at(system, destination, {}))};
        found.likely = found.earlier->likely(*photos);
        return found;
    };
    auto found = co_await runner_.run(std::move(job));
    if (number != looks_ || !found || busy_) co_return;
    look_ = *std::move(found);
    alreadyThere_ = static_cast<int>(look_.likely);
    Q_EMIT changed();
}

void OrganizeState::setLeaveOut(bool leaveOut) {
    if (busy_ || leaveOut == leaveOut_) return;
    leaveOut_ = leaveOut;
    report_.reset();
    resumed_.reset();
    error_.clear();
    Q_EMIT changed();
}

void OrganizeState::setSkipDuplicates(bool skip) {
    if (busy_ || skip == skipDuplicates_) return;
    skipDuplicates_ = skip;
    report_.reset();
    resumed_.reset();
    error_.clear();
    Q_EMIT changed();
}

void OrganizeState::run() {
    if (canRun()) start({});
}

void OrganizeState::resume() {
    if (canRun() && !look_.unfinished.empty()) start(look_.unfinished.front().folder);
}

/// Begins a run, or goes on with one.
void OrganizeState::start(std::optional<files::FileUrl> run) {
    busy_ = true;
    error_.clear();
    progress_ = 0;
    status_ = QStringLiteral("Checking photos…");
    stop_ = {};
    underWay_ = std::make_shared<Progress>();
    underWay_->text = status_.toStdString();
    copy(std::move(run));
    Q_EMIT progressChanged();
    Q_EMIT changed();
    followProgress();
}

QCoro::Task<> OrganizeState::copy(std::optional<files::FileUrl> run) {
    auto job = [engine = OrganizeEngine(deps_.system, deps_.clock), photos = photos_,
                destination = *destination_, run = std::move(run),
                options = CopyOptions{skipDuplicates_, leaveOut_ ? look_.earlier : nullptr, {}},
                underWay = underWay_, stop = stop_.get_token()] {
        const auto note = [&underWay](double fraction, const std::string& text) {
            const std::scoped_lock lock(underWay->mutex);
            underWay->fraction = fraction;
            underWay->text = text;
        };
        if (!run) return Done{.report = engine.copy(*photos, destination, options, note, stop)};
        auto resumed = engine.resume(*photos, *run, {}, note, stop);
        auto report = std::move(resumed.report);
        return Done{.report = std::move(report), .resumed = std::move(resumed)};
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

void OrganizeState::finish(model::Outcome<Done> outcome) {
    busy_ = false;
    underWay_.reset();
    if (outcome) {
        report_ = std::move(outcome->report);
        resumed_ = std::move(outcome->resumed);
        look_.unfinished.clear();
        alreadyThere_ = 0;
    } else
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

QString OrganizeState::unfinished() const {
    if (look_.unfinished.empty()) return {};
    const auto& run = look_.unfinished.front();
    return QStringLiteral("An import there stopped after %1 of %2 photos: %3")
        .arg(run.copied)
        .arg(run.planned)
        .arg(QString::fromUtf8(run.folder.name()));
}

QString OrganizeState::resumedNote() const {
    if (!report_) return {};
    QStringList parts;
    const auto part = [&](std::int64_t count, const QString& what) {
        if (count > 0) parts << QString::number(count) + u' ' + what;
    };
    if (resumed_) {
        part(resumed_->present, QStringLiteral("were there already"));
        part(resumed_->added, QStringLiteral("new since"));
        part(resumed_->changed, QStringLiteral("changed since"));
        part(resumed_->gone, QStringLiteral("not chosen any more"));
        part(std::ssize(resumed_->remarks), QStringLiteral("files differ from the report"));
    }
    part(report_->alreadyThere, QStringLiteral("left out, there already"));
    return parts.join(QStringLiteral(" · "));
}

QString OrganizeState::cancelledNote() const {
    if (!report_ || !stop_.stop_requested() || report_->failures.empty()) return {};
    return QStringLiteral("Cancelled. %1 of %2 photos were copied before.")
        .arg(report_->copied.size())
        .arg(photos_->size());
}

QString OrganizeState::failures() const {
    if (!report_) return {};
    auto lines = resumed_ ? resumed_->remarks : std::vector<std::string>();
    lines.insert(lines.end(), report_->failures.begin(), report_->failures.end());
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
