#include "ui/FileBrowser.h"

#include <gmock/gmock.h>

namespace lumisort::ui {
namespace {

TEST(FileBrowser, OpensTheFolderWhereNoFileBrowserAnswersAndPassesOverWhatIsNoFile) {
    std::vector<QByteArray> opened;
    FileBrowser browser([&](const QUrl& url) { opened.push_back(url.toEncoded()); }, nullptr);
    browser.reveal(QStringLiteral("file:///a%20b/%FF%23%3F%0A%25.jpg"));
    browser.openExternally(QStringLiteral("file:///a%20b/%FF%23%3F%0A%25.jpg"));
    browser.reveal(QStringLiteral("https://example.org/a.jpg"));
    browser.openExternally(QStringLiteral("/a.jpg"));
    EXPECT_THAT(opened, testing::ElementsAre("file:///a%20b/", "file:///a%20b/%FF%23%3F%0A%25.jpg"));
}

} // namespace
} // namespace lumisort::ui
