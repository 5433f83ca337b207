#include "ReviewWorld.h"
#include "model/Utf8.h"

#include <QtTest/qabstractitemmodeltester.h>

#include <random>

namespace lumisort::review {

using library::ReviewDecision;

namespace {

/// What the testers of Qt find wrong fails the test.
class Complaints {
public:
    Complaints() { previous_ = qInstallMessageHandler(fail); }
    ~Complaints() { qInstallMessageHandler(previous_); }
    Q_DISABLE_COPY_MOVE(Complaints)

private:
    static void fail(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        if (type >= QtWarningMsg && type != QtInfoMsg)
            ADD_FAILURE() << context.category << ": " << text.toStdString();
    }
    QtMessageHandler previous_;
};

class ListModelsTest : public ReviewWorld {
protected:
    static constexpr int photosPerFolder = 12;

    static std::vector<library::Photo> photosIn(const files::FileUrl& folder) {
        std::vector<library::Photo> photos;
        for (int i = 0; i < photosPerFolder; ++i)
            photos.push_back({.url = folder.child("IMG_" + std::to_string(i) + ".jpg"), .bytes = 1});
        return photos;
    }

    std::size_t below(std::size_t count) { return random_() % count; }
    template <class List>
    const auto& any(const List& list) {
        return list[below(std::size(list))];
    }

    void step() {
        const auto& photos = model_->photos();
        switch (below(11)) {
        case 0: {
            const auto folder = any(folders_);
            scanned_ = {photosIn(folder), 0};
            model_->importFolder(folder);
            break;
        }
        case 1:
            if (below(3) == 0) model_->removeFolder(any(folders_));
            break;
        case 2: {
            const auto path = any(photosIn(any(folders_))).url.path();
            system_.contents(path) ? system_.remove(path) : system_.write(path, "again");
            model_->refreshAvailability();
            break;
        }
        case 3:
            system_.replace("/q", "/unplugged");
            model_->refreshAvailability();
            settle();
            system_.replace("/unplugged", "/q");
            model_->refreshAvailability();
            break;
        case 4:
            window_->showSection(QLatin1String(any(sections_)));
            break;
        case 5:
            window_->showFolder(model::fromUtf8(any(folders_).string()));
            break;
        case 6:
            model_->setQuery(below(3) ? QString::number(below(12)) : QString());
            break;
        case 7:
            groups_.clear();
            for (const auto& photo : model_->availablePhotos()) {
                if (groups_.empty() || below(3) == 0) groups_.push_back({.anchor = photo});
                groups_.back().photos.push_back(photo);
            }
            model_->findSimilar();
            break;
        case 8:
            window_->groups()->setColumns(static_cast<int>(below(6)));
            break;
        case 9:
            if (!photos.empty()) model_->rename(any(photos), "renamed " + std::to_string(random_()));
            break;
        default:
            if (photos.empty()) break;
            model_->mark({any(photos), any(photos)}, below(2)   ? std::optional(ReviewDecision::keep)
                                                     : below(2) ? std::optional(ReviewDecision::cleanup)
                                                                : std::nullopt);
        }
    }

    const std::vector<files::FileUrl> folders_{url("/p/"), url("/q/"), url("/q/inner/")};
    static constexpr const char* sections_[] = {"library", "offline", "keep", "cleanup", "similar"};
    std::mt19937 random_{5};
};

} // namespace

TEST_F(ListModelsTest, KeepTheRulesOfListsThroughEverythingThatHappens) {
    for (const auto& folder : folders_)
        for (const auto& photo : photosIn(folder)) system_.write(photo.url.path(), "x");
    open({});
    const Complaints complaints;
    using Tester = QAbstractItemModelTester;
    for (auto* list :
         {window_->photos(), window_->folders(), static_cast<QAbstractItemModel*>(window_->groups())})
        new Tester(list, Tester::FailureReportingMode::Warning, list); // goes with the list
    std::size_t most = 0;
    for (int count = 0; count < 600 && !HasFailure(); ++count) {
        SCOPED_TRACE(count);
        try {
            step();
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): renaming what is gone is refused
        }
        settle();
        EXPECT_EQ(window_->folders()->rowCount(), std::ssize(model_->folders()));
        EXPECT_LT(window_->cursor()->position(), std::max<std::ptrdiff_t>(std::ssize(model_->photos()), 1));
        most = std::max(most, model_->visible().size());
    }
    EXPECT_GT(most, 2U * photosPerFolder) << "the steps came to nothing";
}

} // namespace lumisort::review
