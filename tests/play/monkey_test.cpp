// The random walk on a small window: it can be repeated, it reaches every kind of control and no other, and errors are
// reported with the action that caused them.
#include "Playing.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumora::play {
namespace {

using test::Played;
using test::playScript;

TEST(Monkey, WalksTheSameWayWithTheSameSeed) {
    const Played first = playScript("start\nmonkey 7 40", 3000);
    const Played again = playScript("start\nmonkey 7 40", 3000);
    const Played other = playScript("start\nmonkey 8 40", 3000);
    EXPECT_EQ(first.problem, "");
    EXPECT_GE(first.actions.size(), 40);
    EXPECT_EQ(first.actions, again.actions);
    EXPECT_EQ(first.diary, again.diary);
    EXPECT_NE(first.actions, other.actions);
    EXPECT_EQ(first.diary.last(), "escaped"); // at rest
}

TEST(Monkey, ReachesEveryKindOfControlAndOnlyWhatAPersonCould) {
    const Played run = playScript("start\nmonkey 2 300", 3000);
    ASSERT_EQ(run.problem, "");
    const QString actions = run.actions.join('\n');
    for (const char *action :
         {"click cmdWork", "click Toolbar1.keyUndo", "double click ", "at once click", "click chkShow", "type txtName",
          "type spinValue", "drag sldValue", "click sldValue", "click cboFilter", "click File1 at", "item QMenu ",
          "click cmdYes", "drag the photo", "with Shift", "right click the photo", "wheel with Ctrl", "key Escape",
          "key Ctrl\\+Z"}) {
        EXPECT_TRUE(actions.contains(QRegularExpression(action))) << action;
    }
    for (const char *entry : {"keyUndo", "cmdWork", "frmFirst 1", "undone"}) {
        EXPECT_TRUE(run.diary.contains(entry)) << entry;
    }
    EXPECT_FALSE(actions.contains(QRegularExpression("cmdOpen|cmdOff|cmdHidden|cmdCovered|keyRedo")));
    EXPECT_FALSE(run.diary.contains("disturbed")); // no input while a long command accepts none
}

TEST(Monkey, GoesEverywhereWithFilesToDropToCopyAndToChoose) {
    const QTemporaryDir folder;
    QFile file(folder.filePath("photo.jpg"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const Played run = playScript("start\nmonkey 2 400 " + folder.path(), 3000,
                                  [](test::SmallWindow &window) { window.broken = "none"; });
    ASSERT_EQ(run.problem, "");
    for (const char *action : {"click cmdOpen", "drop in vain photo.jpg", "copy photo.jpg",
                               "choose photo.jpg in QFileDialog", "click cmdYes in frm"}) {
        EXPECT_TRUE(run.actions.join('\n').contains(action)) << action;
    }
    EXPECT_TRUE(run.diary.contains(file.fileName())); // what the dialog gave
    EXPECT_TRUE(QGuiApplication::clipboard()->mimeData()->hasUrls());
}

TEST(Monkey, ReportsWhichActionBrokeTheOrder) {
    const Played run =
        playScript("start\n\nmonkey 1 400", 100, [](test::SmallWindow &window) { window.broken = "keyUndo"; });
    EXPECT_EQ(run.line, 3);
    EXPECT_THAT(run.problem.toStdString(), testing::MatchesRegex("action [0-9]+ \\(.*keyUndo.*\\): the order is gone"));
    EXPECT_EQ(run.diary.count("keyUndo"), 1);
    EXPECT_LT(run.actions.size(), 400);
}

} // namespace
} // namespace lumora::play
