#include "ui/ColourScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>
#include <QQmlEngine>
#include <utility>

namespace lumisort::ui {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString group = QStringLiteral("org.freedesktop.appearance");
const QString key = QStringLiteral("color-scheme");
constexpr uint preferDark = 1, preferLight = 2;

bool paletteIsDark() {
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

/// The portal's older call wraps the value twice.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

ColourScheme& ColourScheme::shared() {
    static ColourScheme scheme;
    return scheme;
}

ColourScheme* ColourScheme::create(QQmlEngine*, QJSEngine*) {
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

ColourScheme::ColourScheme() : dark_(paletteIsDark()), desktopIsDark_(dark_) {
    ask();
}

void ColourScheme::ask() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    auto question = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << group << key;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (reply.isValid()) setPreference(reply.value().variant());
        call->deleteLater();
    });
}

void ColourScheme::settingChanged(const QString& changedGroup, const QString& changedKey,
                                  const QDBusVariant& value) {
    if (changedGroup == group && changedKey == key) setPreference(value.variant());
}

void ColourScheme::setPreference(const QVariant& colourScheme) {
    const uint preference = unwrapped(colourScheme).toUInt();
    desktopIsDark_ = preference == preferDark || (preference != preferLight && paletteIsDark());
    update();
}

void ColourScheme::choose(Choice choice) {
    if (std::exchange(choice_, choice) == choice) return;
    Q_EMIT choiceChanged();
    update();
}

void ColourScheme::update() {
    const bool dark = choice_ == Automatic ? desktopIsDark_ : choice_ == Dark;
    if (std::exchange(dark_, dark) != dark) Q_EMIT darkChanged();
}

} // namespace lumisort::ui
