#include "similarity/visual/VisualScanDependencies.h"

#include "platform/images/Decoder.h"

#include <mutex>
#include <utility>
#include <vector>

namespace lumisort::similarity {
namespace {

/// Scratch memories that no thread is using. Any thread.
class ScratchShelf {
public:
    using Scratch = FeaturePrintModel::Scratch;

    Scratch take() {
        const std::scoped_lock lock(mutex_);
        if (free_.empty()) return {};
        Scratch scratch = std::move(free_.back());
        free_.pop_back();
        return scratch;
    }
    void putBack(Scratch scratch) {
        const std::scoped_lock lock(mutex_);
        free_.push_back(std::move(scratch));
    }

private:
    std::mutex mutex_;
    std::vector<Scratch> free_; // guarded by mutex_
};

} // namespace

VisualScanDependencies VisualScanDependencies::of(std::shared_ptr<const FeaturePrintModel> model) {
    auto identity = std::make_shared<const FeaturePrintIdentity>(model->identity());
    return {.identity = std::move(identity),
            .picture =
                [](const files::FileUrl& url, const std::stop_token& stop) {
                    return images::decoder().thumbnail(url, featurePictureSide, images::Quality::fine, stop);
                },
            .print =
                [model = std::move(model),
                 shelf = std::make_shared<ScratchShelf>()](const images::Bitmap& photo) {
                    auto scratch = shelf->take();
                    const FeaturePrint print = model->print(photo, scratch);
                    shelf->putBack(std::move(scratch)); // after an exception it is simply gone
                    return print;
                }};
}

} // namespace lumisort::similarity
