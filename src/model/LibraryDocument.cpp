#include "model/LibraryDocument.h"

namespace lumisort::model {

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

LibraryDocument::LibraryDocument(Library& library, ExclusiveTask& task, Reports& reports,
                                 const TaskRunner& runner, const ModelDependencies& deps, files::FileUrl url)
    : library_(library), task_(task), reports_(reports), runner_(runner), after_(deps.after),
      file_(std::make_shared<library::LibraryFile>(deps.system, std::move(url), deps.clock)) {}

QFuture<LoadOutcome> LibraryDocument::load() {
    auto hold = task_.begin();
    return hold ? futureOf(read(*std::move(hold))) : QFuture<LoadOutcome>();
}

QCoro::Task<LoadOutcome> LibraryDocument::read(ExclusiveTask::Hold hold) {
    struct Restored {
        LibraryState state;
        SearchNames names;
    };
    // Both take a large library a hundred milliseconds.
    auto job = [file = file_] {
        Restored restored{LibraryState(file->load()), {}};
        restored.names.update(restored.state.sharedPhotos());
        return restored;
    };
    auto restored = co_await runner_.run(std::move(job));
    const ExclusiveTask::Hold untilReported(std::move(hold));
    if (restored) {
        library_.restore(std::move(restored->state), std::move(restored->names));
        reports_.add(LibraryRestored{});
        co_return Loaded::library;
    }
    if (isMissingFile(restored.error())) {
        reports_.add(NothingToRestore{});
        co_return Loaded::nothing;
    }
    auto reason = describe(restored.error());
    reports_.add(RestoreFailed{reason});
    co_return std::unexpected(std::move(reason));
}

void LibraryDocument::save() {
    assertMainThread();
    dirty_ = true;
    // Debounce: only the latest request writes, and the snapshot is taken when the timer fires. Taking it at
    // every mark would copy all marks each time.
    after_(saveDelay, this, [this, request = ++saveRequest_] {
        if (request == saveRequest_) write();
    });
}

QFuture<SaveOutcome> LibraryDocument::flush() {
    if (!dirty_) return QtFuture::makeReadyFuture(SaveOutcome());
    ++saveRequest_; // a write that waits for its time is this one
    return futureOf(write());
}

QCoro::Task<SaveOutcome> LibraryDocument::write() {
    const auto& state = library_.state();
    auto job = [file = file_, photos = state.sharedPhotos(), folders = state.folders(),
                marks = std::make_shared<const library::ReviewMarks>(state.marks())] {
        return file->save({*photos, folders, *marks});
    };
    const Background onWriter = [this](std::function<void()> work) { writer_.post(std::move(work)); };
    auto kept = co_await runner_.run(onWriter, std::move(job));
    if (kept) {
        if (*kept != library::KeptDocuments()) reports_.add(DocumentsKept{*kept});
        co_return *std::move(kept);
    }
    auto reason = describe(kept.error());
    reports_.add(SaveFailed{reason});
    co_return std::unexpected(std::move(reason));
}

} // namespace lumisort::model
