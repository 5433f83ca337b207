#include "ReviewWorld.h"
#include "model/Decision.h"
#include "review/VisibleWindowModel.h"

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
        const auto& photos = model_->library().photos();
        switch (below(11)) {
        case 0: {
            const auto folder = any(folders_);
            scanned_ = {photosIn(folder), 0};
            model_->folderImport().importFolder(folder);
            break;
        }
        case 1:
            if (below(3) == 0) model_->removeFolder(any(folders_));
            break;
        case 2: {
            const auto path = any(photosIn(any(folders_))).url.path();
            system_.contents(path) ? system_.remove(path) : system_.write(path, "again");
            model_->availability().refresh();
            break;
        }
        case 3:
            system_.replace("/q", "/unplugged");
            model_->availability().refresh();
            settle();
            system_.replace("/unplugged", "/q");
            model_->availability().refresh();
            break;
        case 4:
            window_->showSection(any(sections_));
            break;
        case 5:
            window_->showFolder(QString::fromUtf8(any(folders_).string()));
            break;
        case 6:
            window_->state()->setQuery(below(3) ? QString::number(below(12)) : QString());
            break;
        case 7:
            groups_.clear();
            for (const auto& photo : model_->library().availablePhotos()) {
                if (groups_.empty() || below(3) == 0) groups_.push_back({.anchor = photo});
                groups_.back().photos.push_back(photo);
            }
            model_->matches().find();
            break;
        case 8:
            window_->groups()->setColumns(static_cast<int>(below(6)));
            visibleWindow_.setLimit(static_cast<int>(windowRandom_() % 12));
            visibleWindow_.setFirst(static_cast<int>(windowRandom_() % 40));
            break;
        case 9:
            if (!photos.empty()) model_->rename(any(photos), "renamed " + std::to_string(random_()));
            break;
        default:
            if (photos.empty()) break;
            model_->marking().mark({any(photos), any(photos)}, below(2) ? std::optional(ReviewDecision::keep)
                                                               : below(2)
                                                                   ? std::optional(ReviewDecision::cleanup)
                                                                   : std::nullopt);
        }
    }

    /// A view that follows the signals alone shows what the rows hold.
    void checkWindow() {
        const auto& rows = window_->state()->photos().rows();
        const int total = static_cast<int>(rows.size()), rowsShown = std::min(visibleWindow_.limit(), total);
        ASSERT_EQ(visibleWindow_.rowCount(), rowsShown);
        ASSERT_EQ(seen_.size(), rowsShown);
        const int first = std::clamp(visibleWindow_.first(), 0, total - rowsShown);
        for (int position = first; position < first + rowsShown; ++position) {
            const auto& photo = model_->library().photos()[rows[static_cast<std::size_t>(position)]];
            const int row = visibleWindow_.rowOf(position);
            ASSERT_GE(row, 0);
            EXPECT_EQ(seen_[row].first, position);
            EXPECT_EQ(seen_[row].second,
                      QString::fromUtf8(photo.url.name()) +
                          QString::number(model::Decision::of(model_->library().decision(photo))));
        }
    }

    void look(int from, int to) {
        const auto text = [&](int row, int role) { return visibleWindow_.index(row).data(role).toString(); };
        for (int row = from; row <= to; ++row)
            seen_[row] = {visibleWindow_.index(row).data(review::VisibleWindowModel::PositionRole).toInt(),
                          text(row, VisiblePhotos::NameRole) + text(row, VisiblePhotos::DecisionRole)};
    }

    void followWindow() {
        QObject::connect(&visibleWindow_, &QAbstractItemModel::rowsInserted,
                         [this](const auto&, int first, int last) {
                             seen_.insert(first, last - first + 1, {});
                             look(first, last);
                         });
        QObject::connect(&visibleWindow_, &QAbstractItemModel::rowsRemoved,
                         [this](const auto&, int first, int last) { seen_.remove(first, last - first + 1); });
        QObject::connect(&visibleWindow_, &QAbstractItemModel::dataChanged,
                         [this](const auto& from, const auto& to) { look(from.row(), to.row()); });
        visibleWindow_.setSource(window_->photos());
    }

    VisibleWindowModel visibleWindow_;
    QList<std::pair<int, QString>> seen_; ///< position and text of each row
    const std::vector<files::FileUrl> folders_{url("/p/"), url("/q/"), url("/q/inner/")};
    static constexpr WindowState::ShownSection sections_[] = {WindowState::Library, WindowState::Offline,
                                                              WindowState::Keep, WindowState::Cleanup,
                                                              WindowState::Similar};
    std::mt19937 random_{5}, windowRandom_{7};
};

} // namespace

TEST_F(ListModelsTest, KeepTheRulesOfListsThroughEverythingThatHappens) {
    for (const auto& folder : folders_)
        for (const auto& photo : photosIn(folder)) system_.write(photo.url.path(), "x");
    open({});
    const Complaints complaints;
    using Tester = QAbstractItemModelTester;
    for (QAbstractItemModel* list : std::initializer_list<QAbstractItemModel*>{
             window_->photos(), window_->folders(), window_->groups(), &visibleWindow_})
        new Tester(list, Tester::FailureReportingMode::Warning, list); // goes with the list
    followWindow();
    std::size_t most = 0;
    for (int count = 0; count < 600 && !HasFailure(); ++count) {
        SCOPED_TRACE(count);
        try {
            step();
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): renaming what is gone is refused
        }
        settle();
        QCoreApplication::sendPostedEvents();
        checkWindow();
        EXPECT_EQ(window_->folders()->rowCount(), std::ssize(model_->library().folders()));
        EXPECT_LT(window_->cursor()->position(),
                  std::max<std::ptrdiff_t>(std::ssize(model_->library().photos()), 1));
        most = std::max(most, window_->state()->photos().rows().size());
    }
    EXPECT_GT(most, 2U * photosPerFolder) << "the steps came to nothing";
}

} // namespace lumisort::review
