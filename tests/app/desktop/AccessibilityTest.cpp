#include "app/desktop/SampleLibrary.h"
#include "app/desktop/Tour.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <set>
#include <string>

namespace lumisort::app {
namespace {

using testing::IsEmpty;

constexpr int mostDepth = 60; // deeper than any page; a tree with a cycle must not hang the test

/// Adds a line for each focusable thing below `face` that a screen reader could not announce.
void check(QAccessibleInterface* face, const std::string& path, int depth, int& focusable,
           std::set<std::string>& problems) {
    if (!face || !face->isValid() || face->state().invisible || depth > mostDepth) return;
    const auto name = face->text(QAccessible::Name);
    const auto here = path + "/" + (face->object() ? face->object()->metaObject()->className() : "?") + "(" +
                      name.toStdString() + ")";
    if (face->state().focusable && face->role() != QAccessible::Window) {
        ++focusable;
        if (name.isEmpty()) problems.insert("no name: " + here);
        if (face->role() == QAccessible::NoRole || face->role() == QAccessible::Client ||
            face->role() == QAccessible::Pane)
            problems.insert("no role: " + here);
    }
    for (int child = 0; child < face->childCount(); ++child)
        check(face->child(child), here, depth + 1, focusable, problems);
}

/// Items that Tab reaches, as a screen reader hears them when they get the keyboard.
void checkTabStops(QQuickItem* item, const std::string& page, int& stops, std::set<std::string>& problems) {
    if (!item->isVisible()) return;
    if (item->activeFocusOnTab() && item->isEnabled()) {
        ++stops;
        auto* face = QAccessible::queryAccessibleInterface(item);
        const auto role = face ? face->role() : QAccessible::NoRole;
        if (!face || face->text(QAccessible::Name).isEmpty() || role == QAccessible::NoRole ||
            role == QAccessible::Client)
            problems.insert(page + ": Tab reaches a nameless " + item->metaObject()->className());
    }
    for (auto* child : item->childItems()) checkTabStops(child, page, stops, problems);
}

TEST(Accessibility, EveryFocusableItemOfEveryPageHasANameAndARole) {
    QAccessible::setActive(true); // as with a screen reader
    const SampleLibrary samples;
    std::set<std::string> problems;
    int pagesSeen = 0;
    const auto walk = [&](const Page& page, const QImage&) {
        ++pagesSeen;
        int focusable = 0, stops = 0;
        for (auto* window : QGuiApplication::topLevelWindows()) {
            auto* quick = qobject_cast<QQuickWindow*>(window);
            if (!quick || !quick->isVisible()) continue;
            check(QAccessible::queryAccessibleInterface(quick), page.name, 0, focusable, problems);
            checkTabStops(quick->contentItem(), page.name, stops, problems);
        }
        EXPECT_GT(focusable, 3) << page.name << ": the tree is empty";
        EXPECT_GT(stops, 3) << page.name;
    };
    for (const auto& [document, shown] :
         {std::pair{samples.empty(), pagesOfEmptyLibrary()}, std::pair{samples.document(), pages()}}) {
        Desktop desktop(document, [] {});
        tour(desktop, shown, walk, {});
    }
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_GE(pagesSeen, 17);
}

} // namespace
} // namespace lumisort::app
