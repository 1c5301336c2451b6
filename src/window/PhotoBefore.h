// Hold to compare: while a panel's button or the key B is held, the photo shows as it was when the panel opened.
#pragma once

#include <QImage>
#include <QObject>

namespace lumora {

struct AppContext;
class PhotoView;
class SlidingPanel;

class PhotoBefore : public QObject {
    Q_OBJECT

  public:
    /// Listens to the keys that reach the window unused.
    PhotoBefore(AppContext &ctx, PhotoView &view, QWidget *window);

    /// Serves the panel's compare button; does nothing for a panel without one.
    void add(SlidingPanel &panel);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void remember();
    void show(bool held);

    AppContext &m_ctx;
    PhotoView &m_view;
    SlidingPanel *m_panel = nullptr; ///< the open one
    QImage m_before;                 ///< as large as the view shows the photo
};

} // namespace lumora
