#include "app/desktop/SingleInstance.h"

#include "app/commandline/DocumentLock.h"
#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"

#include <gmock/gmock.h>

#include <QThread>

namespace lumisort::app {

using testing::HasSubstr;
using testing::ThrowsMessage;

namespace {

constexpr std::chrono::milliseconds noPatience{0};

TEST(SingleInstance, ASecondStartBringsTheFirstForwardUnderEveryPathToTheDocument) {
    const test::TemporaryFolder folder;
    const auto document = folder.url().child("a/library.json");
    const auto first = SingleInstance::claim(document, {}, noPatience);
    ASSERT_NE(first, nullptr);
    QStringList tokens;
    QObject::connect(first.get(), &SingleInstance::raiseWanted,
                     [&](const QString& token) { tokens += token; });

    std::filesystem::create_directory_symlink(folder.path() / "a", folder.path() / "link");
    for (const auto& path : {document, folder.url().child("link/library.json")}) {
        bool second = true;
        const std::unique_ptr<QThread> start(QThread::create([&] {
            second =
                SingleInstance::claim(path, QStringLiteral("token of ") + path.path().c_str()) != nullptr;
        }));
        start->start();
        ASSERT_TRUE(test::QuickStage::until([&] { return start->isFinished(); }));
        EXPECT_FALSE(second);
        EXPECT_EQ(tokens.size(), 1);
        EXPECT_EQ(tokens.value(0), QStringLiteral("token of ") + path.path().c_str());
        tokens.clear();
    }
    EXPECT_NE(SingleInstance::claim(folder.url().child("b/library.json"), {}, noPatience), nullptr);
}

TEST(SingleInstance, SaysWhichDocumentAnotherProgramHolds) {
    const test::TemporaryFolder folder;
    const auto document = folder.url().child("library.json");
    {
        const auto held = lockDocument(document);
        EXPECT_THAT([&] { SingleInstance::claim(document, {}, noPatience); },
                    ThrowsMessage<std::runtime_error>(HasSubstr(document.path())));
    }
    EXPECT_NE(SingleInstance::claim(document, {}, noPatience), nullptr) << "what it left is no obstacle";
}

} // namespace

} // namespace lumisort::app
