// Running one piece of work in a child process, so that a crash, a hang or a flood of memory in it affects nothing
// else.
#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

/// What became of the child: its answer, or why there is none.
struct IsolatedAnswer {
    QByteArray answer;
    QString failure; ///< empty when the child gave its answer and ended well
};

/// Forks, lets the child call `work` and returns its result. After `timeoutMs` milliseconds the child is
/// killed. Call it only while the process has one thread.
IsolatedAnswer runIsolated(const std::function<QByteArray()> &work, int timeoutMs);
