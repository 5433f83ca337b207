#include "ui/ThumbnailProvider.h"

#include "support/quick/QuickStage.h"
#include "ui/Thumbnails.h"

#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <mutex>
#include <semaphore>
#include <string>
#include <vector>

namespace lumisort::ui {
namespace {

using files::FileUrl;

/// A provider over a store whose decoder gives blue pictures of 90 × 60, half transparent.
class ThumbnailProviderTest : public testing::Test {
protected:
    ThumbnailProviderTest() {
        stage_.engine().addImageProvider(QStringLiteral("thumbnail"), provider_);
        stage_.show(R"(import QtQuick
                       import Lumisort.Ui
                       Window {
                           width: 300; height: 300
                           property string url
                           property int revision
                           property int side
                           property alias photo: photo
                           Image {
                               id: photo
                               cache: false
                               sourceSize: side > 0 ? Qt.size(side, 0) : undefined
                               source: url ? Thumbnails.source(url, revision) : ""
                           }
                       })");
    }

    void set(const char* property, const QVariant& value) { stage_.window().setProperty(property, value); }
    void show(const FileUrl& photo) { set("url", QString::fromStdString(photo.string())); }
    QObject* image() { return stage_.window().property("photo").value<QObject*>(); }
    /// Image.status
    bool becomes(int status) {
        return test::QuickStage::until([&] { return image()->property("status").toInt() == status; });
    }
    std::vector<std::string> decoded() {
        const std::scoped_lock lock(mutex_);
        return decoded_;
    }

    static constexpr int ready = 1;

    std::mutex mutex_;
    std::vector<std::string> decoded_; ///< guarded by mutex_
    std::counting_semaphore<> stopped_{0};
    library::ThumbnailStore store_{[this](const FileUrl& photo, int, const std::stop_token& stop) {
        {
            const std::scoped_lock lock(mutex_);
            decoded_.push_back(photo.path());
        }
        if (photo.name() == "broken") throw images::ImageError("is no photo");
        if (photo.name() == "slow") {
            std::binary_semaphore gone{0};
            const std::stop_callback onStop(stop, [&gone] { gone.release(); });
            gone.acquire();
            stopped_.release();
        }
        images::Bitmap bitmap(90, 60, std::vector<std::uint8_t>(90 * 60 * 4));
        for (std::size_t i = 0; i < bitmap.rgba().size(); i += 4)
            bitmap.rgba()[i + 2] = 255, bitmap.rgba()[i + 3] = 128;
        return bitmap;
    }};
    ThumbnailProvider* provider_ = new ThumbnailProvider(store_); // the engine's
    test::QuickStage stage_;
};

TEST_F(ThumbnailProviderTest, FindsPhotosWhateverTheirNameHolds) {
    std::string allBytes;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/') allBytes += static_cast<char>(byte);
    for (const std::string& path :
         {std::string("/p/a.jpg"), "/p/" + allBytes, std::string("/p/100%20?#&revision=7"),
          std::string("/p/../q//r/./s"), "/p/" + std::string(255, '\xff')}) {
        show(FileUrl::fromPath(path));
        ASSERT_TRUE(becomes(ready)) << path;
        EXPECT_EQ(decoded().back(), path);
    }
}

TEST_F(ThumbnailProviderTest, FitsIntoTheSizeAskedForAndNeverEnlarges) {
    for (const auto& [side, width, height] :
         {std::array{0, 90, 60}, {45, 45, 30}, {200, 90, 60}, {1, 1, 1}}) {
        set("url", QString());
        set("side", side);
        show(FileUrl::fromPath("/p/a.jpg"));
        ASSERT_TRUE(becomes(ready));
        EXPECT_EQ(image()->property("implicitWidth").toInt(), width) << side;
        EXPECT_EQ(image()->property("implicitHeight").toInt(), height) << side;
    }
}

TEST_F(ThumbnailProviderTest, SaysThatThereIsNoPreviewAndAsksAgainForANewRevision) {
    show(FileUrl::fromPath("/p/broken"));
    EXPECT_TRUE(becomes(ready));
    EXPECT_EQ(image()->property("implicitWidth").toInt(), 0);
    provider_->forgetAll();
    set("revision", 1);
    EXPECT_TRUE(test::QuickStage::until([&] { return decoded().size() == 2; }));
    EXPECT_EQ(Thumbnails::source(QStringLiteral("https://example.org/a.jpg"), 0), QString());
}

TEST_F(ThumbnailProviderTest, StopsWhatIsNotShownAnyMore) {
    show(FileUrl::fromPath("/p/slow"));
    ASSERT_TRUE(test::QuickStage::until([&] { return decoded().size() == 1; }));
    show(FileUrl::fromPath("/p/a.jpg"));
    EXPECT_TRUE(test::QuickStage::until([&] { return stopped_.try_acquire(); }));
    EXPECT_TRUE(becomes(ready));
}

TEST(SharedImage, SharesThePixelsForAsLongAsItLives) {
    auto thumbnail =
        std::make_shared<images::Bitmap>(images::Bitmap(1, 1, std::array<std::uint8_t, 4>{10, 20, 30, 255}));
    auto image = sharedImage(thumbnail);
    EXPECT_EQ(image.constBits(), thumbnail->rgba().data());
    EXPECT_EQ(image.pixelColor(0, 0), QColor(10, 20, 30));
    EXPECT_EQ(thumbnail.use_count(), 2);
    image = {};
    EXPECT_EQ(thumbnail.use_count(), 1);
}

} // namespace
} // namespace lumisort::ui
