// What desktop_start compares with: a window with one rectangle, and nothing else. Prints the processor time
// in milliseconds at its first frame.

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <ctime>
#include <iostream>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\n"
                    "Window { width: 1250; height: 820; visible: true; title: 'bare'\n"
                    "  Rectangle { anchors.fill: parent; color: 'grey' } }\n");
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
    if (!window) return 1;
    QObject::connect(
        window, &QQuickWindow::frameSwapped, &application,
        [] {
            timespec time{};
            clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
            std::cout << static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6
                      << std::endl;
            QCoreApplication::quit();
        },
        Qt::SingleShotConnection);
    return QCoreApplication::exec();
}
