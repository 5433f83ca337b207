#include "review/details/DetailsState.h"

#include "model/ModelWorld.h"
#include "review/details/PhotoDetailsController.h"

#include <cstdlib>
#include <ctime>

namespace lumisort::review {
namespace {

using library::Photo;

class DetailsStateTest : public model::ModelWorld {
protected:
    DetailsStateTest() {
        auto session = libraryOf({"a.jpg", "b.NEF", "c"});
        session.photos[0].bytes = 12'400'000;
        session.photos[0].width = 6000;
        session.photos[0].height = 4000;
        library_ = model(session);
        details_ = std::make_unique<DetailsState>(*library_);
    }

    const Photo& photoAt(std::size_t index) { return library_->library().photos().at(index); }
    void rename(const char* stem) {
        details_->renaming()->setStem(QString::fromUtf8(stem));
        details_->renaming()->rename();
    }

    std::unique_ptr<model::LibraryModel> library_;
    std::unique_ptr<DetailsState> details_;
};

TEST_F(DetailsStateTest, FollowsThePhotoInFocus) {
    EXPECT_FALSE(details_->hasPhoto());
    library_->selection().toggle(photoAt(0));
    EXPECT_EQ(details_->name(), QStringLiteral("a.jpg"));
    EXPECT_EQ(details_->location(), QStringLiteral("/p/a.jpg"));
    EXPECT_EQ(details_->dimensions(), QStringLiteral("6000 × 4000"));
    EXPECT_EQ(details_->size(), QStringLiteral("12.4 MB"));
    library_->selection().toggle(photoAt(1));
    EXPECT_EQ(details_->name(), QStringLiteral("b.NEF"));
    EXPECT_EQ(details_->format(), QStringLiteral("NEF"));
    library_->selection().toggle(photoAt(1));
    library_->selection().toggle(photoAt(0));
    EXPECT_FALSE(details_->hasPhoto());
}

TEST_F(DetailsStateTest, FollowsTheDecisionAndTheDrive) {
    library_->selection().toggle(photoAt(0));
    int changes = 0;
    QObject::connect(details_.get(), &DetailsState::changed, [&] { ++changes; });
    for (const auto decision :
         {std::optional(library::ReviewDecision::keep), std::optional(library::ReviewDecision::cleanup),
          std::optional<library::ReviewDecision>()}) {
        library_->marking().mark({photoAt(0)}, decision);
        settle();
        EXPECT_EQ(details_->decision(), model::Decision::of(decision));
    }
    EXPECT_EQ(changes, 3);
    system_.remove("/p/a.jpg");
    library_->availability().refresh();
    settle();
    EXPECT_FALSE(details_->hasPhoto());
}

TEST_F(DetailsStateTest, RenamesAndStaysWithThePhoto) {
    library_->selection().toggle(photoAt(0));
    details_->beginRename();
    auto& renaming = *details_->renaming();
    EXPECT_TRUE(renaming.isOpen());
    EXPECT_EQ(renaming.stem(), QStringLiteral("a"));
    EXPECT_EQ(renaming.suffix(), QStringLiteral(".jpg"));
    rename(" holiday ");
    EXPECT_FALSE(renaming.isOpen());
    EXPECT_EQ(details_->name(), QStringLiteral("holiday.jpg"));
    EXPECT_EQ(system_.contents("/p/holiday.jpg"), "a.jpg");
}

TEST_F(DetailsStateTest, KeepsTheSheetOpenWithAReasonWhereANameIsRefused) {
    library_->selection().toggle(photoAt(2));
    library_->selection().toggle(photoAt(0));
    details_->beginRename();
    system_.write("/p/taken.jpg", "");
    const auto *invalid = "Enter a valid filename without / or :.",
               *taken = "A file with this name already exists.";
    for (const auto& [stem, error, possible] : {std::tuple{"a/b", invalid, true},
                                                {".a", invalid, true},
                                                {"taken", taken, true},
                                                {" \t", taken, false}}) {
        rename(stem);
        EXPECT_EQ(details_->renaming()->canRename(), possible) << stem;
        EXPECT_EQ(details_->renaming()->error().toStdString(), error) << stem;
        EXPECT_TRUE(details_->renaming()->isOpen()) << stem;
    }
    details_->renaming()->cancel();
    details_->beginRename();
    EXPECT_EQ(details_->renaming()->error(), QString());
    EXPECT_EQ(details_->renaming()->stem(), QStringLiteral("a"));
    rename("a");
    EXPECT_FALSE(details_->renaming()->isOpen()) << "the same name is none to refuse";
}

TEST_F(DetailsStateTest, DoesNotPutReplacementCharactersIntoAName) {
    library_ = model(libraryOf({"\xff.jpg"}));
    details_ = std::make_unique<DetailsState>(*library_);
    library_->selection().toggle(photoAt(0));
    EXPECT_EQ(details_->name(), QStringLiteral("\uFFFD.jpg"));
    details_->beginRename();
    details_->renaming()->rename();
    EXPECT_EQ(photoAt(0).url.path(), "/p/\xff.jpg");
    rename("named");
    EXPECT_EQ(photoAt(0).url.path(), "/p/named.jpg");
}

TEST(PhotoFacts, WordWhatIsUnknown) {
    setenv("TZ", "UTC", 1);
    tzset();
    const auto url = files::FileUrl::fromPath("/p/c");
    struct Case {
        Photo photo;
        const char *dimensions, *size, *date;
    };
    for (const auto& [photo, dimensions, size, date] :
         {Case{{.url = url}, "Unknown", "0 bytes", "Unknown"},
          Case{{.url = url, .bytes = 1, .width = 1, .height = 1, .date = time::Timestamp(0)},
               "1 × 1",
               "1 byte",
               "Jan 1, 2001, 12:00 AM"},
          Case{{.url = url, .bytes = 1'000, .width = 5, .date = time::Timestamp(817'065'900)},
               "Unknown",
               "1.0 kB",
               "Nov 22, 2026, 6:45 PM"}}) {
        const auto facts = factsOf(photo, {});
        EXPECT_EQ(facts.dimensions.toStdString(), dimensions);
        EXPECT_EQ(facts.size.toStdString(), size);
        EXPECT_EQ(facts.date.toStdString(), date);
        EXPECT_EQ(facts.format, QString());
    }
}

TEST(DetailsPosition, IsAtTheRightOfTheScreen) {
    const QSize panel(320, 650);
    struct Case {
        QRect available;
        QPoint at;
    };
    for (const auto& [available, at] :
         {Case{{0, 0, 1920, 1080}, {1580, 30}}, Case{{1920, 40, 1280, 984}, {2860, 70}},
          Case{{0, 30, 1024, 660}, {684, 40}}, Case{{0, 30, 800, 570}, {460, 30}}})
        EXPECT_EQ(detailsPosition(available, panel), at);
}

} // namespace
} // namespace lumisort::review
