#include "app/DesktopOpener.h"

#include <QDesktopServices>
#include <QProcess>
#include <QUrl>

namespace lumora {

DesktopOpener::DesktopOpener(std::function<void(const QString &)> failed) : m_failed(std::move(failed)) {
    listen(true);
}

DesktopOpener::~DesktopOpener() {
    listen(false);
}

void DesktopOpener::listen(bool on) {
    for (const char *scheme : {"file", "http", "https"}) {
        if (on) {
            QDesktopServices::setUrlHandler(scheme, this, "open");
        } else {
            QDesktopServices::unsetUrlHandler(scheme);
        }
    }
}

void DesktopOpener::open(const QUrl &url) {
    // No parent: what it has opened outlives the program.
    auto *xdgOpen = new QProcess;
    xdgOpen->setStandardInputFile(QProcess::nullDevice());
    xdgOpen->setStandardOutputFile(QProcess::nullDevice());
    xdgOpen->setStandardErrorFile(QProcess::nullDevice());
    connect(xdgOpen, &QProcess::finished, this, [this, url](int code) {
        if (code != 0) {
            m_failed(url.toDisplayString(QUrl::PreferLocalFile));
        }
    });
    connect(xdgOpen, &QProcess::errorOccurred, this, [this, url](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            openOtherwise(url);
        }
    });
    connect(xdgOpen, &QProcess::finished, xdgOpen, &QObject::deleteLater);
    connect(xdgOpen, &QProcess::errorOccurred, xdgOpen, &QObject::deleteLater);
    xdgOpen->start("xdg-open", {url.toString(QUrl::FullyEncoded)});
}

void DesktopOpener::openOtherwise(const QUrl &url) {
    listen(false);
    if (!QDesktopServices::openUrl(url)) {
        m_failed(url.toDisplayString(QUrl::PreferLocalFile));
    }
    listen(true);
}

} // namespace lumora
