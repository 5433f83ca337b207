#include "app/desktop/Lifecycle.h"

#include "library/LibraryStorage.h"
#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"

#include <gtest/gtest.h>

namespace lumisort::app {

namespace {

class LifecycleTest : public testing::Test {
protected:
    std::size_t foldersWritten() const {
        return library::readLibrary(files::FileSystem::real(), document_).folders.size();
    }

    test::TemporaryFolder folder_;
    files::FileUrl document_ = folder_.write("library.json", R"({"photos": [], "folders": ["file:///p/"]})");
    int exits_ = 0;
    Lifecycle lifecycle_{[this] { ++exits_; }};
};

TEST_F(LifecycleTest, QuitsAtOnceBeforeTheWindowShowed) {
    int announced = 0;
    QObject::connect(&lifecycle_, &Lifecycle::quitting, [&] { ++announced; });
    lifecycle_.quit();
    lifecycle_.quit();
    EXPECT_EQ(exits_, 1);
    EXPECT_EQ(announced, 1);
}

TEST_F(LifecycleTest, WaitsForTheStartUpReadAndTheLastWrite) {
    model::LibraryModel model(document_);
    lifecycle_.setModel(&model);
    lifecycle_.quit();
    EXPECT_EQ(exits_, 0) << "the document is being read";
    ASSERT_TRUE(test::QuickStage::until([&] { return exits_ == 1; }));

    Lifecycle again([this] { ++exits_; });
    again.setModel(&model);
    model.removeFolder(files::FileUrl::fromPath("/p/"));
    again.quit();
    EXPECT_EQ(exits_, 1);
    EXPECT_EQ(foldersWritten(), 1u);
    ASSERT_TRUE(test::QuickStage::until([&] { return exits_ == 2; }));
    EXPECT_EQ(foldersWritten(), 0u);
}

TEST_F(LifecycleTest, AsksBeforeItEndsWorkAndWaitsForItsEnd) {
    QString work = QStringLiteral("Copying");
    int cancelled = 0;
    lifecycle_.setWork({.underWay = [&] { return work; }, .cancel = [&] { ++cancelled; }});
    lifecycle_.requestQuit();
    EXPECT_EQ(lifecycle_.question(), work);
    lifecycle_.answer(false);
    EXPECT_EQ(lifecycle_.question(), QString());
    EXPECT_EQ(cancelled + exits_, 0) << "it goes on";

    lifecycle_.requestQuit();
    work.clear();
    lifecycle_.workChanged();
    EXPECT_EQ(lifecycle_.question(), QString()) << "there is nothing left to ask";
    EXPECT_EQ(exits_, 0) << "the report is to be read";

    work = QStringLiteral("Copying again");
    lifecycle_.requestQuit();
    lifecycle_.answer(true);
    EXPECT_EQ(cancelled, 1);
    EXPECT_EQ(exits_, 0) << "the work has not ended yet";
    work.clear();
    lifecycle_.workChanged();
    EXPECT_EQ(exits_, 1);
}

TEST_F(LifecycleTest, EscapeGoesOnWithTheWorkHoweverFastItCounts) {
    int copied = 0;
    lifecycle_.setWork({.underWay = [&] { return QStringLiteral("Copying %1").arg(copied); }});
    test::QuickStage stage;
    stage.show(R"(
        import QtQuick
        import Lumisort.App
        Window {
            id: root
            required property QtObject lifecycle
            width: 700
            height: 500
            QuitSheet { lifecycle: root.lifecycle }
        })",
               {{QStringLiteral("lifecycle"), QVariant::fromValue(&lifecycle_)}});
    lifecycle_.requestQuit();
    stage.settle();
    EXPECT_TRUE(stage.has(QStringLiteral("Continue Import")));
    stage.key(Qt::Key_Escape);
    EXPECT_TRUE(test::QuickStage::until([&] {
        ++copied;
        lifecycle_.workChanged();
        return !stage.has(QStringLiteral("Continue Import"));
    }));
    EXPECT_EQ(lifecycle_.question(), QString());
}

TEST_F(LifecycleTest, AWriteThatFailsKeepsNobodyFromQuitting) {
    const auto unwritable = files::FileUrl::fromPath("/proc/lumisort/library.json");
    model::LibraryModel model(unwritable, library::LibraryContents{.folders = {document_}});
    lifecycle_.setModel(&model);
    model.removeFolder(document_);
    lifecycle_.quit();
    EXPECT_TRUE(test::QuickStage::until([&] { return exits_ == 1; }));
}

} // namespace

} // namespace lumisort::app
