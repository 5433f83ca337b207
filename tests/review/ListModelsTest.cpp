#include "ReviewWorld.h"
#include "model/Utf8.h"
#include "review/PhotoSlots.h"

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
            slots_.setLimit(static_cast<int>(slotsRandom_() % 12));
            slots_.setFirst(static_cast<int>(slotsRandom_() % 40));
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

    /// A view that believes what it is told sees what the places hold.
    void checkSlots() {
        const auto& rows = model_->visiblePhotos().rows();
        const int total = static_cast<int>(rows.size()), places = std::min(slots_.limit(), total);
        ASSERT_EQ(slots_.rowCount(), places);
        ASSERT_EQ(seen_.size(), places);
        const int first = std::clamp(slots_.first(), 0, total - places);
        for (int position = first; position < first + places; ++position) {
            const auto& photo = model_->photos()[rows[static_cast<std::size_t>(position)]];
            const int place = slots_.placeOf(position);
            ASSERT_GE(place, 0);
            EXPECT_EQ(seen_[place].first, position);
            EXPECT_EQ(seen_[place].second, model::fromUtf8(photo.url.name()) +
                                               window_->decision(model::fromUtf8(photo.url.string())));
        }
    }

    void look(int from, int to) {
        const auto text = [&](int place, int role) { return slots_.index(place).data(role).toString(); };
        for (int place = from; place <= to; ++place)
            seen_[place] = {slots_.index(place).data(review::PhotoSlots::PositionRole).toInt(),
                            text(place, model::VisiblePhotos::NameRole) +
                                text(place, model::VisiblePhotos::DecisionRole)};
    }

    void followSlots() {
        QObject::connect(&slots_, &QAbstractItemModel::rowsInserted,
                         [this](const auto&, int first, int last) {
                             seen_.insert(first, last - first + 1, {});
                             look(first, last);
                         });
        QObject::connect(&slots_, &QAbstractItemModel::rowsRemoved,
                         [this](const auto&, int first, int last) { seen_.remove(first, last - first + 1); });
        QObject::connect(&slots_, &QAbstractItemModel::dataChanged,
                         [this](const auto& from, const auto& to) { look(from.row(), to.row()); });
        slots_.setSource(window_->photos());
    }

    PhotoSlots slots_;
    QList<std::pair<int, QString>> seen_; ///< position and text of each place
    const std::vector<files::FileUrl> folders_{url("/p/"), url("/q/"), url("/q/inner/")};
    static constexpr const char* sections_[] = {"library", "offline", "keep", "cleanup", "similar"};
    std::mt19937 random_{5}, slotsRandom_{7};
};

} // namespace

TEST_F(ListModelsTest, KeepTheRulesOfListsThroughEverythingThatHappens) {
    for (const auto& folder : folders_)
        for (const auto& photo : photosIn(folder)) system_.write(photo.url.path(), "x");
    open({});
    const Complaints complaints;
    using Tester = QAbstractItemModelTester;
    for (QAbstractItemModel* list : std::initializer_list<QAbstractItemModel*>{
             window_->photos(), window_->folders(), window_->groups(), &slots_})
        new Tester(list, Tester::FailureReportingMode::Warning, list); // goes with the list
    followSlots();
    std::size_t most = 0;
    for (int count = 0; count < 600 && !HasFailure(); ++count) {
        SCOPED_TRACE(count);
        try {
            step();
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): renaming what is gone is refused
        }
        settle();
        QCoreApplication::sendPostedEvents();
        checkSlots();
        EXPECT_EQ(window_->folders()->rowCount(), std::ssize(model_->folders()));
        EXPECT_LT(window_->cursor()->position(), std::max<std::ptrdiff_t>(std::ssize(model_->photos()), 1));
        most = std::max(most, model_->visible().size());
    }
    EXPECT_GT(most, 2U * photosPerFolder) << "the steps came to nothing";
}

} // namespace lumisort::review
