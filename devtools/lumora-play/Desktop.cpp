#include "Desktop.h"

#include <QApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QWidget>

namespace lumora::play {

namespace {

/// What xdotool says; an empty text is success, else the problem.
QString runXdotool(const QStringList &arguments, QString *answer = nullptr) {
    QProcess xdotool;
    xdotool.start("xdotool", arguments);
    if (!xdotool.waitForStarted() || !xdotool.waitForFinished()) {
        return QString("xdotool: %1").arg(xdotool.errorString());
    }
    if (answer != nullptr) {
        *answer = QString::fromUtf8(xdotool.readAllStandardOutput());
    }
    return xdotool.exitCode() == 0 ? QString() : QString("xdotool %1 fails").arg(arguments.value(0));
}

QString atWindow(const QString &title, const QStringList &keys) {
    QString windows;
    runXdotool({"search", "--onlyvisible", "--all", "--pid", QString::number(QCoreApplication::applicationPid()),
                "--name", '^' + QRegularExpression::escape(title) + '$'},
               &windows);
    const QString window = windows.section('\n', 0, 0);
    if (window.isEmpty()) {
        return QString("the desktop shows no window \"%1\"").arg(title);
    }
    // Without a window of its own, key and type go through the test extension to what has the keyboard.
    const QString problem = runXdotool({"windowfocus", "--sync", window});
    return problem.isEmpty() ? runXdotool(keys) : problem;
}

} // namespace

bool isDesktopDialogOpen() {
    const QWidget *dialog = QApplication::activeModalWidget();
    return dialog != nullptr && dialog->testAttribute(Qt::WA_DontShowOnScreen);
}

QString typeIntoDesktop(const QString &title, const QString &text) {
    return atWindow(title, {"type", "--delay", "20", "--", text});
}

QString pressOnDesktop(const QString &title, const QString &keys) {
    return atWindow(title, {"key", "--clearmodifiers", keys});
}

} // namespace lumora::play
