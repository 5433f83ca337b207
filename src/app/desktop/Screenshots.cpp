#include "app/desktop/Screenshots.h"

#include "app/commandline/DocumentLock.h"
#include "app/commandline/Text.h"
#include "app/desktop/SampleLibrary.h"
#include "app/desktop/Tour.h"
#include "ui/ColourScheme.h"

#include <QDir>
#include <iostream>
#include <stdexcept>

namespace lumisort::app {

namespace {

void save(const QImage& picture, const QString& path) {
    if (!picture.save(path))
        throw std::runtime_error("“" + printable(path.toStdString()) + "” could not be written.");
    std::cout << printable(path.toStdString()) << '\n' << std::flush;
}

} // namespace

ExitStatus takeScreenshots(const DesktopOptions& options, const std::stop_token& stop) {
    const auto document = documentAt(options.library);
    const auto lock = lockDocument(document);
    const QDir folder(QString::fromStdString(options.screenshots));
    folder.mkpath(QStringLiteral("."));
    const SampleLibrary samples;
    for (const bool dark : {true, false}) {
        ui::ColourScheme::shared().choose(dark ? ui::ColourScheme::Dark : ui::ColourScheme::Light);
        const auto write = [&](const Page& page, const QImage& picture) {
            save(picture, folder.filePath(QStringLiteral("%1-%2.png")
                                              .arg(QLatin1String(page.name),
                                                   dark ? QLatin1String("dark") : QLatin1String("light"))));
        };
        for (const auto& [shownDocument, shown] :
             {std::pair{samples.empty(), pagesOfEmptyLibrary()}, std::pair{document, pages()}}) {
            Desktop desktop(shownDocument, [] {});
            tour(desktop, shown, write, stop);
        }
    }
    return ExitStatus::done;
}

} // namespace lumisort::app
