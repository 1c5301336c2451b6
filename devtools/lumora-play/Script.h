// A script of plain lines, read into steps before anything is started. The verbs and how they are written are one table
// in Script.cpp; docs/lumora-play.md explains them.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <vector>

namespace lumora::play {

/// One line of a script: its verb and its words. The last word may hold blanks.
struct Step {
    int line = 0;
    QString verb;
    QStringList words;

    QString word(int index) const { return words.value(index); }
};

struct Script {
    std::vector<Step> steps;
    int problemLine = 0; ///< the first line that cannot be read; 0 when all can
    QString problem;
};

/// Reads the lines. Blank ones and those that begin with "#" are passed over. Stops at the first unknown verb or wrong
/// number of words. "start" comes once and first; "setting" may be used only before it, and nothing else may.
Script readScript(const QString &text);

/// $NAME and ${NAME} replaced by the variables' values. A name that is not among them is left unchanged, so that the
/// step that uses it fails visibly.
QString withVariables(const QString &text, const QHash<QString, QString> &variables);

/// Two numbers or more from words separated by blanks; empty when one is no whole number or their count is odd.
std::vector<int> coordinates(const QString &words);

} // namespace lumora::play
