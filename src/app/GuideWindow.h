// The user guide in a window of its own. frmHelp opens it.
#pragma once

#include <QWidget>

class QTextBrowser;

namespace lumora {

struct AppContext;
class PictureButton;

/// Belongs to the window from which it was opened, stays above it and goes with it. Back and Home follow the reader's
/// way through the pages; links to the web open in the desktop's browser. Esc closes it.
class GuideWindow : public QWidget {
    Q_OBJECT

  public:
    GuideWindow(AppContext &context, QWidget *owner);

    /// Opens the guide for that window, or brings the one it has to the front.
    static void open(AppContext &context, QWidget *owner);

  protected:
    void keyPressEvent(QKeyEvent *event) override;

  private:
    void build();
    PictureButton *button(const QString &name, const QString &icon, const QString &tip);

    AppContext &m_context;
    PictureButton *cmdBack;
    PictureButton *cmdHome;
    PictureButton *cmdClose;
    QTextBrowser *txtGuide;
};

} // namespace lumora
