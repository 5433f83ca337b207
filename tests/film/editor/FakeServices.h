#pragma once

#include "film/editor/FilmEditorServices.h"
#include "platform/tasks/Cancellation.h"

#include <QPromise>
#include <chrono>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lumisort::film {

/// Editor services whose answers come when the test says so. Each call is written down and stays pending
/// until the test answers it.
class FakeServices : public FilmEditorServices {
private:
    template <class Calls>
    static auto pending(Calls& calls, typename Calls::value_type call) {
        call.promise->start();
        calls.push_back(std::move(call));
        return calls.back().promise->future();
    }

public:
    template <class Result>
    struct Call {
        FilmSettings settings;
        std::stop_token stop;
        std::shared_ptr<QPromise<Result>> promise = std::make_shared<QPromise<Result>>();

        void answer(const Result& result) const {
            promise->addResult(result);
            promise->finish();
        }
        void fail(std::exception_ptr error) const {
            promise->setException(error);
            promise->finish();
        }
    };
    struct Done {
        FilmSettings settings;
        std::stop_token stop;
        std::shared_ptr<QPromise<void>> promise = std::make_shared<QPromise<void>>();

        void answer() const { promise->finish(); }
        void fail(std::exception_ptr error) const {
            promise->setException(error);
            promise->finish();
        }
    };

    std::deque<Call<EditorPreview>> previews;
    std::deque<Call<QImage>> drafts;
    std::deque<Done> exports, saves;
    std::vector<std::shared_ptr<QPromise<void>>> sleeps;
    FilmEditSnapshot snapshot; ///< what `load` answers
    std::vector<FilmLook> savedLooks;
    std::exception_ptr loadFailure; ///< thrown by `load` instead
    std::vector<QRect> detailsAsked;
    int detailsForgotten = 0;
    library::FileStamp fileStamp; ///< what `stamp` answers

    QFuture<FilmEditSnapshot> load(files::FileUrl) override {
        return loadFailure ? failed<FilmEditSnapshot>(loadFailure) : ready(snapshot);
    }
    QFuture<library::FileStamp> stamp(files::FileUrl) override { return ready(fileStamp); }
    QFuture<void> save(FilmSettings settings, files::FileUrl, library::FileStamp) override {
        return pending(saves, {settings, {}});
    }
    QFuture<std::vector<FilmLook>> looks() override { return ready(savedLooks); }
    QFuture<void> saveLook(FilmLook look) override {
        savedLooks.push_back(std::move(look));
        return done();
    }
    QFuture<void> removeLook(std::string name) override {
        std::erase_if(savedLooks, [&](const FilmLook& look) { return look.name == name; });
        return done();
    }
    QFuture<FilmLook> readLook(files::FileUrl) override {
        return failed<FilmLook>(std::make_exception_ptr(std::runtime_error("This is no look.")));
    }
    QFuture<files::FileUrl> writeLook(FilmLook, files::FileUrl folder) override { return ready(folder); }
    QFuture<EditorPreview> preview(files::FileUrl, FilmSettings settings, std::stop_token stop) override {
        return pending(previews, {settings, std::move(stop)});
    }
    QFuture<QImage> draft(files::FileUrl, FilmSettings settings, int, std::stop_token stop) override {
        return pending(drafts, {settings, std::move(stop)});
    }
    /// A plain green picture of that size, at once.
    QFuture<QImage> detail(files::FileUrl, FilmSettings, QRect rectangle, std::stop_token) override {
        detailsAsked.push_back(rectangle);
        QImage picture(rectangle.size(), QImage::Format_RGBX8888);
        picture.fill(Qt::green);
        return ready(picture);
    }
    void forgetDetail(files::FileUrl) override { ++detailsForgotten; }
    QFuture<void> exportTiff(files::FileUrl, FilmSettings settings, files::FileUrl,
                             std::stop_token stop) override {
        return pending(exports, {settings, std::move(stop)});
    }
    /// Ends every call that has no answer yet, as a promise that goes without one cannot be awaited.
    void cancelPending() {
        const auto cancel = [](auto& calls) {
            for (const auto& call : calls)
                if (!call.promise->future().isFinished())
                    call.fail(std::make_exception_ptr(tasks::Cancelled()));
        };
        cancel(previews);
        cancel(drafts);
        cancel(exports);
        cancel(saves);
        for (const auto& sleep : sleeps) sleep->finish();
    }
    QFuture<void> sleep() {
        sleeps.push_back(std::make_shared<QPromise<void>>());
        sleeps.back()->start();
        return sleeps.back()->future();
    }

private:
    template <class Result>
    static QFuture<Result> ready(const Result& result) {
        QPromise<Result> promise;
        promise.start();
        promise.addResult(result);
        promise.finish();
        return promise.future();
    }
    static QFuture<void> done() {
        QPromise<void> promise;
        promise.start();
        promise.finish();
        return promise.future();
    }
    template <class Result>
    static QFuture<Result> failed(const std::exception_ptr& error) {
        QPromise<Result> promise;
        promise.start();
        promise.setException(error);
        promise.finish();
        return promise.future();
    }
};

} // namespace lumisort::film
