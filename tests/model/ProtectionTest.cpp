#include "ModelWorld.h"

#include <cerrno>

namespace lumisort::model {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class ProtectionTest : public ModelWorld {
protected:
    std::unique_ptr<LibraryModel> started() {
        auto made = std::make_unique<LibraryModel>(document_, std::nullopt, dependencies());
        hear(*made);
        settle();
        reported();
        return made;
    }
    const std::string path_ = "/data/Lumisort/protected-folders.json";
};

} // namespace

TEST_F(ProtectionTest, LastsFromStartToStartUntilTheFolderLeavesTheLibrary) {
    library::writeLibrary(system_, libraryOf({"a.jpg"}), document_);
    {
        const auto model = started();
        int changes = 0;
        QObject::connect(&model->protection(), &Protection::changed, [&] { ++changes; });
        const auto stored = model->protection().set(url("/p"), true);
        finish(stored);
        EXPECT_TRUE(stored.result().has_value());
        EXPECT_EQ(changes, 1);
    }
    {
        const auto model = started();
        EXPECT_TRUE(model->protection().isProtected(photo("/p/a.jpg")));
        EXPECT_FALSE(model->protection().isProtected(photo("/q/a.jpg")));
        model->removeFolder(url("/p/"));
    } // what was asked for is written before the model is gone
    EXPECT_THAT(started()->protection().folders().folders(), IsEmpty());
}

TEST_F(ProtectionTest, AFailureIsSaidAndChangesNothing) {
    library::writeLibrary(system_, libraryOf({"a.jpg"}), document_);
    const auto model = started();
    system_.setFreeBytes(0);
    const auto stored = model->protection().set(url("/p/"), true);
    finish(stored);
    EXPECT_FALSE(stored.result().has_value());
    EXPECT_FALSE(model->protection().isProtected(photo("/p/a.jpg")));
    EXPECT_THAT(reported(), ElementsAre(HasSubstr(path_)));
    system_.setFreeBytes(1'000'000);
    finish(model->protection().set(url("/p/"), true));
    EXPECT_TRUE(model->protection().isProtected(photo("/p/a.jpg")));
}

TEST_F(ProtectionTest, SaysThatItsDocumentCannotBeRead) {
    library::writeLibrary(system_, libraryOf({"a.jpg"}), document_);
    system_.write(path_, "{");
    auto made = std::make_unique<LibraryModel>(document_, std::nullopt, dependencies());
    hear(*made);
    settle();
    EXPECT_THAT(reported(), testing::Contains(HasSubstr(path_)));
    EXPECT_EQ(made->library().photos().size(), 1u);
}

} // namespace lumisort::model
