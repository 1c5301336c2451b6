// The large buttons beside the chosen decoration: its words, to the front, throw away.
#pragma once

#include <QWidget>

namespace lumora {

class PhotoView;
class PictureButton;
struct AppContext;

/// A child of the view; hidden at first.
class ItemBar : public QWidget {
    Q_OBJECT

  public:
    ItemBar(AppContext &ctx, PhotoView &view);

    /// Shows it beside that part of the view (which it does not cover where there is room), wholly in view.
    void showBeside(const QRectF &part, bool hasWords);

  Q_SIGNALS:
    void wordsWanted();
    void frontWanted();
    void deleteWanted();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

  private:
    void LoadLanguage();

    AppContext &m_ctx;
    PhotoView &m_view;
    PictureButton *m_words;
    PictureButton *m_front;
    PictureButton *m_delete;
};

/// Where something of that size goes beside a part of a room: above it, else below, else beside it, else at the room's
/// upper edge.
QRect placeBeside(const QRectF &part, QSize size, const QRect &room);

} // namespace lumora
