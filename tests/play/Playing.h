// Plays a script on the small window and returns the result.
#pragma once

#include "Player.h"
#include "SmallWindow.h"

namespace lumora::play::test {

struct Played {
    QStringList diary; ///< after the start
    QStringList printed;
    QStringList actions; ///< of a monkey
    QString problem;
    int line = 0;
};

/// `prepare` sees the window before the script begins, `preparePlayer` the player.
Played playScript(const QString &text, int patience = 400, const std::function<void(SmallWindow &)> &prepare = {},
                  const std::function<void(Player &)> &preparePlayer = {});

} // namespace lumora::play::test
