// The zoom of the photo in the main window: its button with the menu, and a photo that stays completely in view.
#pragma once

#include <QObject>
#include <QSize>

namespace lumora {

struct AppContext;
class PhotoView;
class PictureButton;

class PhotoZoom : public QObject {
    Q_OBJECT

  public:
    /// Belongs to the view.
    PhotoZoom(AppContext &ctx, PhotoView &view, PictureButton &button);

    /// The whole photo in view. It stays so when the view is resized, until the zoom changes.
    void fitPhoto();
    /// The photo has another size: it is fitted again if it was fitted, unless the zoom is to be kept.
    void photoResized(bool keepZoom);
    /// Writes the zoom on the button.
    void refresh();
    /// Below the button, until something is chosen.
    void showMenu();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    bool isFitted() const;

    AppContext &m_ctx;
    PhotoView &m_view;
    PictureButton &m_button;
    int m_fittedZoom = 0; ///< percent that fitPhoto chose last
    QSize m_fittedSize;   ///< of the photo then
    QSize m_photoSize;    ///< of the photo now
};

} // namespace lumora
