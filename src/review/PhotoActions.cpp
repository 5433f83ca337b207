#include "review/PhotoActions.h"

#include "review/WindowActions.h"
#include "review/marks/MarkActions.h"
#include "ui/FileBrowser.h"

namespace lumisort::review {

using library::Photo;
using model::LibraryModel;

PhotoActions::PhotoActions(LibraryModel& model, WindowState& window, MarkHistory& marks)
    : ActionSet(Scope::photo), model_(model), window_(window) {
    const auto unavailable = [this] {
        const auto photo = target();
        return photo && model_.library().isReadable(*photo) ? QString()
                                                            : QStringLiteral("This photo is unavailable.");
    };
    add(Details, [this] { window_.showDetails(target()); }, unavailable);
    add(
        Film, [this] { window_.editFilm(*target()); },
        [this, unavailable] {
            const auto reason = unavailable();
            return reason.isEmpty() ? filmReason(model_, *target()) : reason;
        });
    addMarkActions(
        *this, marks,
        [this] {
            const auto photo = target();
            return photo ? std::vector{*photo} : std::vector<Photo>();
        },
        unavailable);
    auto* browser = new ui::FileBrowser(this); // owned by this
    add(
        ShowInFileManager, [this, browser] { browser->reveal(QString::fromUtf8(url_->string())); },
        unavailable);
    connect(&model.library(), &model::Library::countsChanged, this, &ActionSet::refresh);
    connect(&model.task(), &model::ExclusiveTask::busyChanged, this, &ActionSet::refresh);
}

void PhotoActions::setTarget(const QString& url) {
    url_ = files::FileUrl::fromString(url.toStdString());
    refresh();
}

std::optional<Photo> PhotoActions::target() const {
    return url_ ? model_.library().photo(*url_) : std::nullopt;
}

} // namespace lumisort::review
