#pragma once

#include <QByteArray>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <memory>

namespace lumisort::test {

/// Real QML, shown, with real keys and clicks. Warnings of the QML engine fail the test. Items are found by
/// their accessible name, so that what a test can reach a screen reader can reach, too.
class QuickStage {
public:
    QuickStage();
    ~QuickStage();

    QQmlApplicationEngine& engine() { return engine_; }

    /// Loads a text that has a Window as its root and shows it. `properties` are set before it is shown.
    QQuickWindow& show(const QByteArray& qml, const QVariantMap& properties = {});
    QQuickWindow& window() { return *window_; }
    /// Destroys what show() made, before the state that it shows goes.
    void close() { root_.reset(); }
    /// Goes on in another window, such as a dialog.
    void moveTo(QQuickWindow& window) { window_ = &window; }

    /// The visible item with that accessible name; the test fails where there is none.
    QQuickItem* item(const QString& name);
    bool has(const QString& name);
    /// Accessible names of all that is visible, from the top of the tree.
    QStringList names();
    /// What can be focused or clicked and has no accessible name: its QML type.
    QStringList nameless();

    void click(const QString& name);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void type(const QString& text);

    /// Runs the event loop until `done` or for ten seconds; false then.
    static bool until(const std::function<bool()>& done);
    /// Runs what is due in the event loop, and lets layouts settle.
    void settle();

private:
    QQmlApplicationEngine engine_;
    std::unique_ptr<QObject> root_;
    QQuickWindow* window_ = nullptr;
};

} // namespace lumisort::test
