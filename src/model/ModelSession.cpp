// Reading the document at start-up, writing it after changes and once more at the end.

#include "model/LibraryModel.h"
#include "model/Utf8.h"

namespace lumisort::model {

using library::LibraryContents;

namespace {

/// Changes within this time cost one write.
constexpr std::chrono::milliseconds saveDelay{300};

bool isMissingFile(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const files::FileError& error) {
        return error.isMissing();
    } catch (...) {
        return false;
    }
}

} // namespace

LibraryModel::Restored LibraryModel::prepared(LibraryContents session) {
    Restored restored{LibraryState(std::move(session)), {}};
    restored.names.update(restored.state.sharedPhotos());
    return restored;
}

void LibraryModel::startLoading() {
    setBusy(true);
    loadTask_ = runner_.start(
        this, [document = document_] { return prepared(document->load()); },
        [this](Outcome<Restored> session) {
            if (session) {
                restore(*std::move(session));
                say(QStringLiteral("Library restored"));
            } else if (isMissingFile(session.error())) {
                say(QStringLiteral("Ready"));
            } else {
                say(QStringLiteral("Could not restore library: ") +
                    QString::fromStdString(describe(session.error())));
            }
            setBusy(false);
            refreshAvailability();
        });
}

void LibraryModel::restore(Restored restored) {
    state_ = std::move(restored.state);
    visible_.adopt(std::move(restored.names));
    photosReplaced();
    Q_EMIT foldersChanged();
}

void LibraryModel::saveSession() {
    sessionDirty_ = true;
    // Every change asks for a write, so the state when the time is up is that of the last request: taking it
    // then keeps a mark in a large library from paying for a copy of the marks.
    with_.after(saveDelay, this, [this, request = ++saveRequest_] {
        if (request == saveRequest_) writeSession();
    });
}

QFuture<void> LibraryModel::writeSession() {
    struct Snapshot {
        LibraryState::Photos photos;
        std::vector<files::FileUrl> folders;
        library::ReviewMarks marks;
    };
    auto snapshot = std::make_shared<Snapshot>(state_.sharedPhotos(), state_.folders(), state_.marks());
    return runner_.start(
        [this](std::function<void()> job) { sessionWriter_.post(std::move(job)); }, this,
        [document = document_, snapshot] {
            return document->save({*snapshot->photos, snapshot->folders, snapshot->marks});
        },
        [this](const Outcome<library::KeptDocuments>& kept) {
            if (!kept)
                say(QStringLiteral("Could not save library: ") +
                    QString::fromStdString(describe(kept.error())));
            else if (kept->changed)
                say(QStringLiteral("Library changed by another program · Its version kept as ") +
                    fromUtf8(kept->changed->name()));
            else if (kept->unreadable)
                say(QStringLiteral("Library could not be read · Kept as ") +
                    fromUtf8(kept->unreadable->name()));
        });
}

QFuture<void> LibraryModel::flushSession() {
    auto done = std::make_shared<QPromise<void>>();
    done->start();
    whenFinished(loadTask_, this, [this, done] {
        whenFinished(markTask_, this, [this, done] {
            if (!sessionDirty_) {
                done->finish();
                return;
            }
            ++saveRequest_; // the write that was waiting for its time is this one
            whenFinished(writeSession(), this, [done] { done->finish(); });
        });
    });
    return done->future();
}

} // namespace lumisort::model
