#pragma once

#include <QCoroFuture>
#include <QCoroTask>
#include <QElapsedTimer>
#include <QImage>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace lumisort::film {

/// Renders one request at a time; of those that arrive meanwhile only the latest is rendered next. Main
/// thread. Failures are dropped: the full preview, which renders the same settings, reports them.
template <class Request>
class CoalescedRender {
public:
    using Render = std::function<QFuture<QImage>(const Request&, std::stop_token)>;
    /// With the time from the call of Render to its answer.
    using Rendered = std::function<void(const Request&, const QImage&, double milliseconds)>;
    /// What a new request does to the one under way.
    enum class Running { finishes, isCancelled };

    CoalescedRender(Running running, Render render, Rendered rendered)
        : state_(std::make_shared<State>(State{std::move(render), std::move(rendered), {}, {}, false})),
          running_(running) {}
    ~CoalescedRender() { cancel(); }
    CoalescedRender(const CoalescedRender&) = delete;
    CoalescedRender& operator=(const CoalescedRender&) = delete;

    void request(Request request) {
        if (running_ == Running::isCancelled) cancel();
        state_->wanted = std::move(request);
        if (!state_->busy) run(state_);
    }

    /// Drops what is wanted and what is under way; its answer is not delivered.
    void cancel() {
        state_->wanted.reset();
        state_->stop.request_stop();
        state_->stop = {};
    }

private:
    struct State {
        const Render render;
        const Rendered rendered;
        std::optional<Request> wanted;
        std::stop_source stop;
        bool busy = false;
    };

    // The coroutine shares the state, so it may outlive the owner, who has requested its stop by then.
    static QCoro::Task<> run(std::shared_ptr<State> state) {
        state->busy = true;
        while (const auto request = std::exchange(state->wanted, std::nullopt)) {
            const auto stop = state->stop.get_token();
            QImage picture;
            QElapsedTimer clock;
            clock.start();
            try {
                auto rendering =
                    state->render(*request, stop); // named: g++ 12 loses temporaries across co_await
                picture = co_await rendering;
            } catch (...) {
            }
            if (!stop.stop_requested() && !picture.isNull())
                state->rendered(*request, picture, static_cast<double>(clock.nsecsElapsed()) / 1e6);
        }
        state->busy = false;
    }

    std::shared_ptr<State> state_;
    Running running_;
};

} // namespace lumisort::film
