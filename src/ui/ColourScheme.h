#pragma once

#include <QtQml/qqmlregistration.h>

#include <QDBusVariant>
#include <QObject>

class QJSEngine;
class QQmlEngine;

namespace lumisort::ui {

/// Whether windows are dark: what the desktop prefers, as its settings portal tells (key `color-scheme` of
/// `org.freedesktop.appearance`: 1 dark, 2 light), and follows as it changes; without a portal, what the
/// desktop's palette looks like. Asks without waiting. Main thread.
class ColourScheme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY darkChanged)
    Q_PROPERTY(Choice choice READ choice WRITE choose NOTIFY choiceChanged)

public:
    enum Choice { Automatic, Light, Dark };
    Q_ENUM(Choice)

    /// The only one.
    static ColourScheme& shared();
    /// The only one, for QML.
    static ColourScheme* create(QQmlEngine* engine, QJSEngine* script);

    bool dark() const { return dark_; }
    Choice choice() const { return choice_; }
    /// Automatic follows the desktop.
    void choose(Choice choice);

Q_SIGNALS:
    void choiceChanged();
    void darkChanged();

private:
    ColourScheme();
    void ask();
    void setPreference(const QVariant& colourScheme);
    void update();

    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

    bool dark_ = false;
    bool desktopIsDark_ = false; ///< what Automatic shows
    Choice choice_ = Automatic;
};

} // namespace lumisort::ui
