#include "app/desktop/Desktop.h"

#include "ui/IconProvider.h"
#include "ui/ThumbnailProvider.h"

#include <unistd.h>

#include <QFile>
#include <QGuiApplication>
#include <stdexcept>
#include <vector>

namespace lumisort::app {

namespace {

/// Without a graphics driver the window is painted by the processor. Qt Quick chooses once per process, so
/// the program starts over; nothing has been changed by then.
void restartWithSoftwareRenderer() {
    if (qEnvironmentVariable("QT_QUICK_BACKEND") == QLatin1String("software"))
        qFatal("The window cannot be drawn, not even without a graphics driver.");
    qputenv("QT_QUICK_BACKEND", "software");
    QFile commandLine(QStringLiteral("/proc/self/cmdline"));
    QList<QByteArray> words;
    if (commandLine.open(QIODevice::ReadOnly)) words = commandLine.readAll().split('\0');
    words.removeLast(); // behind the last NUL
    std::vector<char*> arguments;
    for (auto& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv("/proc/self/exe", arguments.data());
    qFatal("The program cannot start over without a graphics driver.");
}

std::vector<files::FileUrl> urlsOf(const std::vector<library::Photo>& photos) {
    std::vector<files::FileUrl> urls;
    for (const auto& photo : photos) urls.push_back(photo.url);
    return urls;
}

} // namespace

Desktop::Desktop(const files::FileUrl& document, std::function<void()> exit)
    : document_(document), model_(document, {}, {.findMatches = model::engineWithStoredCaches()}),
      library_(model_), compare_(model_, *library_.marks()), films_(files::FileSystem::real(), document),
      filmBatch_(films_), lifecycle_(std::move(exit)),
      devices_([this] { model_.drives().update(); }, {.mountDescriptor = mounts_.number()}),
      fullscreen_(model_, *library_.marks(), engine_), details_(model_, engine_), editors_(films_, engine_),
      filmPaste_(films_, editors_) {
    connectFilm();
    auto* window = library_.state();
    connect(window, &review::WindowState::compareWanted, &compare_, &review::CompareState::open);
    connect(window, &review::WindowState::organizeWanted, &archive_, &organize::OrganizeState::open);
    connect(window, &review::WindowState::detailsWanted, &details_, &review::PhotoDetailsController::show);
    connect(window, &review::WindowState::fullscreenWanted, this,
            [this](const std::vector<library::Photo>& photos, int index) {
                fullscreen_.show(photos[static_cast<std::size_t>(index)], photos);
            });
    connect(&model_.library(), &model::Library::thumbnailRevisionChanged, this,
            [this] { thumbnails_.removeAll(); });
    connect(&model_.library(), &model::Library::renamed, this,
            [this](const files::FileUrl& before, const library::Photo& after) {
                thumbnails_.remove(before);
                thumbnails_.remove(after.url);
            });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) devices_.applicationActivated();
    });
    lifecycle_.setWork({.underWay = [this] { return workUnderWay(); },
                        .cancel =
                            [this] {
                                archive_.cancel();
                                filmBatch_.cancel();
                            }});
    connect(&filmBatch_, &film::FilmBatch::changed, &lifecycle_, &Lifecycle::workChanged);
    for (const auto change : {&organize::OrganizeState::changed, &organize::OrganizeState::progressChanged})
        connect(&archive_, change, &lifecycle_, &Lifecycle::workChanged);
    connect(&lifecycle_, &Lifecycle::quitting, this, [this] {
        editors_.closeAll();
        for (auto* window : QGuiApplication::allWindows()) window->hide();
    });
}

Desktop::~Desktop() = default;

void Desktop::connectFilm() {
    auto* window = library_.state();
    connect(window, &review::WindowState::filmWanted, this,
            [this](const library::Photo& photo) { editors_.show(photo.url); });
    connect(window, &review::WindowState::filmExportWanted, this,
            [this](const std::vector<library::Photo>& photos) { filmBatch_.prepare(urlsOf(photos)); });
    connect(window, &review::WindowState::filmPasteWanted, this,
            [this](const std::vector<library::Photo>& photos) { filmPaste_.paste(urlsOf(photos)); });
    connect(&filmPaste_, &film::FilmPaste::finished, this, [this](const QString& message, bool canUndo) {
        canUndo ? library_.say(message, [this] { filmPaste_.undo(); }) : library_.say(message);
    });
}

QString Desktop::workUnderWay() const {
    if (archive_.busy()) return QStringLiteral("Photos are being imported: ") + archive_.status();
    if (filmBatch_.isRunning())
        return QStringLiteral("Film photos are being exported: ") + filmBatch_.current();
    return {};
}

void Desktop::show() {
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine_.addImageProvider(QStringLiteral("icon"), new ui::IconProvider);
    engine_.addImageProvider(QStringLiteral("thumbnail"), new ui::ThumbnailProvider(thumbnails_));
    engine_.setInitialProperties({{QStringLiteral("lifecycle"), QVariant::fromValue(&lifecycle_)},
                                  {QStringLiteral("library"), QVariant::fromValue(&library_)},
                                  {QStringLiteral("compare"), QVariant::fromValue(&compare_)},
                                  {QStringLiteral("archive"), QVariant::fromValue(&archive_)},
                                  {QStringLiteral("filmBatch"), QVariant::fromValue(&filmBatch_)},
                                  {QStringLiteral("libraryPath"), QString::fromStdString(document_.path())}});
    QString problems;
    const auto hearing = connect(&engine_, &QQmlEngine::warnings, this, [&](const QList<QQmlError>& found) {
        for (const auto& problem : found) problems += problem.toString() + QLatin1Char('\n');
    });
    engine_.load(QUrl(QStringLiteral("qrc:/qt/qml/Lumisort/App/Main.qml")));
    disconnect(hearing);
    const auto roots = engine_.rootObjects();
    window_ = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.first());
    if (!window_) throw std::runtime_error("The window could not be loaded.\n" + problems.toStdString());
    // At once and on whatever thread it draws: there is nothing to show until then.
    connect(window_, &QQuickWindow::sceneGraphError, window_, restartWithSoftwareRenderer,
            Qt::DirectConnection);
    connect(window_, &QWindow::visibleChanged, this, &Desktop::windowShown);
    window_->show();
}

void Desktop::windowShown(bool shown) {
    if (shown) lifecycle_.setModel(&model_);
    devices_.setShown(shown);
}

void Desktop::comeForward(const QString& activationToken) {
    if (!window_) return;
    if (!activationToken.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    if (window_->visibility() == QWindow::Minimized) window_->showNormal();
    window_->raise();
    window_->requestActivate();
}

} // namespace lumisort::app
