// The slideshow: asks for a folder, lists its pictures and shows one after the other in frmSlideShow. Owned by the main
// window.
#pragma once

#include "output/slideshow/SlideLoader.h"

#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <optional>

namespace lumora {

struct AppContext;
class ScreenAwake;
class frmSlideShow;

class SlideShow : public QObject {
    Q_OBJECT

  public:
    SlideShow(AppContext &ctx, QWidget *owner);
    ~SlideShow() override;

    /// The button: asks for a folder and, once one is chosen, shows its pictures until Esc or a click.
    void start();

    /// Asks for a folder with the desktop's dialog. The chosen one becomes txtSSPath, and the timer is started.
    void SetupSlideShow();
    /// SetupSlideShow, then the current txtSSPath.
    QString BrowseForFolder();
    /// Clears the list, runs BrowseForFolder and fills the list with the names of the pictures in that folder: those
    /// that end, in any case, with ".jpg", "jpeg", ".gif", ".bmp" or ".png", in the order of their names.
    void listFiles(QStringList &list);

    /// The chosen folder, without a "/" at its end unless it is the root; empty while no show is on.
    const QString &path() const { return txtSSPath; }
    const QStringList &names() const { return listBoxName; }
    /// The index in names() of the picture on the screen; -1 before the first.
    int current() const { return m_current; }

    /// Milliseconds between two pictures for a delay in seconds: at least a second, and no more than a timer can hold.
    static int interval(int seconds);

  Q_SIGNALS:
    /// The picture with the index current() has come on the screen.
    void shown();

  private:
    void tick();
    void lookForNext();
    void showNext();
    void togglePause();
    void end();

    AppContext &m_ctx;
    QWidget *m_owner;
    QString txtSSPath;
    QString m_lastPath; ///< where the next choice begins
    QStringList listBoxName;
    int m_current = -1;
    QTimer *tmrSlideShow;
    SlideLoader m_loader;
    std::optional<Slide> m_next; ///< decoded before its time
    bool m_isDue = false;        ///< the time for the next picture has come
    QPointer<frmSlideShow> m_window;
    std::unique_ptr<ScreenAwake> m_awake;
};

} // namespace lumora
