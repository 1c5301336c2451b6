// The sheets as they will come out, small: the same drawing that goes to the printer. The print windows show it.
#pragma once

#include "output/print/PageLayout.h"

#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace lumora {

/// The photo at a size that is enough for a preview, so that drawing it is quick.
QImage pictureForPreview(const QImage &photo);

/// The pages on their sheets of paper, in the middle of a picture of that size in pixels.
QPixmap sheetPixmap(const PrintPages &pages, const QImage &picture, QSize size, qreal devicePixelRatio);

class PagePreview : public QWidget {
    Q_OBJECT

  public:
    /// `picture` as pictureForPreview() makes it; `usual` is the size in pixels that it asks for, two thirds of which
    /// do on a small screen.
    PagePreview(const QImage &picture, QSize usual, QWidget *parent = nullptr);

    void setPages(const PrintPages &pages);
    const PrintPages &pages() const { return m_pages; }

    QSize sizeHint() const override { return m_usual; }
    QSize minimumSizeHint() const override { return m_usual * 2 / 3; }

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    QImage m_picture;
    QSize m_usual;
    PrintPages m_pages;
};

} // namespace lumora
