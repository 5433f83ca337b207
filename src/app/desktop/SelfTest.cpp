#include "app/desktop/SelfTest.h"

#include "app/desktop/SampleLibrary.h"
#include "app/desktop/Tour.h"

#include <atomic>
#include <iostream>
#include <mutex>

namespace lumisort::app {

namespace {

/// What the platform lacks (fonts, input methods, a screen) is no fault of a page.
bool isOfPlatform(const QMessageLogContext& context, const QString& message) {
    return QByteArrayView(context.category).startsWith("qt.qpa") ||
           message.startsWith(QLatin1String("This plugin does not support"));
}

/// Hears every warning of Qt, from any thread, while it lives. One at a time.
class Warnings {
public:
    Warnings() : before_(qInstallMessageHandler(hear)) { count = 0; }
    ~Warnings() { qInstallMessageHandler(before_); }
    Warnings(const Warnings&) = delete;
    Warnings& operator=(const Warnings&) = delete;

    int heard() const { return count; }

private:
    static void hear(QtMsgType type, const QMessageLogContext& context, const QString& message) {
        if (type == QtDebugMsg || type == QtInfoMsg || isOfPlatform(context, message)) return;
        ++count;
        static std::mutex lines;
        const std::scoped_lock lock(lines);
        std::cerr << message.toStdString() << '\n';
    }

    static inline std::atomic<int> count = 0;
    QtMessageHandler before_;
};

bool isBlank(const QImage& picture) {
    if (picture.isNull()) return true;
    const auto first = picture.pixel(0, 0);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixel(x, y) != first) return false;
    return true;
}

} // namespace

ExitStatus runSelfTest(const std::stop_token& stop) {
    const Warnings warnings;
    const SampleLibrary samples;
    int blank = 0;
    const auto print = [&](const Page& page, const QImage& picture) {
        std::cout << page.name << (isBlank(picture) ? ": blank\n" : "\n") << std::flush;
        blank += isBlank(picture);
    };
    for (const auto& [document, shown] :
         {std::pair{samples.empty(), pagesOfEmptyLibrary()}, std::pair{samples.document(), pages()}}) {
        Desktop desktop(document, [] {});
        tour(desktop, shown, print, stop);
    }
    return warnings.heard() == 0 && blank == 0 ? ExitStatus::done : ExitStatus::failed;
}

} // namespace lumisort::app
