#include "Desktop.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
#include <QProcess>
#include <QRegularExpression>
#include <QUrl>
#include <QWidget>
#include <QWindow>
#include <memory>

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

bool dropOn(QWidget &window, const QString &file) {
    const auto data = std::make_unique<QMimeData>();
    data->setUrls({QUrl::fromLocalFile(file)});
    const QPoint at = window.rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.windowHandle(), &enter);
    if (enter.isAccepted()) {
        QDropEvent drop(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.windowHandle(), &drop);
    }
    return enter.isAccepted();
}

void copyInDesktop(const QString &file) {
    auto *data = new QMimeData; // the clipboard's from then on
    data->setUrls({QUrl::fromLocalFile(file)});
    QGuiApplication::clipboard()->setMimeData(data);
}

} // namespace lumora::play
