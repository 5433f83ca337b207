#include "film/editor/FilmPaste.h"

#include <QClipboard>
#include <QCoroFuture>
#include <QGuiApplication>
#include <QPointer>
#include <stdexcept>
#include <utility>

namespace lumisort::film {

namespace {

QString photoCount(std::size_t count) {
    return count == 1 ? QStringLiteral("1 photo") : QStringLiteral("%1 photos").arg(count);
}

} // namespace

FilmPaste::FilmPaste(FilmEditorServices& services, FilmEditorController& editors, QObject* parent)
    : QObject(parent), services_(services), editors_(editors) {}

void FilmPaste::paste(std::vector<files::FileUrl> photos) {
    if (busy_ || photos.empty()) return;
    const auto look = lookFromText(QGuiApplication::clipboard()->text().toStdString());
    if (!look) {
        Q_EMIT finished(QStringLiteral("The clipboard holds no film adjustments. Copy them in a photo's film "
                                       "editor first."),
                        false);
        return;
    }
    std::vector<Edit> edits;
    for (auto& photo : photos) edits.push_back({std::move(photo), look->settings.validatedForEditing()});
    apply(std::move(edits), QStringLiteral("Film adjustments pasted onto %1. Originals unchanged."));
}

void FilmPaste::undo() {
    if (!busy_ && !before_.empty())
        apply(std::exchange(before_, {}), QStringLiteral("%1 have their earlier film adjustments again."));
}

QCoro::Task<> FilmPaste::apply(std::vector<Edit> edits, QString done) {
    const QPointer<FilmPaste> self(this);
    busy_ = true;
    before_.clear();
    QString failures;
    for (const auto& edit : edits) {
        try {
            auto storing = store(edit);
            auto settings = co_await storing;
            if (!self) co_return;
            before_.push_back({edit.photo, std::move(settings)});
        } catch (const std::exception& error) {
            if (!self) co_return;
            failures += QStringLiteral(" %1: %2").arg(QString::fromUtf8(edit.photo.name()),
                                                      QString::fromUtf8(error.what()));
        }
    }
    busy_ = false;
    auto message = done.arg(photoCount(before_.size()));
    if (!failures.isEmpty())
        message += QStringLiteral(" %1 failed:").arg(edits.size() - before_.size()) + failures;
    Q_EMIT finished(message, !before_.empty());
}

QCoro::Task<FilmSettings> FilmPaste::store(Edit edit) {
    if (auto* editor = editors_.editor(edit.photo); editor && editor->isEditable()) {
        const auto before = editor->settings();
        editor->change(edit.settings, FilmEditorModel::wholeEdit);
        co_return before;
    }
    auto& services = services_;
    auto loading = services.load(edit.photo);
    const auto snapshot = co_await loading;
    if (snapshot.persistenceWarning) throw std::runtime_error(*snapshot.persistenceWarning);
    auto saving = services.save(edit.settings, edit.photo, snapshot.stamp);
    co_await saving;
    co_return snapshot.settings;
}

} // namespace lumisort::film
