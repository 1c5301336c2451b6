// Reading scripts: what a line means, and what is refused before anything starts.
#include "Script.h"

#include <gtest/gtest.h>

namespace lumora::play {
namespace {

TEST(Script, KeepsTheRestOfALineAsTheLastWord) {
    const Script script =
        readScript("# a remark\n\nstart advanced /a folder/photo 1.jpg\r\n  type  txtName   two  words \n"
                   "item Toolbar1 keyUndo\ndrag 1 2 3 4\nquit");
    ASSERT_EQ(script.problemLine, 0) << script.problem.toStdString();
    ASSERT_EQ(script.steps.size(), 5U);
    EXPECT_EQ(script.steps[0].line, 3);
    EXPECT_EQ(script.steps[0].words, QStringList({"advanced", "/a folder/photo 1.jpg"}));
    EXPECT_EQ(script.steps[1].words, QStringList({"txtName", "two  words"}));
    EXPECT_EQ(script.steps[3].words, QStringList({"1 2 3 4"}));
    EXPECT_TRUE(script.steps[4].words.isEmpty());
}

TEST(Script, RefusesWhatItCannotRead) {
    const struct {
        const char *text;
        int line;
        const char *problem;
    } cases[] = {
        {"start\nclack cmdOpen", 2, "there is no step \"clack\""},
        {"start\n\nclick", 3, "write it so: click CONTROL"},
        {"start\ntype txtName", 2, "write it so: type CONTROL TEXT"},
        {"start\nstate now", 2, "write it so: state"},
        {"start\npress 1", 2, "write it so: press X Y"},
        {"start\npress 1 2 3 4", 2, "write it so: press X Y"},
        {"start\ndrag 1 2 3", 2, "write it so: drag X Y X Y ..."},
        {"start\ndrag 1 2 a b", 2, "write it so: drag X Y X Y ..."},
        {"start\nwait soon", 2, "write it so: wait MILLISECONDS"},
        {"start\nundo", 2, "write it so: undo all"},
        {"start\nundo twice", 2, "write it so: undo all"},
        {"start\nmonkey 1", 2, "write it so: monkey SEED COUNT [FOLDER]"},
        {"start\nmonkey 1 -1", 2, "write it so: monkey SEED COUNT [FOLDER]"},
        {"start\nmask", 2, "write it so: mask NAME"},
        {"start\nlook", 2, "write it so: look NAME [CONTROL]"},
        {"start\nexpect-look", 2, "write it so: expect-look NAME-OR-FILE [CONTROL]"},
        {"start\nhash one two", 2, "write it so: hash [NAME] | hash outside MASK [NAME]"},
        {"start\nhash outside", 2, "write it so: hash [NAME] | hash outside MASK [NAME]"},
        {"start\nfilm x.raw", 2, "write it so: film FILE FRAMES-PER-SECOND | film end"},
        {"start\nfilm x.raw 0", 2, "write it so: film FILE FRAMES-PER-SECOND | film end"},
        {"start\nfilm end 12", 2, "write it so: film FILE FRAMES-PER-SECOND | film end"},
        {"start\nexpect-fits well", 2, "write it so: expect-fits | expect-fits whole | expect-fits simple"},
        {"start\npointer", 2, "write it so: pointer on | pointer off"},
        {"start\npointer away", 2, "write it so: pointer on | pointer off"},
        {"start quickly", 1, "write it so: start | start simple | start advanced [PHOTO]"},
        {"start simple photo.jpg", 1, "write it so: start | start simple | start advanced [PHOTO]"},
        {"click cmdOpen", 1, "a script begins with start"},
        {"setting Dialogs=1\nstart", 1, "write it so: setting SECTION/KEY=VALUE"},
        {"start\nsetting Dialogs/Style=1", 2, "the program is started already"},
        {"start\nstart", 2, "the program is started already"},
    };
    for (const auto &one : cases) {
        const Script script = readScript(one.text);
        EXPECT_EQ(script.problemLine, one.line) << one.text;
        EXPECT_EQ(script.problem, one.problem) << one.text;
    }
}

TEST(Script, FillsInVariables) {
    const QHash<QString, QString> variables = {{"OUT", "/tmp/out"}, {"A", "$B"}, {"B", "b"}};
    const struct {
        const char *text;
        const char *filled;
    } cases[] = {
        {"$OUT/x.png", "/tmp/out/x.png"}, {"${OUT}x", "/tmp/outx"}, {"$OUTER", "$OUTER"},
        {"cost $ 5", "cost $ 5"},         {"$A$B", "$Bb"},          {"", ""},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(withVariables(one.text, variables), one.filled);
    }
}

} // namespace
} // namespace lumora::play
