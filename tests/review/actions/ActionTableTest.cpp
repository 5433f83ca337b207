#include "review/actions/ActionTable.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QMetaEnum>
#include <set>

namespace lumisort::review {
namespace {

constexpr auto scopes = {ActionSet::Scope::grid, ActionSet::Scope::photo, ActionSet::Scope::compare,
                         ActionSet::Scope::fullScreen};

TEST(ActionTable, HasARowForEachActionWithAnIconThatExists) {
    std::set<int> rows;
    for (const auto& row : actionTable()) {
        EXPECT_TRUE(rows.insert(row.id).second) << row.text;
        EXPECT_NE(row.scopes, 0U) << row.text;
        const auto icon = QStringLiteral(":/qt/qml/Lumisort/Ui/icons/%1.svg").arg(QLatin1String(row.icon));
        EXPECT_TRUE(!*row.icon || QFile::exists(icon)) << row.icon;
    }
    EXPECT_EQ(static_cast<int>(rows.size()), QMetaEnum::fromType<ActionSet::Id>().keyCount());
}

TEST(ActionTable, GivesNoKeyTwiceInAScope) {
    for (const auto scope : scopes) {
        std::set<QString> keys;
        for (const auto& row : actionTable())
            if (isIn(row, scope))
                for (const auto& key : QString::fromUtf8(row.keys).split(u' ', Qt::SkipEmptyParts)) {
                    EXPECT_FALSE(QKeySequence(key).isEmpty()) << row.text;
                    EXPECT_TRUE(keys.insert(key).second) << row.text;
                }
    }
}

TEST(ActionSet, TriggersByKeyWhatIsEnabledAndRepeatsOnlyWhatMoves) {
    ActionSet actions(ActionSet::Scope::fullScreen);
    int kept = 0, zoomed = 0;
    QString reason;
    actions.add(ActionSet::Keep, [&] { ++kept; }, [&] { return reason; });
    actions.add(ActionSet::ZoomIn, [&] { ++zoomed; });
    EXPECT_TRUE(actions.press(Qt::Key_K, Qt::ControlModifier));
    EXPECT_TRUE(actions.press(Qt::Key_K, Qt::ControlModifier, true)) << "held: taken, and marks once";
    EXPECT_FALSE(actions.press(Qt::Key_K, Qt::NoModifier));
    EXPECT_FALSE(actions.press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier));
    EXPECT_EQ(kept, 1);
    for (const auto& [key, modifiers] : {std::pair<int, int>{Qt::Key_Plus, Qt::ShiftModifier},
                                         {Qt::Key_Plus, Qt::KeypadModifier},
                                         {Qt::Key_Equal, 0}})
        EXPECT_TRUE(actions.press(key, modifiers, true)) << key;
    EXPECT_EQ(zoomed, 3);

    reason = QStringLiteral("Not now.");
    actions.refresh();
    EXPECT_EQ(actions.of(ActionSet::Keep)->reason(), reason);
    EXPECT_TRUE(actions.press(Qt::Key_K, Qt::ControlModifier)) << "it is this scope's key nevertheless";
    EXPECT_EQ(kept, 1);
    EXPECT_EQ(actions.of(ActionSet::Skip), nullptr);
}

} // namespace
} // namespace lumisort::review
