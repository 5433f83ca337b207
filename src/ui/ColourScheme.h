#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QtQml/qqmlregistration.h>

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

public:
    /// The only one. With `pinned` set it does not follow the desktop any more.
    static ColourScheme& shared();
    /// The only one, for QML.
    static ColourScheme* create(QQmlEngine* engine, QJSEngine* script);

    bool dark() const { return dark_; }
    void pin(bool dark);

Q_SIGNALS:
    void darkChanged();

private:
    ColourScheme();
    void ask();
    void setPreference(const QVariant& colourScheme);
    void setDark(bool dark);

    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

    bool dark_ = false, pinned_ = false;
};

} // namespace lumisort::ui
