// What Lumora hands to the desktop to open, a folder, a page, an address: printed instead, so that no run opens windows
// of other programs.
#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QUrl>
#include <functional>

namespace lumora::play {

class Browser : public QObject {
    Q_OBJECT

  public:
    explicit Browser(std::function<void(const QString &)> print) : m_print(std::move(print)) {
        for (const char *scheme : {"file", "http", "https"}) {
            QDesktopServices::setUrlHandler(scheme, this, "open");
        }
    }

    ~Browser() override {
        for (const char *scheme : {"file", "http", "https"}) {
            QDesktopServices::unsetUrlHandler(scheme);
        }
    }

  public Q_SLOTS:
    void open(const QUrl &url) { m_print("opened " + url.toDisplayString(QUrl::PreferLocalFile)); }

  private:
    std::function<void(const QString &)> m_print;
};

} // namespace lumora::play
