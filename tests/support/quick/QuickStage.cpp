#include "support/quick/QuickStage.h"

#include "ui/IconProvider.h"

#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <QtTest/qtestsystem.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QQmlComponent>
#include <stdexcept>

void qml_register_types_Lumisort_Ui();

namespace lumisort::test {

namespace {

constexpr int patienceMs = 10'000;

QString nameOf(QQuickItem* item) {
    auto* face = QAccessible::queryAccessibleInterface(item);
    return face ? face->text(QAccessible::Name) : QString();
}

bool takesInput(QQuickItem* item) {
    auto* face = QAccessible::queryAccessibleInterface(item);
    if (!face) return false;
    const auto role = face->role();
    return item->activeFocusOnTab() || role == QAccessible::Button || role == QAccessible::CheckBox ||
           role == QAccessible::EditableText;
}

void forEachVisible(QQuickItem* item, const std::function<void(QQuickItem*)>& visit) {
    if (!item->isVisible()) return;
    visit(item);
    for (auto* child : item->childItems()) forEachVisible(child, visit);
}

} // namespace

QuickStage::QuickStage() {
    qml_register_types_Lumisort_Ui();
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine_.addImageProvider(QStringLiteral("icon"), new ui::IconProvider);
    engine_.setOutputWarningsToStandardError(false);
    QObject::connect(&engine_, &QQmlEngine::warnings, &engine_, [this](const QList<QQmlError>& warnings) {
        for (const auto& warning : warnings) ADD_FAILURE() << warning.toString().toStdString();
    });
}

QuickStage::~QuickStage() = default;

QQuickWindow& QuickStage::show(const QByteArray& qml, const QVariantMap& properties) {
    QQmlComponent component(&engine_);
    component.setData(qml, QUrl(QStringLiteral("qrc:/stage.qml")));
    if (!component.isReady()) throw std::runtime_error(component.errorString().toStdString());
    root_.reset(component.createWithInitialProperties(properties));
    window_ = qobject_cast<QQuickWindow*>(root_.get());
    window_->show();
    window_->requestActivate();
    settle();
    return *window_;
}

QQuickItem* QuickStage::item(const QString& name) {
    QQuickItem* found = nullptr;
    forEachVisible(window_->contentItem(), [&](QQuickItem* each) {
        if (!found && nameOf(each) == name) found = each;
    });
    if (!found)
        throw std::runtime_error("nothing on show is named " + name.toStdString() + ", but " +
                                 names().join(QStringLiteral(" | ")).toStdString());
    return found;
}

bool QuickStage::has(const QString& name) {
    return names().contains(name);
}

QStringList QuickStage::names() {
    QStringList found;
    forEachVisible(window_->contentItem(), [&](QQuickItem* each) {
        if (const auto name = nameOf(each); !name.isEmpty()) found += name;
    });
    return found;
}

QStringList QuickStage::nameless() {
    QStringList found;
    forEachVisible(window_->contentItem(), [&](QQuickItem* each) {
        if (takesInput(each) && nameOf(each).isEmpty())
            found += QString::fromUtf8(each->metaObject()->className());
    });
    return found;
}

void QuickStage::click(const QString& name) {
    auto* target = item(name);
    const auto middle = target->mapToScene({target->width() / 2, target->height() / 2}).toPoint();
    QTest::mouseClick(window_, Qt::LeftButton, {}, middle);
    settle();
}

void QuickStage::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window_, key, modifiers);
    settle();
}

void QuickStage::type(const QString& text) {
    for (const auto& letter : text) QTest::sendKeyEvent(QTest::Click, window_, Qt::Key_unknown, letter, {});
    settle();
}

bool QuickStage::until(const std::function<bool()>& done) {
    return QTest::qWaitFor(done, patienceMs);
}

void QuickStage::settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace lumisort::test
