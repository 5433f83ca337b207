#include "app/desktop/SingleInstance.h"

#include "app/commandline/DocumentLock.h"
#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"

#include <gmock/gmock.h>

#include <QThread>

namespace lumisort::app {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

namespace {

constexpr std::chrono::milliseconds noPatience{0};

TEST(SingleInstance, ASecondStartHandsItsRequestToTheFirstUnderEveryPathToTheDocument) {
    const test::TemporaryFolder folder;
    const auto document = folder.url().child("a/library.json");
    const auto first = SingleInstance::claim(document, {}, noPatience);
    ASSERT_NE(first, nullptr);
    std::vector<StartRequest> requests;
    QObject::connect(first.get(), &SingleInstance::startedAgain,
                     [&](const StartRequest& request) { requests.push_back(request); });
    const auto tokenOf = [](const files::FileUrl& path) {
        return QStringLiteral("token of ") + path.path().c_str();
    };
    const std::vector<files::FileUrl> none,
        some{files::FileUrl::fromPath("/line\nend"), files::FileUrl::fromPath("/caf\xE9/")};
    const std::vector<files::FileUrl> many(20'000, some.front()); // more than the socket takes at once

    std::filesystem::create_directory_symlink(folder.path() / "a", folder.path() / "link");
    const auto link = folder.url().child("link/library.json");
    for (const auto& [path, folders] : {std::pair{document, none}, {link, some}, {link, many}}) {
        const StartRequest request{tokenOf(path), folders};
        bool second = true;
        const std::unique_ptr<QThread> start(
            QThread::create([&] { second = SingleInstance::claim(path, request) != nullptr; }));
        start->start();
        ASSERT_TRUE(test::QuickStage::until([&] { return start->isFinished(); }));
        EXPECT_FALSE(second);
        EXPECT_THAT(std::exchange(requests, {}), ElementsAre(request));
    }
    EXPECT_NE(SingleInstance::claim(folder.url().child("b/library.json"), {}, noPatience), nullptr);
}

TEST(SingleInstance, AStartDuringTheEndOfTheFirstOpensTheLibraryItself) {
    const test::TemporaryFolder folder;
    const auto document = folder.url().child("library.json");
    auto first = SingleInstance::claim(document, {}, noPatience);
    ASSERT_NE(first, nullptr);
    int requests = 0;
    QObject::connect(first.get(), &SingleInstance::startedAgain, [&] { ++requests; });
    first->refuseRequests();
    std::unique_ptr<SingleInstance> second;
    QThread* const mainThread = QThread::currentThread();
    const std::unique_ptr<QThread> start(QThread::create([&] {
        second = SingleInstance::claim(document, {{}, {folder.url()}}, noPatience);
        if (second) second->moveToThread(mainThread);
    }));
    start->start();
    test::QuickStage::until([end = std::chrono::steady_clock::now() + std::chrono::milliseconds(300)] {
        return std::chrono::steady_clock::now() >= end; // the first is writing its last changes
    });
    EXPECT_FALSE(start->isFinished());
    first.reset();
    ASSERT_TRUE(test::QuickStage::until([&] { return start->isFinished(); }));
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(requests, 0);
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
