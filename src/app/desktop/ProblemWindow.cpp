#include "app/desktop/ProblemWindow.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>

namespace lumisort::app {

void showProblem(const std::string& message, const std::stop_token& interrupted) {
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.setInitialProperties(
        {{QStringLiteral("message"), QString::fromStdString(message)}, {QStringLiteral("visible"), true}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Lumisort/App/ProblemWindow.qml")));
    if (engine.rootObjects().isEmpty()) return; // the message has been printed
    QEventLoop loop;
    QObject::connect(qGuiApp, &QGuiApplication::lastWindowClosed, &loop, &QEventLoop::quit);
    const std::stop_callback onInterrupt(
        interrupted, [&loop] { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); });
    loop.exec();
}

} // namespace lumisort::app
