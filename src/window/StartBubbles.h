// The bubbles that show after the start: the welcome, and what Simple mode has switched off. Owned by the main window.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

namespace lumora {

struct AppContext;
class Bubble;

/// One bubble at a time. The welcome shows only while there is no photo and nobody has begun to get one.
class StartBubbles : public QObject {
    Q_OBJECT

  public:
    /// The welcome points at `openButton`, the other one at `optionsButton`; both are parts of the window.
    StartBubbles(AppContext &ctx, QWidget *openButton, QWidget *optionsButton, QWidget *window);

    /// Reads the settings and shows what is due, a little later. Called once.
    void start();
    /// The welcome is not needed any more: it closes, or does not come.
    void welcomeIsOver();
    /// Closes the bubble that is open. False when there is none.
    bool closeOpen();

  Q_SIGNALS:
    /// A bubble has closed by itself or its answer: the keyboard is free.
    void closed();
    /// The settings file has the values from before Simple mode again.
    void settingsBroughtBack();

  private:
    void showNext();
    void follow(Bubble *bubble);

    AppContext &m_ctx;
    QWidget *m_open;
    QWidget *m_options;
    QWidget *m_window;
    QTimer tmrWelcome;
    QPointer<Bubble> m_bubble;
    bool m_welcomeIsDue = false;
};

} // namespace lumora
