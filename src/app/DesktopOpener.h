// Opens documents and addresses with xdg-open, and notices when that finds no program for them. Made by runLumora.
#pragma once

#include <QObject>
#include <functional>

class QUrl;

namespace lumora {

/// Takes what QDesktopServices::openUrl is asked for, as long as it lives: the toolkit itself only starts xdg-open and
/// does not look at what becomes of it. Where there is no xdg-open, the toolkit's own way is tried.
class DesktopOpener : public QObject {
    Q_OBJECT

  public:
    /// `failed` gets the document or address that no program opens, some time after it was asked for.
    explicit DesktopOpener(std::function<void(const QString &)> failed);
    ~DesktopOpener() override;

  public Q_SLOTS:
    void open(const QUrl &url);

  private:
    void listen(bool on);
    void openOtherwise(const QUrl &url);

    std::function<void(const QString &)> m_failed;
};

} // namespace lumora
