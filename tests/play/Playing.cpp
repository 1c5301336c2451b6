#include "Playing.h"

#include <QApplication>
#include <QDir>
#include <gtest/gtest.h>

namespace lumora::play::test {

Played playScript(const QString &text, int patience, const std::function<void(SmallWindow &)> &prepare,
                  const std::function<void(Player &)> &preparePlayer) {
    Played run;
    SmallProgram program;
    if (prepare) {
        prepare(program.window);
    }
    const Script script = readScript(text);
    EXPECT_EQ(script.problemLine, 0) << script.problem.toStdString();
    Player player(program, script, patience);
    player.print = [&](const QString &line) { run.printed << line; };
    player.log = [&](const QString &action) { run.actions << action; };
    player.variables["TMP"] = QDir::tempPath();
    if (preparePlayer) {
        preparePlayer(player);
    }
    QObject::connect(&player, &Player::finished, qApp, [] { QCoreApplication::exit(); });
    player.begin();
    QApplication::exec();
    run.diary = program.window.diary.mid(1);
    run.problem = player.problem();
    run.line = player.problemLine();
    return run;
}

} // namespace lumora::play::test
