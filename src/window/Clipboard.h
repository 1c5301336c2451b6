// The whole photo to and from other programs: what the Copy and Paste buttons of the command row use.
#pragma once

#include "imaging/PictureFile.h"

#include <QImage>
#include <QMimeData>

namespace lumora {

/// A picture as other programs take it: image/png, image/bmp and what Qt programs read. Encoded only when somebody
/// asks, and once for each kind; the pixels are shared.
class PhotoMimeData : public QMimeData {
    Q_OBJECT

  public:
    explicit PhotoMimeData(QImage photo) : m_photo(std::move(photo)) {}

    const QImage &photo() const { return m_photo; }
    QStringList formats() const override;
    bool hasFormat(const QString &type) const override { return formats().contains(type); }

  protected:
    QVariant retrieveData(const QString &type, QMetaType wanted) const override;

  private:
    const QImage m_photo;
    mutable QByteArray m_png, m_bmp;
};

/// Puts the photo into the clipboard; with a null picture the clipboard stays as it is.
void CopyPhoto(const QImage &photo);

/// Whether there is something to paste: a picture, or the path or address of a picture file on this computer. Takes no
/// picture data from the other program; of a file it reads the header.
bool clipboardHasPicture();

/// What there is to paste: the picture (of several kinds the one that keeps most), else the picture file that the
/// clipboard names, by its address (text/uri-list) or as plain text. NotAPicture when there is neither.
PictureRead readClipboardPicture();

} // namespace lumora
