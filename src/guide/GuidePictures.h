// Lays the pictures of a guide page into its text: drawings sharp at every scale of the screen, screenshots at half
// their pixels (they are made at double density) and never wider than the page.
#pragma once

#include <QObject>
#include <QTextObjectInterface>

namespace lumora {

class GuidePictures : public QObject, public QTextObjectInterface {
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

  public:
    using QObject::QObject;

    QSizeF intrinsicSize(QTextDocument *page, int position, const QTextFormat &format) override;
    void drawObject(QPainter *painter, const QRectF &place, QTextDocument *page, int position,
                    const QTextFormat &format) override;
};

} // namespace lumora
