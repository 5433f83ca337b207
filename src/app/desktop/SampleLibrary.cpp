#include "app/desktop/SampleLibrary.h"

#include "app/desktop/SampleRaw.h"
#include "library/FolderScan.h"
#include "library/LibraryStorage.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <stdexcept>

namespace lumisort::app {

namespace {

/// A sky over hills; another `scene`, other hills.
QImage landscape(quint32 scene) {
    QRandomGenerator random(scene);
    QImage image(600, 400, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, image.height());
    sky.setColorAt(0, QColor::fromHsv(random.bounded(360), 90, 200));
    sky.setColorAt(1, QColor::fromHsv(random.bounded(360), 40, 240));
    painter.fillRect(image.rect(), sky);
    painter.setPen(Qt::NoPen);
    for (int hill = 0; hill < 9; ++hill) {
        painter.setBrush(QColor::fromHsv(random.bounded(360), 80, 160 - 14 * hill));
        painter.drawEllipse(QPoint(random.bounded(image.width()), image.height() + 10 * hill),
                            random.bounded(60, 200), random.bounded(40, 240) - 12 * hill);
    }
    return image;
}

void save(const QImage& image, const files::FileUrl& folder, const char* name) {
    const auto path = folder.child(name).path();
    if (!image.save(QString::fromStdString(path), "PNG"))
        throw std::runtime_error("“" + path + "” could not be written.");
}

} // namespace

SampleLibrary::SampleLibrary() {
    if (!directory_.isValid())
        throw std::runtime_error("No temporary folder: " + directory_.errorString().toStdString());
    folder_ = files::FileUrl::fromPath(directory_.path().toStdString() + '/');
    pictures_ = files::FileUrl::fromPath(folder_.child("pictures").path() + '/');
    document_ = folder_.child("library.json");
    paintPictures();
    writeDocument();
}

void SampleLibrary::paintPictures() const {
    QDir(directory_.path()).mkdir(QStringLiteral("pictures"));
    save(landscape(1), pictures_, "hills.png");
    save(landscape(1), pictures_, "hills (copy).png");
    save(landscape(1).scaledToWidth(450, Qt::SmoothTransformation), pictures_, "hills small.png");
    save(landscape(2), pictures_, "lake.png");
    save(landscape(3), pictures_, "meadow.png");
    save(landscape(4).transformed(QTransform().rotate(90)), pictures_, "tower.png");
    const auto raw = pictures_.child("valley.dng").path();
    if (QFile file(QString::fromStdString(raw));
        !file.open(QIODevice::WriteOnly) ||
        file.write(QByteArray::fromStdString(sampleRaw(landscape(5).scaledToWidth(1500)))) <= 0)
        throw std::runtime_error("“" + raw + "” could not be written.");
}

void SampleLibrary::writeDocument() const {
    auto& system = files::FileSystem::real();
    const auto unplugged = files::FileUrl::fromPath(folder_.child("unplugged").path() + '/');
    library::LibraryContents session{.photos =
                                         library::scanFolder(system, pictures_, [](std::size_t) {}).photos,
                                     .folders = {pictures_, unplugged}};
    const auto mark = [&](const char* name, library::ReviewDecision decision) {
        const auto photo = pictures_.child(name);
        session.reviewMarks[photo.path()] = {decision, library::FileStamp::read(system, photo)};
    };
    mark("lake.png", library::ReviewDecision::keep);
    mark("hills small.png", library::ReviewDecision::cleanup);
    session.photos.push_back({.url = unplugged.child("far away.jpg"), .bytes = 1});
    library::writeLibrary(system, session, document_);
}

} // namespace lumisort::app
